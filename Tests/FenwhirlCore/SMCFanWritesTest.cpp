#include "Support/ScriptedSMC.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

using namespace std::chrono_literals;
using Write = ScriptedSMC::Write;
using Writes = std::vector<Write>;

constexpr double infiniteSpeed = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class SMCFanWrites : public testing::Test {
protected:
    ScriptedSMC controller;
    SMC smc = controller.open();
};

TEST_F(SMCFanWrites, OlderFirmwareGetsItsMaskAndTheTarget) {
    controller.addOlderFans(2);
    EXPECT_TRUE(smc.setFanSpeed(1, 2500));
    EXPECT_EQ(controller.writes, (Writes{{"FS! ", {0, 2}, true}, {"F1Tg", {0x27, 0x10}, true}}));
    EXPECT_TRUE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.number("FS! "), 3);
}

TEST_F(SMCFanWrites, NewerFirmwareIsUnlockedSetToManualAndGivenATarget) {
    controller.addUnlockableFans(1);
    EXPECT_TRUE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.writes,
              (Writes{{"Ftst", {1}, true}, {"F0Md", {1}, true}, {"F0Tg", {0x00, 0x40, 0x1C, 0x45}, true}}));
    EXPECT_EQ(controller.waited, 0ms);
}

TEST_F(SMCFanWrites, WithoutAnyModeTheTargetDecides) {
    controller.setNumber("F0Tg", "fpe2", 0);
    EXPECT_TRUE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.writes, (Writes{{"F0Tg", {0x27, 0x10}, true}}));
}

TEST_F(SMCFanWrites, TheLowerCaseModeIsUsedWhereItIsTheOnlyOne) {
    controller.setNumber("F0md", "ui8 ", 0);
    controller.setNumber("F0Tg", "fpe2", 0);
    EXPECT_EQ(smc.fanModeKey(0), "F0md");
    EXPECT_TRUE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.number("F0md"), 1);
    controller.setNumber("F0Md", "ui8 ", 0);
    EXPECT_EQ(smc.fanModeKey(0), "F0Md");
    EXPECT_EQ(smc.fanModeKey(1), std::nullopt);
}

TEST_F(SMCFanWrites, TheSpeedIsBroughtIntoTheFansRange) {
    struct Row {
        double minimum, maximum, requested, written;
    };

    controller.setNumber("F0Tg", "flt ", 0);
    for (const Row& row :
         {Row{1200, 6000, 100, 1200}, Row{1200, 6000, 1199.5, 1200}, Row{1200, 6000, 1200, 1200},
          Row{1200, 6000, 1200.5, 1200.5}, Row{1200, 6000, 6000, 6000}, Row{1200, 6000, 9000, 6000},
          Row{1200, 6000, infiniteSpeed, 6000}, Row{1200, 6000, -infiniteSpeed, 1200},
          Row{6000, 1200, 3000, 1200}, Row{6000, 1200, 9000, 1200}, Row{-500, 6000, -900, -500},
          Row{notANumber, 6000, 100, 100}, Row{1200, notANumber, 9000, 9000},
          Row{0, 0x1p127, 0x1p126, 0x1p126}}) {
        controller.setNumber("F0Mn", "flt ", row.minimum);
        controller.setNumber("F0Mx", "flt ", row.maximum);
        EXPECT_TRUE(smc.setFanSpeed(0, row.requested));
        EXPECT_EQ(controller.number("F0Tg"), row.written)
            << row.minimum << ' ' << row.maximum << ' ' << row.requested;
    }
}

TEST_F(SMCFanWrites, WithoutLimitsTheRangeIsTenThousand) {
    controller.setNumber("F0Tg", "flt ", 0);
    EXPECT_TRUE(smc.setFanSpeed(0, 20000));
    EXPECT_EQ(controller.number("F0Tg"), 10000);
    EXPECT_TRUE(smc.setFanSpeed(0, -7));
    EXPECT_EQ(controller.number("F0Tg"), 0);
}

TEST_F(SMCFanWrites, FixedPointTargetsEndAtSixteenThousand) {
    controller.setNumber("F0Tg", "fpe2", 0);
    controller.setNumber("F0Mx", "flt ", 3e38);
    EXPECT_TRUE(smc.setFanSpeed(0, 30000));
    EXPECT_EQ(controller.number("F0Tg"), 16000);
    controller.setNumber("F0Tg", "flt ", 0);
    EXPECT_TRUE(smc.setFanSpeed(0, 30000));
    EXPECT_EQ(controller.number("F0Tg"), 30000);
}

TEST_F(SMCFanWrites, ASpeedThatIsNoNumberWritesNothing) {
    controller.addOlderFans(1);
    controller.addUnlockableFans(1);
    EXPECT_FALSE(smc.setFanSpeed(0, notANumber));
    controller.setNumber("F0Mx", "flt ", notANumber);
    EXPECT_FALSE(smc.setFanSpeed(0, infiniteSpeed));
    EXPECT_FALSE(smc.setFanSpeed(0, 1e300)); // infinite as a "flt "
    controller.setNumber("F0Mx", "flt ", infiniteSpeed);
    EXPECT_FALSE(smc.setFanSpeed(0, infiniteSpeed));
    controller.setNumber("F0Mx", "flt ", -infiniteSpeed);
    EXPECT_FALSE(smc.setFanSpeed(0, 2000));
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(SMCFanWrites, TheMaskKeepsTheOtherFans) {
    controller.addOlderFans(1);
    for (const auto& [before, index, after] :
         {std::tuple(0x0000, 0, 0x0001), {0xFFFE, 0, 0xFFFF}, {0x0005, 1, 0x0007}, {0x8001, 1, 0x8003}}) {
        controller.setNumber("FS! ", "ui16", before);
        controller.setNumber("F" + std::to_string(index) + "Tg", "fpe2", 0);
        EXPECT_TRUE(smc.setFanSpeed(index, 2000));
        EXPECT_EQ(controller.number("FS! "), after);
        EXPECT_TRUE(smc.resetFan(index));
        EXPECT_EQ(controller.number("FS! "), before & ~(1 << index));
    }
}

TEST_F(SMCFanWrites, AFanBeyondTheMaskLeavesItUnchanged) {
    controller.setNumber("FS! ", "ui16", 5);
    for (const int index : {16, 17, 32, 64, 255, 65535}) {
        const std::string target = ("F" + std::to_string(index) + "Tg").substr(0, 4);
        controller.setNumber(target, "ui16", 0);
        controller.writes.clear();
        EXPECT_TRUE(smc.setFanSpeed(index, 2000));
        ASSERT_FALSE(controller.writes.empty());
        EXPECT_EQ(controller.writes[0], (Write{"FS! ", {0, 5}, true})) << index;
        controller.writes.clear();
        EXPECT_TRUE(smc.resetFan(index));
        ASSERT_FALSE(controller.writes.empty());
        EXPECT_EQ(controller.writes[0], (Write{"FS! ", {0, 5}, true})) << index;
    }
}

TEST_F(SMCFanWrites, TheMaskIsWrittenInItsOwnType) {
    controller.addOlderFans(9);
    controller.setNumber("FS! ", "ui8 ", 0);
    EXPECT_TRUE(smc.setFanSpeed(8, 2000));
    EXPECT_EQ(controller.number("FS! "), 255); // bit 8 does not fit into a byte
    controller.set("FS! ", "flt ", {0, 0, 0, 0xBF});
    EXPECT_TRUE(smc.setFanSpeed(0, 2000)); // -0.5 becomes 0
    EXPECT_EQ(controller.number("FS! "), 1);
    controller.setNumber("FS! ", "flt ", 65535.5);
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_EQ(controller.number("FS! "), 65534);
}

TEST_F(SMCFanWrites, AMaskThatCannotBeWrittenDoesNotFailTheSpeed) {
    controller.addOlderFans(1);
    controller.at("FS! ").writeResult = SMCResult::notWritable;
    EXPECT_TRUE(smc.setFanSpeed(0, 2000));
    EXPECT_FALSE(smc.resetFan(0));
    controller.set("FS! ", "ui32", {0, 0, 0, 1}); // a type that can be read but not written
    EXPECT_TRUE(smc.setFanSpeed(0, 2000));
    EXPECT_FALSE(smc.resetFan(0));
}

TEST_F(SMCFanWrites, AnUnlockThatCannotBeWrittenDoesNotFailTheSpeed) {
    controller.addOlderFans(1);
    controller.setNumber("Ftst", "ui8 ", 0);
    controller.at("Ftst").writeResult = SMCResult::notWritable;
    EXPECT_TRUE(smc.setFanSpeed(0, 2000));
}

TEST_F(SMCFanWrites, TheTargetDecides) {
    controller.addUnlockableFans(1);
    controller.at("F0Tg").writeResult = SMCResult::notWritable;
    EXPECT_FALSE(smc.setFanSpeed(0, 2000));
    controller.set("F0Tg", "sp78", {0, 0});
    EXPECT_FALSE(smc.setFanSpeed(0, 2000));
    controller.remove("F0Tg");
    EXPECT_FALSE(smc.setFanSpeed(0, 2000));
}

TEST_F(SMCFanWrites, TheModeIsTriedUntilTheUnlockIsHonoured) {
    for (int refused = 0; refused <= 21; ++refused) {
        ScriptedSMC fresh;
        fresh.addUnlockableFans(1);
        fresh.refusedModeWrites = refused;
        SMC connection = fresh.open();
        const bool isExpectedToSucceed = refused <= 20;
        EXPECT_EQ(connection.setFanSpeed(0, 2500), isExpectedToSucceed) << refused;
        EXPECT_EQ(fresh.waited, 200ms * std::min(refused, 20));
        EXPECT_EQ(fresh.number("F0Md"), isExpectedToSucceed ? 1 : 0);
        EXPECT_EQ(fresh.number("F0Tg"), 2500); // written in any case
    }
}

TEST_F(SMCFanWrites, WithoutAnUnlockARefusedModeIsToleratedAndNotRetried) {
    controller.addOlderFans(1);
    controller.setNumber("F0Md", "ui8 ", 0);
    controller.at("F0Md").writeResult = SMCResult::notWritable;
    EXPECT_TRUE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.waited, 0ms);
    EXPECT_EQ(controller.writes.size(), 3U);
}

TEST_F(SMCFanWrites, AModeThatCannotBeEncodedIsRetriedOnlyWithAnUnlock) {
    controller.addOlderFans(1);
    controller.setNumber("F0Md", "sp78", 0);
    EXPECT_TRUE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.waited, 0ms);
    controller.setNumber("Ftst", "ui8 ", 0);
    EXPECT_FALSE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.waited, 4000ms);
}

TEST_F(SMCFanWrites, AModeKeyThatVanishesInBetweenIsAFailure) {
    controller.addUnlockableFans(1);
    int asked = 0;
    controller.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.key == SMC::fourCC("F0Md") && asked++ > 0) {
            return ScriptedSMC::Reply();
        }
        return std::nullopt;
    };
    EXPECT_FALSE(smc.setFanSpeed(0, 2500));
    EXPECT_EQ(controller.waited, 4000ms);
}

TEST_F(SMCFanWrites, AFanThatDoesNotExistCannotBeSet) {
    controller.addUnlockableFans(1);
    EXPECT_FALSE(smc.setFanSpeed(3, 2500));
    EXPECT_FALSE(smc.setFanSpeed(-1, 2500));
    EXPECT_FALSE(smc.setFanSpeed(std::numeric_limits<std::int64_t>::max(), 2500));
    EXPECT_FALSE(smc.setFanSpeed(std::numeric_limits<std::int64_t>::min(), 2500));
    EXPECT_EQ(controller.number("F0Tg"), 2000);
}

TEST_F(SMCFanWrites, AResetReturnsEveryVariantOfTheMode) {
    controller.addOlderFans(1);
    controller.setNumber("F0Md", "ui8 ", 1);
    controller.setNumber("F0md", "ui16", 1);
    controller.setNumber("FS! ", "ui16", 1);
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_EQ(controller.writes,
              (Writes{{"FS! ", {0, 0}, true}, {"F0Md", {0}, true}, {"F0md", {0, 0}, true}}));
}

TEST_F(SMCFanWrites, AResetFailsWithAnyOfItsWritesButDoesThemAll) {
    for (const std::string key : {"FS! ", "F0Md", "F0md"}) {
        ScriptedSMC fresh;
        fresh.addOlderFans(1);
        fresh.setNumber("F0Md", "ui8 ", 1);
        fresh.setNumber("F0md", "ui8 ", 1);
        fresh.setNumber("Ftst", "ui8 ", 1);
        fresh.at(key).writeResult = SMCResult::notWritable;
        SMC connection = fresh.open();
        EXPECT_FALSE(connection.resetFan(0)) << key;
        // Whether a fan is manual is read from the first of its mode keys.
        EXPECT_EQ(fresh.writes.size(), key == "F0Md" ? 3U : 4U) << key;
    }
}

TEST_F(SMCFanWrites, ResettingAFanThatDoesNotExistDoesNothing) {
    EXPECT_TRUE(smc.resetFan(7));
    EXPECT_TRUE(smc.resetFan(-1));
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(SMCFanWrites, TheUnlockIsTakenBackWithTheLastManualFan) {
    controller.addUnlockableFans(2);
    ASSERT_TRUE(smc.setFanSpeed(0, 2500));
    ASSERT_TRUE(smc.setFanSpeed(1, 2500));
    EXPECT_TRUE(smc.resetFan(1));
    EXPECT_EQ(controller.number("Ftst"), 1);
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_EQ(controller.number("Ftst"), 0);
    EXPECT_EQ(controller.number("F0Tg"), 2500); // left for the firmware to change
}

TEST_F(SMCFanWrites, AnyModeButZeroKeepsTheUnlock) {
    controller.addUnlockableFans(2);
    controller.setNumber("Ftst", "ui8 ", 1);
    for (const double mode : {3.0, -1.0, 0.5}) {
        controller.setNumber("F1Md", "flt ", mode);
        EXPECT_TRUE(smc.resetFan(0));
        EXPECT_EQ(controller.number("Ftst"), 1) << mode;
    }
    controller.setNumber("F1Md", "flt ", notANumber);
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_EQ(controller.number("Ftst"), 0);
}

TEST_F(SMCFanWrites, AModeThatCannotBeReadCountsAsAutomatic) {
    controller.addUnlockableFans(2);
    controller.setNumber("Ftst", "ui8 ", 1);
    controller.setNumber("F1Md", "ui8 ", 1);
    controller.at("F1Md").readResult = SMCResult::notReadable;
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_EQ(controller.number("Ftst"), 0);
}

TEST_F(SMCFanWrites, AnUnlockThatCannotBeTakenBackDoesNotFailTheReset) {
    controller.addUnlockableFans(1);
    controller.setNumber("Ftst", "ui8 ", 1);
    controller.at("Ftst").writeResult = SMCResult::notWritable;
    EXPECT_TRUE(smc.resetFan(0));
}

TEST_F(SMCFanWrites, ResettingAllNeverStopsEarly) {
    controller.addUnlockableFans(3);
    for (int fan = 0; fan < 3; ++fan) {
        ASSERT_TRUE(smc.setFanSpeed(fan, 2500));
    }
    controller.at("F1Md").writeResult = SMCResult::notWritable;
    EXPECT_FALSE(smc.resetFans());
    EXPECT_EQ(controller.number("F0Md"), 0);
    EXPECT_EQ(controller.number("F1Md"), 1);
    EXPECT_EQ(controller.number("F2Md"), 0);
    controller.at("F1Md").writeResult = SMCResult::success;
    EXPECT_TRUE(smc.resetFans());
    EXPECT_EQ(controller.number("Ftst"), 0);
}

TEST_F(SMCFanWrites, WithoutAFanCountResettingAllDoesNothing) {
    controller.addUnlockableFans(1);
    controller.remove("FNum");
    EXPECT_TRUE(smc.resetFans());
    controller.setNumber("FNum", "flt ", -2);
    EXPECT_TRUE(smc.resetFans());
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(SMCFanWrites, ADeadConnectionFailsTheHandBack) {
    controller.diesAtRequest = 0;
    EXPECT_FALSE(smc.resetFan(0));
    EXPECT_FALSE(smc.resetFans());
    EXPECT_FALSE(smc.setFanSpeed(0, 2000));
}

using SMCFanWritesDeathTest = SMCFanWrites;

TEST_F(SMCFanWritesDeathTest, AnIndexThatNoMaskCanHoldEndsTheProcessBeforeAnyWrite) {
    controller.addOlderFans(1);
    controller.hook = ScriptedSMC::exitAtWrite;
    for (const std::int64_t index :
         {std::int64_t{-1}, std::int64_t{65536}, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EXIT(static_cast<void>(smc.setFanSpeed(index, 2000)), testing::KilledBySignal(SIGABRT), "");
        EXPECT_EXIT(static_cast<void>(smc.resetFan(index)), testing::KilledBySignal(SIGABRT), "");
    }
}

TEST_F(SMCFanWritesDeathTest, AnInvalidMaskEndsTheProcessBeforeAnyWrite) {
    controller.addOlderFans(1);
    controller.hook = ScriptedSMC::exitAtWrite;
    for (const double mask : {-1.0, 65536.0, notANumber, infiniteSpeed, -infiniteSpeed}) {
        controller.setNumber("FS! ", "flt ", mask);
        EXPECT_EXIT(static_cast<void>(smc.setFanSpeed(0, 2000)), testing::KilledBySignal(SIGABRT), "")
            << mask;
        EXPECT_EXIT(static_cast<void>(smc.resetFan(0)), testing::KilledBySignal(SIGABRT), "") << mask;
    }
}

} // namespace

} // namespace Fenwhirl
