#include "SimulatedMac/FanModel.h"

#include <gtest/gtest.h>

namespace simulated {
namespace {

constexpr FanLimits usualLimits{.minimumRPM = 2000, .maximumRPM = 6000};
constexpr AutomaticCurve usualCurve{.startCelsius = 65, .fullCelsius = 95};

TEST(FanModel, TheCurveRisesFromMinimumToMaximum) {
    EXPECT_EQ(automaticTarget(usualCurve, usualLimits, 20, true), 2000);
    EXPECT_EQ(automaticTarget(usualCurve, usualLimits, 65, true), 2000);
    EXPECT_EQ(automaticTarget(usualCurve, usualLimits, 80, true), 4000);
    EXPECT_EQ(automaticTarget(usualCurve, usualLimits, 95, true), 6000);
    EXPECT_EQ(automaticTarget(usualCurve, usualLimits, 150, true), 6000);
}

TEST(FanModel, AFanThatMayRestDoesSoWhileItIsCool) {
    AutomaticCurve resting = usualCurve;
    resting.restsWhenCool = true;
    EXPECT_EQ(automaticTarget(resting, usualLimits, 59, false), 0);
    EXPECT_EQ(automaticTarget(resting, usualLimits, 61, false), 2000);
    EXPECT_EQ(automaticTarget(resting, usualLimits, 59, true), 2000) << "one that turns goes on for a while";
    EXPECT_EQ(automaticTarget(resting, usualLimits, 49, true), 0);
}

TEST(FanModel, TheWheelNeedsTimeToReachItsTarget) {
    const double afterHalfASecond = stepFan(2000, 6000, usualLimits, 0.5);
    EXPECT_GT(afterHalfASecond, 2300);
    EXPECT_LT(afterHalfASecond, 3000);
    EXPECT_NEAR(stepFan(2000, 6000, usualLimits, 10), 6000, 5);
}

TEST(FanModel, ItCoastsDownMoreSlowlyThanItSpeedsUp) {
    const double up = stepFan(2000, 6000, usualLimits, 1) - 2000;
    const double down = 6000 - stepFan(6000, 2000, usualLimits, 1);
    EXPECT_GT(up, down);
    EXPECT_NEAR(stepFan(6000, 2000, usualLimits, 10), 2000, 5);
}

TEST(FanModel, ItNeverPassesItsTarget) {
    double rpm = 2000;
    for (int i = 0; i < 200; ++i) {
        const double next = stepFan(rpm, 3000, usualLimits, 0.05);
        EXPECT_GE(next, rpm);
        EXPECT_LE(next, 3000);
        rpm = next;
    }
}

TEST(FanModel, TargetsBeyondTheMotorEndAtItsLimits) {
    EXPECT_NEAR(stepFan(5000, 16000, usualLimits, 30), 6000, 1);
    EXPECT_NEAR(stepFan(5000, -100, usualLimits, 30), 0, 1);
}

TEST(FanModel, ManyShortStepsEqualOneLongStep) {
    double many = 2000;
    for (int i = 0; i < 20; ++i) {
        many = stepFan(many, 6000, usualLimits, 0.1);
    }
    EXPECT_NEAR(many, stepFan(2000, 6000, usualLimits, 2), 1);
}

} // namespace
} // namespace simulated
