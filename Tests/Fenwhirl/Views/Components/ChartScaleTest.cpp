#include "Fenwhirl/Views/Components/ChartScale.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();

QList<double> plainLines(ChartRange range, double height = 140, double textScale = 1) {
    QList<double> values;
    for (const ChartLine& line : chartLines(range, height, textScale, std::nullopt)) {
        EXPECT_TRUE(line.numbered);
        EXPECT_FALSE(line.threshold);
        values.append(line.celsius);
    }
    return values;
}

TEST(ChartRange, LeavesThreeDegreesAndSpansTenAtLeast) {
    EXPECT_EQ(chartRange({40, 80}), (ChartRange{37, 83}));
    EXPECT_EQ(chartRange({50, 50}), (ChartRange{47, 57}));
    EXPECT_EQ(chartRange({50}), std::nullopt);
    EXPECT_EQ(chartRange({50, nowhere}), std::nullopt);
}

TEST(ChartRange, IsNothingWhereValuesCannotBeToldApart) {
    EXPECT_EQ(chartRange({1e300, 1e300}), std::nullopt);
    EXPECT_EQ(chartRange({-1.7e308, 1.7e308}), std::nullopt);
}

TEST(ChartLines, LieAtRoundTemperatures) {
    EXPECT_EQ(plainLines({47, 57}), (QList<double>{50, 55}));
    EXPECT_EQ(plainLines({52, 72}), (QList<double>{55, 60, 65, 70}));
    EXPECT_EQ(plainLines({50, 72}), (QList<double>{50, 55, 60, 65, 70}));
    EXPECT_EQ(plainLines({50, 72.1}), (QList<double>{50, 60, 70}));
    EXPECT_EQ(plainLines({36, 84}), (QList<double>{40, 50, 60, 70, 80}));
    EXPECT_EQ(plainLines({20, 70}), (QList<double>{20, 30, 40, 50, 60, 70}));
    EXPECT_EQ(plainLines({20, 71}), (QList<double>{20, 40, 60}));
    EXPECT_EQ(plainLines({-7, 7}), (QList<double>{-5, 0, 5}));
}

// Whatever was measured, there are some lines, but not too many.
TEST(ChartLines, AreTwoToSixInEveryRangeOfTemperatures) {
    for (double low = 0; low < 60; low += 0.7) {
        for (double span = 10; span < 100; span += 0.9) {
            for (const double textScale : {1.0, 1.5, 2.0}) {
                const auto count = plainLines({low, low + span}, 140, textScale).size();
                EXPECT_GE(count, 2) << low << " to " << low + span << " at " << textScale;
                EXPECT_LE(count, 6) << low << " to " << low + span << " at " << textScale;
            }
        }
    }
}

TEST(ChartLines, AreFewerWithLargerTextsAndInLowerPlots) {
    EXPECT_EQ(plainLines({52, 72}, 140, 2), (QList<double>{60, 70}));
    EXPECT_EQ(plainLines({52, 72}, 70), (QList<double>{60, 70}));
    EXPECT_EQ(plainLines({52, 72}, 280, 2), (QList<double>{55, 60, 65, 70}));
    EXPECT_EQ(plainLines({47, 57}, 140, 2), (QList<double>{50, 55}));
}

TEST(ChartLines, StayFewInEveryRange) {
    for (const double span : {1e3, 1e6, 1e12, 1e100, 1e307}) {
        const QList<ChartLine> lines = chartLines({0, span}, 140, 1, 75);
        EXPECT_LE(lines.size(), 10) << span;
        for (const ChartLine& line : lines) {
            EXPECT_TRUE(!line.numbered || std::abs(line.celsius) < 1000);
        }
    }
    EXPECT_LE(chartLines({1e16, 1e16 + 20}, 140, 1, std::nullopt).size(), 10);
}

TEST(ChartLines, TheThresholdIsALineWhereItIsInside) {
    EXPECT_EQ(chartLines({36, 84}, 140, 1, 75).last(), (ChartLine{75, true, true}));
    for (const double outside : {35.9, 84.1, nowhere}) {
        for (const ChartLine& line : chartLines({36, 84}, 140, 1, outside)) {
            EXPECT_FALSE(line.threshold) << outside;
        }
    }
    EXPECT_TRUE(chartLines({36, 84}, 140, 1, 36).last().threshold);
    EXPECT_TRUE(chartLines({36, 84}, 140, 1, 84).last().threshold);
}

TEST(ChartLines, TheThresholdReplacesTheLineAtItsPlace) {
    EXPECT_EQ(
        chartLines({68, 90}, 140, 1, 85),
        (QList<ChartLine>{
            {70, true, false}, {75, true, false}, {80, true, false}, {90, true, false}, {85, true, true}}));
}

TEST(ChartLines, ANumberTooNearToTheThresholdsGivesWayButItsLineStays) {
    // 48 degrees on 140 points, so one degree is 2.9 points.
    EXPECT_EQ(chartLines({36, 84}, 140, 1, 76).at(4), (ChartLine{80, false, false})); // 11.7 points
    EXPECT_EQ(chartLines({36, 84}, 140, 1, 75).at(4), (ChartLine{80, true, false}));  // 14.6 points
    EXPECT_EQ(chartLines({36, 84}, 140, 1, 74).at(3), (ChartLine{70, false, false}));
}

} // namespace

} // namespace Fenwhirl
