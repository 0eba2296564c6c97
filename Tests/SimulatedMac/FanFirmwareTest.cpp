#include "SimulatedMac/FanFirmware.h"

#include "SimulatedMac/MacHarness.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace simulated {
namespace {

TEST(FanFirmware, ModeKeysRefuseManualModeUntilSomeTimeAfterTheUnlock) {
    MacHarness harness("AppleSilicon");
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0x86) << "locked";
    EXPECT_EQ(harness.write(fourCC("Ftst"), "01").record.result, 0);
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0x86) << "just unlocked";
    harness.pass(0.4);
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0x86) << "not yet";
    harness.pass(0.2);
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0);
    EXPECT_EQ(harness.write(fourCC("F1Md"), "01").record.result, 0);
    EXPECT_EQ(harness.bytesOf(fourCC("F0Md")), "01");
}

TEST(FanFirmware, UnlockingAgainDoesNotStartTheWaitingTimeAnew) {
    MacHarness harness("AppleSilicon");
    (void)harness.write(fourCC("Ftst"), "01");
    harness.pass(0.4);
    (void)harness.write(fourCC("Ftst"), "01");
    harness.pass(0.2);
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0);
}

TEST(FanFirmware, TheWaitingTimeIsRealTimeWhateverTheSpeed) {
    MacHarness harness("AppleSilicon");
    harness.mac.setSpeed(0, harness.now);
    (void)harness.write(fourCC("Ftst"), "01");
    harness.pass(0.6);
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0);
}

TEST(FanFirmware, ClearingTheUnlockMakesEveryFanAutomatic) {
    MacHarness harness("AppleSilicon");
    (void)harness.write(fourCC("Ftst"), "01");
    harness.pass(1);
    (void)harness.write(fourCC("F0Md"), "01");
    (void)harness.write(fourCC("F1Md"), "01");
    EXPECT_EQ(harness.write(fourCC("Ftst"), "00").record.result, 0);
    EXPECT_EQ(harness.bytesOf(fourCC("F0Md")), "00");
    EXPECT_EQ(harness.bytesOf(fourCC("F1Md")), "00");
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0x86) << "and locks the modes again";
}

TEST(FanFirmware, HandingAFanBackIsAllowedWhileLocked) {
    MacHarness harness("AppleSilicon");
    EXPECT_EQ(harness.write(fourCC("F0Md"), "00").record.result, 0);
}

TEST(FanFirmware, AnUnlockThatNeverComesIsPossible) {
    MacHarness harness("AppleSilicon");
    harness.mac.fans().setUnlockSeconds(std::nullopt);
    (void)harness.write(fourCC("Ftst"), "01");
    harness.pass(3600);
    EXPECT_EQ(harness.write(fourCC("F0Md"), "01").record.result, 0x86);
}

TEST(FanFirmware, AppleSiliconHasNoMaskAndNoTemperatureKeysOfIntelProcessors) {
    MacHarness harness("AppleSilicon");
    EXPECT_EQ(harness.info(fourCC("FS! ")).record.result, 0x84);
    EXPECT_EQ(harness.info(fourCC("TC0P")).record.result, 0x84);
    EXPECT_EQ(harness.info(fourCC("Tp01")).record.keyInfo.dataType, fourCC("flt "));
    EXPECT_EQ(harness.info(fourCC("F0Ac")).record.keyInfo.dataType, fourCC("flt "));
    EXPECT_EQ(harness.info(fourCC("F1Md")).record.keyInfo.dataType, fourCC("ui8 "));
}

TEST(FanFirmware, TheMaskMakesFansManualBitByBit) {
    MacHarness harness("iMac11,2");
    (void)harness.write(fourCC("FS! "), "0005");
    EXPECT_TRUE(harness.mac.fans().isManual(harness.mac.keys(), 0));
    EXPECT_FALSE(harness.mac.fans().isManual(harness.mac.keys(), 1));
    EXPECT_TRUE(harness.mac.fans().isManual(harness.mac.keys(), 2));
}

TEST(FanFirmware, AMaskOrALimitThatIsNoNumberDoesNoHarm) {
    MacHarness harness;
    const auto define = [&](FourCC code, std::string_view hex) {
        KeyRecord record{.code = code, .type = fourCC("flt "), .size = 4, .attributes = 0xC0};
        const auto bytes = *parseHexBytes(hex, 4);
        std::copy(bytes.begin(), bytes.end(), record.bytes.begin());
        harness.mac.defineKey(record);
    };
    for (const char* mask : {"0000C07F", "0000807F", "000080FF", "000080BF", "CAF24971"}) {
        define(fourCC("FS! "), mask); // NaN, the infinities, -1, 1e30
        EXPECT_FALSE(harness.mac.fans().isManual(harness.mac.keys(), 0)) << mask;
    }
    define(fourCC("FS! "), "00004040"); // 3
    EXPECT_TRUE(harness.mac.fans().isManual(harness.mac.keys(), 1));
    for (const FourCC limit : {fourCC("F0Mn"), fourCC("F0Mx")}) {
        define(limit, "0000C07F");
        harness.pass(5);
        harness.mac.catchUp(harness.now);
        EXPECT_NEAR(harness.mac.state().fans[0].rpm, 2160, 60) << fourCCText(limit);
    }
}

TEST(FanFirmware, LowerCaseModeKeysCountToo) {
    MacHarness harness("MacBook10,1");
    for (const auto& [code, type, size, value] :
         {std::tuple{fourCC("FNum"), fourCC("ui8 "), 1U, std::uint8_t{1}},
          std::tuple{fourCC("F0md"), fourCC("ui8 "), 1U, std::uint8_t{0}}}) {
        KeyRecord record{.code = code, .type = type, .size = size, .attributes = 0xC0};
        record.bytes[0] = value;
        harness.mac.defineKey(record);
    }
    EXPECT_FALSE(harness.mac.fans().isManual(harness.mac.keys(), 0));
    EXPECT_EQ(harness.write(fourCC("F0md"), "01").record.result, 0);
    EXPECT_TRUE(harness.mac.fans().isManual(harness.mac.keys(), 0));
}

} // namespace
} // namespace simulated
