#include "Fenwhirl/Monitoring/FanSetting.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace Fenwhirl {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

FanSetting curve(double startTemp, double maxTemp, std::string sensorKey = {}) {
    return {FanModeKind::sensor, 3000, std::move(sensorKey), startTemp, maxTemp};
}

FanSetting constant(double rpm) {
    return {FanModeKind::constant, rpm, {}, 50, 90};
}

std::optional<std::int64_t> target(const FanSetting& setting, double minRPM, double maxRPM,
                                   std::optional<double> primary) {
    return targetRPM(setting, minRPM, maxRPM, {}, primary);
}

} // namespace

TEST(FanSetting, IsAutomaticByDefault) {
    const FanSetting setting;
    EXPECT_EQ(setting.mode, FanModeKind::automatic);
    EXPECT_EQ(setting.constantRPM, 3000);
    EXPECT_EQ(setting.sensorKey, "");
    EXPECT_EQ(setting.startTemp, 50);
    EXPECT_EQ(setting.maxTemp, 90);
    EXPECT_EQ(target(setting, 1200, 6000, 70), std::nullopt);
}

TEST(FanSetting, ModesHaveTheirStoredWordsInOrder) {
    std::vector<std::string_view> words;
    for (const FanModeKind mode : allFanModeKinds) {
        words.push_back(rawValue(mode));
        EXPECT_EQ(fanModeFromRawValue(rawValue(mode)), mode);
    }
    EXPECT_EQ(words, (std::vector<std::string_view>{"auto", "constant", "sensor"}));
    for (const auto* unknown : {"", "Auto", "auto ", "manual"}) {
        EXPECT_EQ(fanModeFromRawValue(unknown), std::nullopt) << unknown;
    }
}

TEST(FanSetting, CurveIsALineBetweenItsTemperatures) {
    EXPECT_EQ(target(curve(50, 90), 1200, 6000, 70), 3600);
    EXPECT_EQ(target(curve(65, 95), 1000, 5000, 70), 1650); // 1666.7, rounded to the nearest 50
}

TEST(FanSetting, CurveEndsAtTheFansOwnLimits) {
    for (const double celsius : {-10.0, 0.0, 49.9, 50.0}) {
        EXPECT_EQ(target(curve(50, 90), 1200, 6000, celsius), 1200) << celsius;
    }
    for (const double celsius : {90.0, 90.1, 130.0}) {
        EXPECT_EQ(target(curve(50, 90), 1200, 6000, celsius), 6000) << celsius;
    }
}

TEST(FanSetting, CurveRoundsHalvesAwayFromZero) {
    EXPECT_EQ(target(curve(0, 100), 0, 100, 25), 50); // 25 rpm lies halfway between 0 and 50
    EXPECT_EQ(target(curve(0, 100), 0, 100, 24.9), 0);
    EXPECT_EQ(target(curve(0, 100), -100, 0, 75), -50); // -25
}

TEST(FanSetting, CurveWithoutSpanRisesOverOneDegree) {
    for (const double maxTemp : {60.0, 60.5, 40.0, -1000.0}) {
        EXPECT_EQ(target(curve(60, maxTemp), 1200, 6000, 60), 1200) << maxTemp;
        EXPECT_EQ(target(curve(60, maxTemp), 1200, 6000, 60.5), 3600) << maxTemp;
        EXPECT_EQ(target(curve(60, maxTemp), 1200, 6000, 61), 6000) << maxTemp;
    }
}

TEST(FanSetting, CurveFollowsItsOwnSensor) {
    const std::vector<TemperatureReading> readings = {{"TC0P", 50}, {"TG0P", 70}, {"TG0P", 90}};
    EXPECT_EQ(targetRPM(curve(50, 90, "TG0P"), 1200, 6000, readings, 50), 3600); // the first of two
    EXPECT_EQ(targetRPM(curve(50, 90, "tg0p"), 1200, 6000, readings, 90), 6000); // no such key: the main one
    EXPECT_EQ(targetRPM(curve(50, 90, "TG0P"), 1200, 6000, {}, 90), 6000);
    EXPECT_EQ(targetRPM(curve(-50, 50, "TG0P"), 1000, 5000, {}, std::nullopt), 3000); // 0 °C
}

TEST(FanSetting, ConstantStaysWithinTheFansRange) {
    EXPECT_EQ(target(constant(500), 1200, 6000, 70), 1200);
    EXPECT_EQ(target(constant(9000), 1200, 6000, 70), 6000);
    EXPECT_EQ(target(constant(2345.9), 1200, 6000, 70), 2345);
    EXPECT_EQ(target(constant(2000), 1200, 6000, std::nullopt), 2000);
}

TEST(FanSetting, MaximumWinsWhenItLiesBelowTheMinimum) {
    for (const double rpm : {500.0, 1500.0, 9000.0}) {
        EXPECT_EQ(target(constant(rpm), 2000, 1000, 70), 1000) << rpm;
    }
}

TEST(FanSetting, NumbersThatAreNoSpeedsMakeTheFanAutomatic) {
    EXPECT_EQ(target(constant(notANumber), 1200, 6000, 70), std::nullopt);
    EXPECT_EQ(target(constant(3000), notANumber, 6000, 70), std::nullopt);
    EXPECT_EQ(target(constant(3000), 1200, notANumber, 70), std::nullopt);
    EXPECT_EQ(target(constant(infinity), 1200, infinity, 70), std::nullopt);
    EXPECT_EQ(target(constant(1e300), 1200, 1e300, 70), std::nullopt);
    EXPECT_EQ(target(curve(50, 90), 1200, 3e38, 90), std::nullopt);
    EXPECT_EQ(target(curve(50, 90), 1200, infinity, 70), std::nullopt);
    EXPECT_EQ(target(curve(50, 90), notANumber, 6000, 70), std::nullopt);
    EXPECT_EQ(target(curve(notANumber, 90), 1200, 6000, 70), std::nullopt);
    EXPECT_EQ(target(curve(50, notANumber), 1200, 6000, 70), std::nullopt);
    EXPECT_EQ(target(curve(50, 90), 1200, 6000, notANumber), std::nullopt);
}

TEST(FanSetting, ExtremeButFiniteSettingsStayInRange) {
    EXPECT_EQ(target(constant(1e300), 1200, 6000, 70), 6000);
    EXPECT_EQ(target(constant(-1e300), 1200, 6000, 70), 1200);
    EXPECT_EQ(target(curve(1.7e308, 90), 1200, 6000, 70), 1200);
    EXPECT_EQ(target(curve(-1.7e308, 1.7e308), 1200, 6000, 70), 1200); // an infinite span
    EXPECT_EQ(target(curve(-1.7e308, 90), 1200, 6000, 70), 6000);
}

} // namespace Fenwhirl
