#include "Fenwhirl/Monitoring/PollDecision.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>
#include <vector>

namespace Fenwhirl {

namespace {

using std::chrono::duration;

constexpr FanReading fan0 = {0, 2000, 1200, 6000, 2000};
constexpr FanReading fan1 = {1, 2000, 1000, 5000.9, 2000};

FanSetting constant(double rpm) {
    return {FanModeKind::constant, rpm, {}, 50, 90};
}

// Decides one poll of two fans at this temperature, or without a temperature.
PollDecision decideAt(std::optional<double> celsius, const FanSettings& settings = {},
                      bool wasBoosting = false, bool protect = true, double protectAt = 90) {
    const std::vector<FanReading> fans = {fan0, fan1};
    std::vector<TemperatureReading> temperatures;
    if (celsius) {
        temperatures.push_back({"TC0P", *celsius});
    }
    return decide({fans, temperatures, settings, protect, protectAt}, wasBoosting);
}

FanRequest manual(int index, std::int64_t rpm) {
    return {index, {rpm}, false};
}

FanRequest automatic(int index) {
    return {index, {}, false};
}

std::optional<HelperCommand> after(const SentTargets& sent, const FanRequest& request, double nowSeconds) {
    return commandFor(request, sent, true, duration<double>(nowSeconds));
}

SentTargets sentAt(const FanRequest& request, double seconds) {
    SentTargets sent;
    record(sent, request, duration<double>(seconds));
    return sent;
}

} // namespace

TEST(PollDecision, FansWithoutSettingStayAutomatic) {
    const auto decision = decideAt(60);
    EXPECT_EQ(decision.fanRequests, (std::vector<FanRequest>{automatic(0), automatic(1)}));
    EXPECT_FALSE(decision.wantsManualControl);
    EXPECT_EQ(decision.primaryCelsius, 60);
}

TEST(PollDecision, SettingsBelongToTheFansIndex) {
    const auto decision = decideAt(60, {{1, constant(3000)}, {7, constant(4000)}});
    EXPECT_EQ(decision.fanRequests, (std::vector<FanRequest>{automatic(0), manual(1, 3000)}));
    EXPECT_TRUE(decision.wantsManualControl);
}

TEST(PollDecision, EmergencyBeginsAtExactly92AndHandsEveryFanBack) {
    const FanSettings settings = {{0, constant(3000)}};
    for (const double celsius : {92.0, 92.1, 129.0}) {
        const auto decision = decideAt(celsius, settings, true);
        EXPECT_EQ(decision.fanRequests, (std::vector<FanRequest>{automatic(0), automatic(1)})) << celsius;
        EXPECT_FALSE(decision.wantsManualControl);
        EXPECT_TRUE(decision.boosting); // protection continues when the emergency ends
    }
    EXPECT_TRUE(decideAt(91.999, settings).wantsManualControl);
}

TEST(PollDecision, EmergencyDoesNotDependOnProtectionOrThresholds) {
    const auto decision = decideAt(92, {{0, constant(3000)}}, false, false, 200);
    EXPECT_EQ(decision.fanRequests[0], automatic(0));
}

TEST(PollDecision, ProtectionDrivesEveryFanAtItsTruncatedMaximum) {
    const auto decision = decideAt(90, {{0, constant(1500)}});
    EXPECT_EQ(decision.fanRequests, (std::vector<FanRequest>{manual(0, 6000), manual(1, 5000)}));
    EXPECT_TRUE(decision.boosting);
}

TEST(PollDecision, ProtectionEndsFiveDegreesBelowItsThreshold) {
    struct Row {
        double celsius;
        bool before;
        bool after;
    };

    for (const Row& row :
         {Row{89.999, false, false}, Row{90, false, true}, Row{86, true, true}, Row{86, false, false},
          Row{85, true, true}, Row{84.999, true, false}, Row{84.999, false, false}}) {
        EXPECT_EQ(decideAt(row.celsius, {}, row.before).boosting, row.after) << row.celsius << row.before;
    }
}

TEST(PollDecision, ProtectionEndsWithItsSwitchAndWithoutTemperature) {
    EXPECT_FALSE(decideAt(91, {}, true, false).boosting);
    EXPECT_FALSE(decideAt(std::nullopt, {}, true).boosting);
}

TEST(PollDecision, ThresholdThatIsNoNumberProtectsNothing) {
    EXPECT_FALSE(decideAt(91, {}, false, true, std::numeric_limits<double>::quiet_NaN()).boosting);
}

TEST(PollDecision, WithoutTemperatureNoFanIsManual) {
    const auto decision = decideAt(std::nullopt, {{0, constant(3000)}});
    EXPECT_EQ(decision.fanRequests, (std::vector<FanRequest>{{0, {}, true}, automatic(1)}));
    EXPECT_FALSE(decision.wantsManualControl);
    EXPECT_EQ(decision.primaryCelsius, std::nullopt);
}

TEST(PollDecision, SpeedThatIsNoNumberMakesTheFanAutomatic) {
    for (const double maxRPM :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 3e38}) {
        const std::vector<FanReading> fans = {{0, 2000, 1200, maxRPM, 2000}};
        const std::vector<TemperatureReading> hot = {{"TC0P", 91}};
        const auto decision = decide({fans, hot, {}, true, 90}, false);
        EXPECT_EQ(decision.fanRequests[0], automatic(0)) << maxRPM;
    }
}

TEST(PollDecision, UsesTheLimitsOfThisPoll) {
    const std::vector<TemperatureReading> temperatures = {{"TC0P", 60}};
    const FanSettings settings = {{3, constant(9000)}};
    for (const double maxRPM : {4000.0, 5000.0}) {
        const std::vector<FanReading> fans = {{3, 2000, 1200, maxRPM, 2000}};
        EXPECT_EQ(decide({fans, temperatures, settings, false, 90}, false).fanRequests[0],
                  manual(3, static_cast<std::int64_t>(maxRPM)));
    }
}

TEST(CommandFor, FirstManualTargetIsSentAtOnce) {
    EXPECT_EQ(after({}, manual(1, 2000), 0), (HelperCommand{"set", "1", "2000"}));
}

TEST(CommandFor, AutomaticFanIsLeftAlone) {
    EXPECT_EQ(after({}, automatic(1), 0), std::nullopt);
    EXPECT_EQ(after(sentAt(automatic(1), 0), automatic(1), 1000), std::nullopt);
}

TEST(CommandFor, FanThatWasManualIsHandedBackOnce) {
    SentTargets sent = sentAt(manual(1, 2000), 0);
    EXPECT_EQ(after(sent, automatic(1), 0.1), (HelperCommand{"auto", "1"}));
    record(sent, automatic(1), duration<double>(0.1));
    EXPECT_EQ(after(sent, automatic(1), 100), std::nullopt);
}

TEST(CommandFor, SmallChangeWaitsUntilTenSecondsHavePassed) {
    const SentTargets sent = sentAt(manual(0, 2000), 100);
    for (const std::int64_t rpm : {1901, 2000, 2080, 2099}) {
        EXPECT_EQ(after(sent, manual(0, rpm), 110), std::nullopt) << rpm;
        EXPECT_EQ(after(sent, manual(0, rpm), 110.001), (HelperCommand{"set", "0", std::to_string(rpm)}));
    }
}

TEST(CommandFor, ChangeOfAHundredIsSentAtOnce) {
    const SentTargets sent = sentAt(manual(0, 2000), 100);
    EXPECT_EQ(after(sent, manual(0, 2100), 100.1), (HelperCommand{"set", "0", "2100"}));
    EXPECT_EQ(after(sent, manual(0, 1900), 100.1), (HelperCommand{"set", "0", "1900"}));
}

TEST(CommandFor, ManualAfterAutomaticIsSentAtOnce) {
    EXPECT_EQ(after(sentAt(automatic(0), 100), manual(0, 2000), 100.1), (HelperCommand{"set", "0", "2000"}));
}

TEST(CommandFor, NothingIsSentWithoutTheHelper) {
    const SentTargets sent = sentAt(manual(0, 2000), 0);
    EXPECT_EQ(commandFor(manual(0, 5000), sent, false, duration<double>(100)), std::nullopt);
    EXPECT_EQ(commandFor(automatic(0), sent, false, duration<double>(100)), std::nullopt);
}

TEST(CommandFor, DistanceOfExtremeSpeedsDoesNotOverflow) {
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    constexpr auto highest = std::numeric_limits<std::int64_t>::max();
    EXPECT_TRUE(after(sentAt(manual(0, lowest), 0), manual(0, highest), 1));
    EXPECT_TRUE(after(sentAt(manual(0, highest), 0), manual(0, lowest), 1));
}

TEST(TakeOver, AFanThatIsNotOursIsDueAtOnce) {
    SentTargets sent = sentAt(automatic(1), 100);
    takeOver(sent, 0);
    takeOver(sent, 1);
    for (const int fan : {0, 1}) {
        EXPECT_EQ(requestedRPM(sent, fan), std::nullopt) << fan;
        EXPECT_EQ(after(sent, automatic(fan), 100.1), (HelperCommand{"auto", std::to_string(fan)}));
        EXPECT_EQ(after(sent, manual(fan, 0), 100.1), (HelperCommand{"set", std::to_string(fan), "0"}));
    }
}

TEST(TakeOver, AFanThatIsOursKeepsWhatItWasSent) {
    SentTargets sent = sentAt(manual(0, 2000), 100);
    record(sent, automatic(1), duration<double>(100), false); // a refused hand-back
    takeOver(sent, 0);
    takeOver(sent, 1);
    EXPECT_EQ(requestedRPM(sent, 0), 2000);
    EXPECT_EQ(after(sent, manual(0, 2000), 100.1), std::nullopt);
    EXPECT_EQ(after(sent, automatic(1), 109.9), std::nullopt); // repeated only ten seconds later
}

} // namespace Fenwhirl
