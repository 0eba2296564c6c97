#include "SimulatedMac/HeatSource.h"

#include <gtest/gtest.h>
#include <string>

namespace simulated {
namespace {

std::vector<CoursePoint> course(const std::string& text) {
    std::string error;
    return parseCourse(text, error);
}

TEST(HeatSource, ACourseGoesInStraightLinesAndStartsAgain) {
    CourseHeat heat(course("# warm-up\n0 10\n\n10 30 4\n20 30\n"), 100);
    EXPECT_DOUBLE_EQ(heat.heatAt(100, 0).processorWatts, 10);
    EXPECT_DOUBLE_EQ(heat.heatAt(105, 0).processorWatts, 20);
    EXPECT_DOUBLE_EQ(heat.heatAt(105, 0).graphicsWatts, 2);
    EXPECT_DOUBLE_EQ(heat.heatAt(115, 0).processorWatts, 30);
    EXPECT_DOUBLE_EQ(heat.heatAt(125, 0).processorWatts, 20) << "the second round";
    EXPECT_DOUBLE_EQ(heat.heatAt(50, 0).processorWatts, 10) << "before its start";
}

TEST(HeatSource, ACourseOfOnePointIsConstant) {
    CourseHeat heat(course("0 12.5"), 0);
    EXPECT_DOUBLE_EQ(heat.heatAt(99, 0).processorWatts, 12.5);
}

TEST(HeatSource, WhatIsNoCourseIsRefusedWithItsLine) {
    for (const std::string text : {"0", "0 x", "5 1\n5 2", "0 1 2 3", "-1 5", "0 -5", "", "# nothing\n"}) {
        std::string error;
        EXPECT_TRUE(parseCourse(text, error).empty()) << text;
        EXPECT_FALSE(error.empty()) << text;
    }
    std::string error;
    EXPECT_TRUE(parseCourse("0 1\n1 2\n1 3\n", error).empty());
    EXPECT_NE(error.find("line 3"), std::string::npos) << error;
}

TEST(HeatSource, LoadLeadsFromIdleToFullPower) {
    const Heat idle{.processorWatts = 5, .graphicsWatts = 1};
    const Heat full{.processorWatts = 45, .graphicsWatts = 20};
    EXPECT_DOUBLE_EQ(heatOfLoad(0, idle, full).processorWatts, 5);
    EXPECT_DOUBLE_EQ(heatOfLoad(1, idle, full).processorWatts, 45);
    EXPECT_DOUBLE_EQ(heatOfLoad(7, idle, full).processorWatts, 45);
    EXPECT_GT(heatOfLoad(0.125, idle, full).processorWatts, 10)
        << "one busy core of eight costs more than its share";
}

TEST(HostLoad, ReadsTheSummaryLine) {
    const auto ticks = parseProcessorTicks("cpu  10 1 5 80 4 2 3 1 7 7\ncpu0 1 1 1 1\n");
    ASSERT_TRUE(ticks);
    EXPECT_EQ(ticks->busy, 22U);
    EXPECT_EQ(ticks->idle, 84U);
}

TEST(HostLoad, OtherTextsAreRefused) {
    EXPECT_FALSE(parseProcessorTicks(""));
    EXPECT_FALSE(parseProcessorTicks("cpu0 1 2 3 4 5\n"));
    EXPECT_FALSE(parseProcessorTicks("cpu 1 2 x 4 5\n"));
    EXPECT_FALSE(parseProcessorTicks("cpu 1 2 3 4 5")) << "cut off";
}

TEST(HostLoad, TheShareIsOfTheTimeBetweenTwoReadings) {
    EXPECT_DOUBLE_EQ(busyShare({.busy = 100, .idle = 100}, {.busy = 130, .idle = 110}), 0.75);
    EXPECT_DOUBLE_EQ(busyShare({.busy = 100, .idle = 100}, {.busy = 100, .idle = 100}), 0);
    EXPECT_DOUBLE_EQ(busyShare({.busy = 100, .idle = 100}, {.busy = 110, .idle = 99}), 1);
}

TEST(HostLoad, TheFirstSampleKnowsNoLoadYetLaterOnesAreShares) {
    HostLoad load;
    EXPECT_EQ(load.sample(), 0);
    const double share = load.sample();
    EXPECT_GE(share, 0);
    EXPECT_LE(share, 1);
}

} // namespace
} // namespace simulated
