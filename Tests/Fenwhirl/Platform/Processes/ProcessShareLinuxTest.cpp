#include "Fenwhirl/Platform/Processes/ProcessShareLinux.h"

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

using namespace std::chrono_literals;

namespace {

constexpr std::uint64_t ticksPerSecond = 100;

ProcessShare::Time at(std::chrono::milliseconds time) {
    return ProcessShare::Time() + 1h + time;
}

} // namespace

TEST(ProcessShare, IsZeroInTheFirstLook) {
    ProcessShare share(ticksPerSecond);
    share.beginSample(at(0ms));
    EXPECT_EQ(share.add(7, 1, 100'000), 0U);
}

TEST(ProcessShare, CountsTheIntervalAndNotTheLifetime) {
    ProcessShare share(ticksPerSecond);
    share.beginSample(at(0ms));
    (void)share.add(7, 1, 100'000);
    (void)share.add(8, 1, 0);
    share.beginSample(at(4000ms));
    EXPECT_EQ(share.add(7, 1, 100'200), 5000U); // 2 s of 4 s
    EXPECT_EQ(share.add(8, 1, 1), 25U);         // one tick: 0.25 %
    share.beginSample(at(8000ms));
    EXPECT_EQ(share.add(7, 1, 100'200), 0U);
    EXPECT_EQ(share.add(8, 1, 1601), 40000U); // four cores
}

TEST(ProcessShare, CountsANewProcessFromItsStart) {
    ProcessShare share(ticksPerSecond);
    share.beginSample(at(0ms));
    share.beginSample(at(4000ms));
    EXPECT_EQ(share.add(9, 500, 100), 2500U);
}

TEST(ProcessShare, CountsAReusedIdentifierAsNew) {
    ProcessShare share(ticksPerSecond);
    share.beginSample(at(0ms));
    (void)share.add(7, 1, 5000);
    share.beginSample(at(4000ms));
    EXPECT_EQ(share.add(7, 2, 40), 1000U);
}

TEST(ProcessShare, RemembersTheStartsOfTheLastLookOnly) {
    ProcessShare share(ticksPerSecond);
    EXPECT_EQ(share.startInLastSample(7), std::nullopt);
    share.beginSample(at(0ms));
    (void)share.add(7, 11, 0);
    (void)share.add(8, 12, 0);
    EXPECT_EQ(share.startInLastSample(7), 11U);
    share.beginSample(at(4000ms));
    (void)share.add(7, 13, 0); // another process has the identifier now
    EXPECT_EQ(share.startInLastSample(7), 13U);
    EXPECT_EQ(share.startInLastSample(8), std::nullopt);
}

TEST(ProcessShare, IsNeverNegative) {
    ProcessShare share(ticksPerSecond);
    share.beginSample(at(0ms));
    (void)share.add(7, 1, 5000);
    share.beginSample(at(4000ms));
    EXPECT_EQ(share.add(7, 1, 4000), 0U);
}

TEST(ProcessShare, IsZeroWithoutAnInterval) {
    ProcessShare share(ticksPerSecond);
    share.beginSample(at(0ms));
    (void)share.add(7, 1, 0);
    share.beginSample(at(0ms));
    EXPECT_EQ(share.add(7, 1, 100), 0U);
}

TEST(ProcessShare, StaysRepresentable) {
    ProcessShare share(ticksPerSecond);
    share.beginSample(at(0ms));
    share.beginSample(at(1ms));
    EXPECT_LE(share.add(7, 1, std::numeric_limits<std::uint64_t>::max()), 1'000'000'000'000U);
}

TEST(ProcessShare, RemembersALookForTenSeconds) {
    ProcessShare share(ticksPerSecond);
    EXPECT_FALSE(share.hasRecentSample(at(0ms)));
    share.beginSample(at(0ms));
    EXPECT_TRUE(share.hasRecentSample(at(10'000ms)));
    EXPECT_FALSE(share.hasRecentSample(at(10'001ms)));
}

} // namespace Fenwhirl
