#include "Fenwhirl/Views/Components/Stepping.h"

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(NearestStep, IsARoundNumberWhereverTheRangeBegins) {
    EXPECT_EQ(nearestStep(2694, 1200, 5777, 50), 2700);
    EXPECT_EQ(nearestStep(2674, 1200, 5777, 50), 2650);
    EXPECT_EQ(nearestStep(5211, 2160, 5777, 50), 5200);
    EXPECT_EQ(nearestStep(2230, 2160, 5777, 50), 2250);
}

TEST(NearestStep, ReachesALowerEndThatIsNotOnTheGrid) {
    EXPECT_EQ(nearestStep(2160, 2160, 5777, 50), 2160);
    EXPECT_EQ(nearestStep(100, 2160, 5777, 50), 2160);
    EXPECT_EQ(nearestStep(2170, 2160, 5777, 50), 2160);
    EXPECT_EQ(nearestStep(2190, 2160, 5777, 50), 2200);
}

TEST(NearestStep, ReachesAnUpperEndThatIsNotOnTheGrid) {
    EXPECT_EQ(nearestStep(5777, 1200, 5777, 50), 5777);
    EXPECT_EQ(nearestStep(9999, 1200, 5777, 50), 5777);
    EXPECT_EQ(nearestStep(5760, 1200, 5777, 50), 5750);
    EXPECT_EQ(nearestStep(5770, 1200, 5777, 50), 5777);
}

TEST(NearestStep, ARangeNarrowerThanAStepHasItsTwoEnds) {
    EXPECT_EQ(nearestStep(1200.2, 1200, 1201, 50), 1200);
    EXPECT_EQ(nearestStep(1200.8, 1200, 1201, 50), 1201);
}

TEST(NearestStep, OddRangesAndNoNumbersGiveTheLowerEnd) {
    EXPECT_EQ(nearestStep(5, 10, 10, 1), 10);
    EXPECT_EQ(nearestStep(5, 10, 3, 1), 10);
    EXPECT_EQ(nearestStep(nan, 10, 20, 1), 10);
    EXPECT_EQ(nearestStep(15, 10, nan, 1), 10);
}

TEST(NearestStep, WithoutAStepEveryValueIsReachable) {
    EXPECT_EQ(nearestStep(12.34, 10, 20, 0), 12.34);
}

TEST(ValueAfterSteps, MovesByWholeSteps) {
    EXPECT_EQ(valueAfterSteps(1200, 1200, 5777, 50, 1), 1250);
    EXPECT_EQ(valueAfterSteps(1250, 1200, 5777, 50, -1), 1200);
    EXPECT_EQ(valueAfterSteps(2000, 1200, 5777, 50, 10), 2500);
}

TEST(ValueAfterSteps, StopsAtTheEnds) {
    EXPECT_EQ(valueAfterSteps(5750, 1200, 5777, 50, 1), 5777);
    EXPECT_EQ(valueAfterSteps(5777, 1200, 5777, 50, 1), 5777);
    EXPECT_EQ(valueAfterSteps(1220, 1200, 5777, 50, -10), 1200);
    EXPECT_EQ(valueAfterSteps(5777, 1200, 5777, 50, -1), 5750);
    EXPECT_EQ(valueAfterSteps(2160, 2160, 5777, 50, 1), 2200);
    EXPECT_EQ(valueAfterSteps(2200, 2160, 5777, 50, -1), 2160);
}

TEST(ValueAfterSteps, AlwaysMovesAndFromOutsideComesIn) {
    EXPECT_GT(valueAfterSteps(1210, 1200, 5777, 50, 1), 1210);
    EXPECT_LT(valueAfterSteps(1210, 1200, 5777, 50, -1), 1210);
    EXPECT_EQ(valueAfterSteps(800, 1200, 5777, 50, 1), 1250);
    EXPECT_EQ(valueAfterSteps(1200, 1200, 1201, 50, 1), 1201);
}

TEST(CanStep, NotWhenItWouldLeaveTheRange) {
    EXPECT_TRUE(canStep(75, 30, 80, 5, 1));
    EXPECT_FALSE(canStep(80, 30, 80, 5, 1));
    EXPECT_FALSE(canStep(78, 30, 80, 5, 1));
    EXPECT_TRUE(canStep(35, 30, 80, 5, -1));
    EXPECT_FALSE(canStep(30, 30, 80, 5, -1));
    EXPECT_TRUE(canStep(20, 30, 80, 5, 1));
    EXPECT_FALSE(canStep(nan, 30, 80, 5, 1));
}

TEST(RangeFraction, IsBetweenZeroAndOneWhateverComes) {
    EXPECT_EQ(rangeFraction(15, 10, 20), 0.5);
    EXPECT_EQ(rangeFraction(5, 10, 20), 0.0);
    EXPECT_EQ(rangeFraction(25, 10, 20), 1.0);
    EXPECT_EQ(rangeFraction(15, 10, 10), 0.0);
    EXPECT_EQ(rangeFraction(nan, 10, 20), 0.0);
}

} // namespace

} // namespace Fenwhirl
