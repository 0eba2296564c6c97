#include "SimulatedMac/ThermalModel.h"

#include "SimulatedMac/MachineProfile.h"

#include <gtest/gtest.h>

namespace simulated {
namespace {

// A notebook with fans, in a room of 24 °C.
ThermalParameters notebook() {
    return thermalParameters({.processorWatts = 45, .graphicsWatts = 0}, 24, true);
}

ThermalState cold() {
    ThermalState state;
    state.celsius.fill(24);
    return state;
}

double die(const ThermalState& state) {
    return at(state.celsius, ThermalNode::die);
}

double sink(const ThermalState& state) {
    return at(state.celsius, ThermalNode::sink);
}

TEST(ThermalModel, WithoutHeatEverythingStaysAtRoomTemperature) {
    const ThermalState later = step(cold(), notebook(), {}, 3600);
    for (const double celsius : later.celsius) {
        EXPECT_DOUBLE_EQ(celsius, 24);
    }
}

TEST(ThermalModel, HeatReachesTheDieFirstAndTheEnclosureLast) {
    const ThermalState later = step(cold(), notebook(), {.processorWatts = 20, .airflow = 0.4}, 5);
    EXPECT_GT(die(later) - 24, 8);
    EXPECT_GT(die(later), sink(later));
    EXPECT_GT(sink(later), at(later.celsius, ThermalNode::board));
    EXPECT_GT(at(later.celsius, ThermalNode::board), at(later.celsius, ThermalNode::enclosure));
    EXPECT_LT(at(later.celsius, ThermalNode::enclosure) - 24, 0.1);
}

TEST(ThermalModel, TheDieHasMostOfItsRiseAfterTwoSecondsTheSinkNeedsMore) {
    const ThermalInputs inputs{.processorWatts = 20, .airflow = 0.4};
    const ThermalState end = balance(notebook(), inputs);
    const ThermalState soon = step(cold(), notebook(), inputs, 3);
    const double dieAboveSinkAtTheEnd = die(end) - sink(end);
    EXPECT_GT(die(soon) - sink(soon), 0.8 * dieAboveSinkAtTheEnd);
    EXPECT_LT(sink(soon) - 24, 0.2 * (sink(end) - 24));
}

TEST(ThermalModel, StepsEndAtTheBalance) {
    const ThermalInputs inputs{.processorWatts = 20, .graphicsWatts = 3, .airflow = 0.4};
    const ThermalState end = balance(notebook(), inputs);
    const ThermalState later = step(cold(), notebook(), inputs, 7200);
    for (std::size_t i = 0; i < thermalNodeCount; ++i) {
        EXPECT_NEAR(later.celsius[i], end.celsius[i], 0.01) << i;
    }
}

TEST(ThermalModel, TheBalanceGivesBackTheHeatThatGoesIn) {
    const ThermalInputs inputs{.processorWatts = 20, .graphicsWatts = 3, .airflow = 0.4};
    const ThermalState end = balance(notebook(), inputs);
    const double out = sinkConductance(notebook(), 0.4) * (sink(end) - 24) +
                       notebook().enclosureToRoom * (at(end.celsius, ThermalNode::enclosure) - 24);
    EXPECT_NEAR(out, 23, 1e-9);
}

TEST(ThermalModel, ManyShortStepsEqualOneLongStep) {
    const ThermalInputs inputs{.processorWatts = 30, .airflow = 0.5};
    ThermalState many = cold();
    for (int i = 0; i < 100; ++i) {
        many = step(many, notebook(), inputs, 0.1);
    }
    EXPECT_NEAR(die(many), die(step(cold(), notebook(), inputs, 10)), 0.01);
}

TEST(ThermalModel, MoreAirCools) {
    double before = 1000;
    for (const double flow : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        const double celsius = die(balance(notebook(), {.processorWatts = 20, .airflow = flow}));
        EXPECT_LT(celsius, before - 1) << flow;
        before = celsius;
    }
}

TEST(ThermalModel, PowerIsHeldBackNearAHundredDegrees) {
    EXPECT_EQ(grantedPower(96), 1.0);
    EXPECT_NEAR(grantedPower(99.5), 0.55, 1e-9);
    EXPECT_NEAR(grantedPower(102), 0.1, 1e-9);
    EXPECT_NEAR(grantedPower(200), 0.1, 1e-9);
}

TEST(ThermalModel, HoweverMuchIsAskedForTheDieSettlesNearAHundredDegrees) {
    for (const double watts : {60.0, 90.0, 135.0}) {
        const ThermalState later = step(cold(), notebook(), {.processorWatts = watts, .airflow = 0.35}, 3600);
        EXPECT_GT(die(later), 97) << watts;
        EXPECT_LT(die(later), 102) << watts;
        const ThermalState further = step(later, notebook(), {.processorWatts = watts, .airflow = 0.35}, 0.5);
        EXPECT_NEAR(die(further), die(later), 0.01) << watts << ": no oscillation";
    }
}

TEST(ThermalModel, NoTimeOrNegativeTimeChangesNothing) {
    const ThermalInputs inputs{.processorWatts = 20, .airflow = 0.4};
    EXPECT_EQ(step(cold(), notebook(), inputs, 0).celsius, cold().celsius);
    EXPECT_EQ(step(cold(), notebook(), inputs, -1).celsius, cold().celsius);
}

TEST(MachineProfile, TheFoundPowerHoldsTheDieWhereItWasAskedFor) {
    const double watts = processorWattsFor(notebook(), 70, 2, 0.5);
    EXPECT_NEAR(die(balance(notebook(), {.processorWatts = watts, .graphicsWatts = 2, .airflow = 0.5})), 70,
                1e-6);
    EXPECT_EQ(processorWattsFor(notebook(), 20, 2, 0.5), 0) << "cooler than the room needs a refrigerator";
}

TEST(MachineProfile, FullPowerIsBearableAtFullFansAndTooMuchAtTheirMinimum) {
    EXPECT_LT(die(balance(notebook(), {.processorWatts = 45, .airflow = 1})), 100);
    EXPECT_GT(die(balance(notebook(), {.processorWatts = 45, .airflow = 0.33})), 100);
}

TEST(MachineProfile, TheCurveStartsAboveWhatWasSeenWithFansAtTheirMinimum) {
    EXPECT_EQ(automaticCurveThrough(50, 0).startCelsius, 65);
    EXPECT_EQ(automaticCurveThrough(85, 0).startCelsius, 89);
    EXPECT_EQ(automaticCurveThrough(120, 0).startCelsius, 90);
}

TEST(MachineProfile, TheCurvePassesThroughWhatWasSeenWithFansAboveTheirMinimum) {
    const AutomaticCurve curve = automaticCurveThrough(80, 0.5);
    const FanLimits limits{.minimumRPM = 2000, .maximumRPM = 6000};
    EXPECT_NEAR(automaticTarget(curve, limits, 80, true), 4000, 1);
}

} // namespace
} // namespace simulated
