#include "Support/ScriptedSMC.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

class SMCFanReadings : public testing::Test {
protected:
    // The fans as the table itself describes them, without any request: the simplest way to read this many
    // fans.
    [[nodiscard]] std::vector<FanReading> readOneByOne(int count) const {
        std::vector<FanReading> fans;
        for (int index = 0; index < count; ++index) {
            const auto number = [&](const char* suffix, double otherwise) {
                const std::string key = ("F" + std::to_string(index) + suffix).substr(0, 4);
                return controller.has(key) ? controller.number(key) : otherwise;
            };
            const double rpm = number("Ac", -1);
            if (rpm >= 0) {
                fans.push_back({index, rpm, number("Mn", 0), number("Mx", std::max(rpm, 1.0)),
                                number("Tg", rpm),
                                !std::isnan(number("Mx", std::numeric_limits<double>::quiet_NaN()))});
            }
        }
        return fans;
    }

    ScriptedSMC controller;
    SMC smc = controller.open();
};

TEST_F(SMCFanReadings, TheFanCountIsTruncated) {
    EXPECT_EQ(smc.fanCount(), 0);
    controller.setNumber("FNum", "ui8 ", 255);
    EXPECT_EQ(smc.fanCount(), 255);
    controller.setNumber("FNum", "flt ", 2.9);
    EXPECT_EQ(smc.fanCount(), 2);
    controller.setNumber("FNum", "flt ", -0.9);
    EXPECT_EQ(smc.fanCount(), 0);
    controller.set("FNum", "ui32", {0xFF, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(smc.fanCount(), 4294967295);
    controller.set("FNum", "{abc", {1});
    EXPECT_EQ(smc.fanCount(), 0);
}

TEST_F(SMCFanReadings, AFanReportsItsFourSpeeds) {
    controller.setNumber("FNum", "ui8 ", 1);
    controller.set("F0Ac", "fpe2", {0x12, 0x8C});
    controller.set("F0Mn", "fpe2", {0x12, 0xC0});
    controller.set("F0Mx", "fpe2", {0x65, 0x90});
    controller.setNumber("F0Tg", "flt ", 1234.5);
    EXPECT_EQ(smc.readFans(), (std::vector<FanReading>{{0, 1187, 1200, 6500, 1234.5}}));
}

TEST_F(SMCFanReadings, MissingLimitsHaveSubstitutes) {
    controller.setNumber("FNum", "ui8 ", 2);
    controller.setNumber("F0Ac", "fpe2", 2000);
    controller.setNumber("F1Ac", "fpe2", 0);
    EXPECT_EQ(smc.readFans(),
              (std::vector<FanReading>{{0, 2000, 0, 2000, 2000, false}, {1, 0, 0, 1, 0, false}}));
}

TEST_F(SMCFanReadings, AFanWithoutSpeedLeavesAGap) {
    controller.addOlderFans(3);
    controller.at("F1Ac").readResult = SMCResult::notReadable;
    const auto fans = smc.readFans();
    ASSERT_EQ(fans.size(), 2U);
    EXPECT_EQ(fans[0].index, 0);
    EXPECT_EQ(fans[1].index, 2);
}

TEST_F(SMCFanReadings, ASpeedThatDoesNotDecodeLeavesAGap) {
    controller.addOlderFans(2);
    controller.set("F0Ac", "hex_", {1, 2});
    ASSERT_EQ(smc.readFans().size(), 1U);
    EXPECT_EQ(smc.readFans()[0].index, 1);
}

TEST_F(SMCFanReadings, FansBeyondTheCountAreNotRead) {
    controller.addOlderFans(3);
    controller.setNumber("FNum", "ui8 ", 1);
    EXPECT_EQ(smc.readFans().size(), 1U);
    controller.remove("FNum");
    EXPECT_TRUE(smc.readFans().empty());
    controller.setNumber("FNum", "flt ", -5);
    EXPECT_TRUE(smc.readFans().empty());
}

TEST_F(SMCFanReadings, ValuesThatAreNoNumberAreCarried) {
    controller.addUnlockableFans(1);
    controller.set("F0Ac", "flt ", {0, 0, 0xC0, 0x7F});
    controller.set("F0Mx", "flt ", {0, 0, 0x80, 0x7F});
    const auto fans = smc.readFans();
    ASSERT_EQ(fans.size(), 1U);
    EXPECT_TRUE(std::isnan(fans[0].rpm));
    EXPECT_EQ(fans[0].maxRPM, std::numeric_limits<double>::infinity());
}

TEST_F(SMCFanReadings, FromIndexTenOnTheCutKeysAreRead) {
    controller.setNumber("FNum", "ui8 ", 12);
    controller.setNumber("F10A", "ui16", 1010);
    controller.setNumber("F11A", "ui16", 1111);
    controller.setNumber("F11M", "ui16", 900);
    EXPECT_EQ(smc.readFans(),
              (std::vector<FanReading>{{10, 1010, 0, 1010, 1010, false}, {11, 1111, 900, 900, 1111}}));
}

TEST_F(SMCFanReadings, ManyFansAreReadInOneGo) {
    controller.setNumber("FNum", "ui16", 65535);
    for (int prefix = 0; prefix < 10; ++prefix) {
        controller.setNumber("F" + std::to_string(prefix) + "Ac", "fpe2", 100 * prefix);
    }
    controller.setNumber("F123", "ui16", 123);
    const std::clock_t begin = std::clock(); // processor time, because other programs may be busy
    const auto fans = smc.readFans();
    EXPECT_LT(std::clock() - begin, 5 * CLOCKS_PER_SEC);
    EXPECT_EQ(fans, readOneByOne(65535));
    // Fans 0 to 9 by their own keys, then every index whose digits begin with 123.
    EXPECT_EQ(fans.size(), 10U + 1 + 10 + 100);
    EXPECT_EQ(fans[10], (FanReading{123, 123, 123, 123, 123}));
    EXPECT_EQ(fans.back().index, 12399);
}

TEST_F(SMCFanReadings, AMaximumThatCannotBeReadIsMarkedAsAGuess) {
    controller.addOlderFans(2);
    controller.remove("F1Mx");
    const auto fans = smc.readFans();
    ASSERT_EQ(fans.size(), 2U);
    EXPECT_TRUE(fans[0].isMaximumKnown);
    EXPECT_FALSE(fans[1].isMaximumKnown);
}

using Modes = std::map<int, bool>;

TEST_F(SMCFanReadings, ModesComeFromTheMask) {
    controller.addOlderFans(2);
    controller.setNumber("FS! ", "ui16", 2 + 8); // the fourth bit belongs to no fan
    EXPECT_EQ(smc.fanModes(), (Modes{{0, false}, {1, true}}));
    controller.remove("FNum");
    EXPECT_TRUE(smc.fanModes().at(1));
}

TEST_F(SMCFanReadings, ModesComeFromTheModeKeysWhateverTheirCase) {
    controller.addUnlockableFans(3);
    controller.setNumber("F1Md", "ui8 ", 1);
    controller.remove("F2Md");
    controller.setNumber("F2md", "ui8 ", 3);
    EXPECT_EQ(smc.fanModes(), (Modes{{0, false}, {1, true}, {2, true}}));
    controller.remove("FNum");
    EXPECT_EQ(smc.fanModes(), (Modes{{0, false}, {1, true}, {2, true}}));
    controller.remove("F0Md"); // without a count, fans are searched for in sequence
    EXPECT_EQ(smc.fanModes(), Modes());
}

TEST_F(SMCFanReadings, AFanIsManualByItsMaskThoughItsModeIsZero) {
    controller.addUnlockableFans(2);
    controller.setNumber("FS! ", "ui16", 2);
    EXPECT_EQ(smc.fanModes(), (Modes{{0, false}, {1, true}}));
}

TEST_F(SMCFanReadings, AFanIsManualByEitherOfItsTwoModeKeys) {
    controller.addUnlockableFans(3);
    controller.setNumber("F0Md", "ui8 ", 1);
    controller.setNumber("F0md", "ui8 ", 0);
    controller.setNumber("F1md", "ui8 ", 1);
    controller.setNumber("F2md", "ui8 ", 0);
    EXPECT_EQ(smc.fanModes(), (Modes{{0, true}, {1, true}, {2, false}}));
}

TEST_F(SMCFanReadings, AMaskThatIsNoSetOfSixteenBitsTellsNoMode) {
    controller.addUnlockableFans(2);
    controller.remove("F1Md");
    // Two of these would be the bits of both fans if they were cut to sixteen bits.
    for (const double mask : {65539.0, -65533.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        controller.setNumber("FS! ", "flt ", mask);
        EXPECT_EQ(smc.fanModes(), (Modes{{0, false}})) << mask;
    }
    controller.setNumber("FS! ", "flt ", 65535);
    EXPECT_EQ(smc.fanModes(), (Modes{{0, true}, {1, true}}));
}

TEST_F(SMCFanReadings, EveryModeButZeroIsManual) {
    controller.addUnlockableFans(3);
    controller.setNumber("F1Md", "flt ", -1);
    controller.setNumber("F2Md", "flt ", 0.25);
    EXPECT_EQ(smc.fanModes(), (Modes{{0, false}, {1, true}, {2, true}}));
}

TEST_F(SMCFanReadings, AModeThatCannotBeReadIsLeftOut) {
    controller.addUnlockableFans(2);
    controller.at("F0Md").readResult = 0x84;
    EXPECT_EQ(smc.fanModes(), (Modes{{1, false}}));
}

TEST_F(SMCFanReadings, FromIndexTenOnAKeyOfLimitsIsNotTakenForAMode) {
    controller.setNumber("FNum", "ui8 ", 12);
    controller.setNumber("F11M", "ui16", 900);
    EXPECT_EQ(smc.fanModes(), Modes());
    controller.setNumber("FS! ", "ui16", 1U << 11U);
    EXPECT_TRUE(smc.fanModes().at(11));
}

TEST_F(SMCFanReadings, TheStopFlagAndADeadConnectionEndTheReading) {
    controller.addOlderFans(5);
    std::atomic<bool> stop = true;
    smc.setStopFlag(&stop);
    EXPECT_TRUE(smc.readFans().empty());
    stop = false;
    EXPECT_EQ(smc.readFans().size(), 5U);
    controller.set("FNum", "ui32", {0xFF, 0xFF, 0xFF, 0xFF});
    controller.diesAtRequest = controller.requests.size() + 9;
    EXPECT_LE(smc.readFans().size(), 1U);
}

using SMCFanReadingsDeathTest = SMCFanReadings;

TEST_F(SMCFanReadingsDeathTest, AFanCountThatIsNoUsableNumberEndsTheProcess) {
    using Bytes = ScriptedSMC::Bytes;
    for (const Bytes& count : {Bytes{0, 0, 0xC0, 0x7F}, Bytes{0, 0, 0x80, 0xFF}, Bytes{0, 0, 0x00, 0x5F}}) {
        controller.set("FNum", "flt ", count);
        EXPECT_EXIT(static_cast<void>(smc.fanCount()), testing::KilledBySignal(SIGABRT), "");
        EXPECT_EXIT(static_cast<void>(smc.readFans()), testing::KilledBySignal(SIGABRT), "");
        EXPECT_EXIT(static_cast<void>(smc.resetFans()), testing::KilledBySignal(SIGABRT), "");
    }
}

} // namespace

} // namespace Fenwhirl
