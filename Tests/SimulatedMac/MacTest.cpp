#include "SimulatedMac/Mac.h"

#include "SimulatedMac/MacHarness.h"
#include "SimulatedMac/ValueCoding.h"

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace simulated {
namespace {

// The columns of one line of a table file, split without the code under test.
std::vector<std::string> columns(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char character : line) {
        if (character == ',') {
            cells.emplace_back();
        } else {
            cells.back() += character;
        }
    }
    return cells;
}

std::uint32_t hexOf(const std::string& text) {
    return static_cast<std::uint32_t>(std::stoul(text, nullptr, 16));
}

TEST(Mac, EveryMachineServesItsFileKeyByKey) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        std::ifstream file(std::string(FENWHIRL_MACHINES "/") + std::string(embedded.name) + ".csv");
        ASSERT_TRUE(file) << embedded.name;
        MacHarness harness(embedded.name);
        std::string line;
        ASSERT_TRUE(std::getline(file, line));
        std::uint32_t index = 0;
        for (; std::getline(file, line); ++index) {
            const auto cells = columns(line);
            ASSERT_GE(cells.size(), 7U);
            const std::size_t from = cells.size() - 5;
            const FourCC key = hexOf(cells[from]);
            const Reply name = harness.byIndex(index);
            ASSERT_EQ(name.kernelReturn, 0U);
            EXPECT_EQ(name.record.result, 0) << line;
            EXPECT_EQ(name.record.key, key) << line;
            const Reply info = harness.info(key);
            EXPECT_EQ(info.record.result, 0) << line;
            EXPECT_EQ(info.record.keyInfo.dataType, hexOf(cells[from + 1])) << line;
            EXPECT_EQ(info.record.keyInfo.dataSize, std::stoul(cells[from + 2])) << line;
            EXPECT_EQ(info.record.keyInfo.dataAttributes, hexOf(cells[from + 3])) << line;
            const std::string& value = cells[from + 4];
            if (value.starts_with("unreadable:")) {
                EXPECT_EQ(harness.read(key).record.result, hexOf(value.substr(11))) << line;
            } else if (!value.empty()) {
                EXPECT_EQ(harness.bytesOf(key), value) << line;
            }
        }
        EXPECT_EQ(harness.byIndex(index).record.result, Fenwhirl::SMCResult::indexRange) << embedded.name;
    }
}

TEST(Mac, UnknownKeysAreNotFoundByAnyCommand) {
    MacHarness harness;
    EXPECT_EQ(harness.info(fourCC("ZZZZ")).record.result, 0x84);
    EXPECT_EQ(harness.call(Fenwhirl::SMCCommand::readKey, fourCC("ZZZZ"), 2).record.result, 0x84);
    EXPECT_EQ(harness.write(fourCC("ZZZZ"), "00").record.result, 0x84);
}

TEST(Mac, KeysWithoutTheReadableBitAnswer85) {
    MacHarness harness;
    bool seen = false;
    for (std::size_t i = 0; i < harness.mac.keys().count(); ++i) {
        const KeyRecord record = harness.mac.keys().at(i).record;
        if ((record.attributes & 0x80) == 0) {
            EXPECT_EQ(harness.read(record.code).record.result, 0x85) << fourCCText(record.code);
            seen = true;
        }
    }
    EXPECT_TRUE(seen);
}

TEST(Mac, KeysWithoutTheWritableBitAnswer86AndKeepTheirValue) {
    MacHarness harness;
    EXPECT_EQ(harness.write(fourCC("FNum"), "07").record.result, 0x86);
    EXPECT_EQ(harness.bytesOf(fourCC("FNum")), "02");
}

TEST(Mac, AWrongSizeAnswers87ForReadsAndWrites) {
    MacHarness harness;
    EXPECT_EQ(harness.call(Fenwhirl::SMCCommand::readKey, fourCC("TC0P"), 1).record.result, 0x87);
    EXPECT_EQ(harness.call(Fenwhirl::SMCCommand::readKey, fourCC("TC0P"), 0).record.result, 0x87);
    EXPECT_EQ(harness.write(fourCC("F0Tg"), "2EE000").record.result, 0x87);
    EXPECT_EQ(harness.write(fourCC("F0Tg"), "").record.result, 0x87);
}

TEST(Mac, AKeyOfMoreThan32BytesIsReadWithItsFullSize) {
    MacHarness harness;
    harness.mac.defineKey({.code = fourCC("LONG"), .type = fourCC("ch8*"), .size = 40, .attributes = 0x80});
    EXPECT_EQ(harness.info(fourCC("LONG")).record.keyInfo.dataSize, 40U);
    EXPECT_EQ(harness.read(fourCC("LONG")).record.result, 0);
    EXPECT_EQ(harness.call(Fenwhirl::SMCCommand::readKey, fourCC("LONG"), 32).record.result, 0x87);
}

TEST(Mac, AnUnknownCommandIsRefused) {
    MacHarness harness;
    EXPECT_NE(harness.call(77, fourCC("FNum")).record.result, 0);
}

TEST(Mac, WritesOfOrdinaryUsersAreRefusedByTheKernelReadsAreNot) {
    MacHarness harness;
    harness.peer.user = 65534;
    const Reply reply = harness.write(fourCC("FS! "), "0001");
    EXPECT_EQ(reply.kernelReturn, 0xE00002C1U);
    EXPECT_EQ(reply.record.result, 0);
    EXPECT_EQ(harness.bytesOf(fourCC("FS! ")), "0000");
    EXPECT_EQ(harness.bytesOf(fourCC("FNum")), "02");
}

TEST(Mac, AForcedFanObeysItsTargetAnUnforcedOneDoesNot) {
    MacHarness harness;
    EXPECT_EQ(harness.write(fourCC("FS! "), "0001").record.result, 0);
    EXPECT_EQ(harness.write(fourCC("F0Tg"), "3E80").record.result, 0); // 4000 rpm
    EXPECT_EQ(harness.write(fourCC("F1Tg"), "3E80").record.result, 0);
    harness.pass(20);
    (void)harness.read(fourCC("F0Ac"));
    EXPECT_NEAR(harness.mac.state().fans[0].rpm, 4000, 5);
    EXPECT_NEAR(harness.mac.keys().number(fourCC("F0Ac")).value_or(0), 4000, 10);
    EXPECT_NEAR(harness.mac.keys().number(fourCC("F1Ac")).value_or(0), 2000, 10);
    EXPECT_EQ(harness.bytesOf(fourCC("F0Tg")), "3E80");
    EXPECT_EQ(harness.bytesOf(fourCC("F1Tg")), "1F40") << "the firmware steers an automatic fan";
}

TEST(Mac, ModeKeysDoTheSameWhereTheyExist) {
    MacHarness harness("MacBookPro16,1");
    EXPECT_EQ(harness.write(fourCC("F1Md"), "01").record.result, 0);
    EXPECT_EQ(harness.write(fourCC("F1Tg"), "00007A45").record.result, 0); // 4000 rpm
    harness.pass(20);
    (void)harness.read(fourCC("F1Ac"));
    EXPECT_NEAR(harness.mac.keys().number(fourCC("F1Ac")).value_or(0), 4000, 10);
    EXPECT_EQ(harness.write(fourCC("F1Md"), "00").record.result, 0);
    harness.pass(20);
    (void)harness.read(fourCC("F1Ac"));
    EXPECT_NEAR(harness.mac.keys().number(fourCC("F1Ac")).value_or(0), 1700, 10);
}

TEST(Mac, WakingForgetsManualModesMaskAndUnlock) {
    MacHarness intel;
    (void)intel.write(fourCC("FS! "), "0003");
    intel.mac.fallAsleep(intel.now);
    intel.pass(60);
    intel.mac.wakeUp(intel.now);
    EXPECT_EQ(intel.bytesOf(fourCC("FS! ")), "0000");

    MacHarness silicon("AppleSilicon");
    (void)silicon.write(fourCC("Ftst"), "01");
    silicon.pass(1);
    EXPECT_EQ(silicon.write(fourCC("F0Md"), "01").record.result, 0);
    silicon.mac.wakeUp(silicon.now);
    EXPECT_EQ(silicon.bytesOf(fourCC("F0Md")), "00");
    EXPECT_EQ(silicon.bytesOf(fourCC("Ftst")), "00");
    EXPECT_EQ(silicon.write(fourCC("F0Md"), "01").record.result, 0x86);
}

TEST(Mac, ASleepingMachineCoolsDown) {
    MacHarness harness;
    harness.mac.fallAsleep(harness.now);
    harness.mac.skip(3600, harness.now);
    (void)harness.read(fourCC("TC0P"));
    EXPECT_LT(harness.mac.keys().number(fourCC("TC1C")).value_or(100), 30);
    EXPECT_EQ(harness.mac.keys().number(fourCC("F0Ac")), 0);
}

TEST(Mac, EveryWriteIsLoggedWithItsFate) {
    MacHarness harness;
    (void)harness.write(fourCC("FS! "), "0001");
    (void)harness.write(fourCC("FNum"), "01");
    harness.peer = {.process = 99, .user = 1000};
    (void)harness.write(fourCC("F0Tg"), "2EE0");
    const auto& entries = harness.mac.writes().entries();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(writeEntryText(entries[0]),
              "write 1 time=2023-11-14T22:13:20.000Z at=0.000 pid=4711 uid=0 key=FS! type=ui16 bytes=0001 "
              "value=1.00 kernel=0x00000000 result=0x00");
    EXPECT_EQ(entries[1].result, 0x86);
    EXPECT_FALSE(entries[1].granted());
    EXPECT_EQ(entries[2].kernelReturn, 0xE00002C1U);
    EXPECT_EQ(entries[2].peer.process, 99);
    EXPECT_EQ(entries[2].peer.user, 1000U);
}

TEST(Mac, TimeBeforeAWriteIsSimulatedWithTheOldSettings) {
    MacHarness harness;
    harness.pass(0.05); // too short for a read to advance the model
    (void)harness.write(fourCC("FS! "), "0001");
    EXPECT_NEAR(harness.mac.writes().entries().back().simulatedSeconds, 0.05, 1e-9);
    EXPECT_NEAR(harness.mac.state().seconds, 0.05, 1e-9);
}

TEST(Mac, TheLogDropsItsOldestEntriesWhenItIsFull) {
    WriteLog log;
    EXPECT_EQ(log.after(0), log.entries().end());
    for (std::size_t i = 0; i < WriteLog::capacity + 5; ++i) {
        (void)log.add({});
    }
    EXPECT_EQ(log.entries().size(), WriteLog::capacity);
    EXPECT_EQ(log.entries().front().number, 6U);
    EXPECT_EQ(log.last(), WriteLog::capacity + 5);
    EXPECT_EQ(log.after(0)->number, 6U);
    EXPECT_EQ(log.after(6)->number, 7U);
    EXPECT_EQ(log.after(WriteLog::capacity + 4)->number, WriteLog::capacity + 5);
    EXPECT_EQ(log.after(WriteLog::capacity + 5), log.entries().end());
    EXPECT_EQ(log.after(UINT64_MAX), log.entries().end());
}

TEST(Mac, AConstantPowerSettlesAndStays) {
    MacHarness harness;
    harness.mac.setHeatSource(std::make_unique<ConstantHeat>(Heat{.processorWatts = 25, .graphicsWatts = 0}),
                              harness.now);
    harness.mac.skip(3600, harness.now);
    const double settled = at(harness.mac.state().thermal.celsius, ThermalNode::die);
    harness.mac.skip(60, harness.now);
    EXPECT_NEAR(at(harness.mac.state().thermal.celsius, ThermalNode::die), settled, 0.05);
    EXPECT_GT(settled, 60);
}

TEST(Mac, SpeedMultipliesTimeAndZeroStopsIt) {
    MacHarness harness;
    harness.mac.setSpeed(20, harness.now);
    harness.pass(3);
    harness.mac.catchUp(harness.now);
    EXPECT_NEAR(harness.mac.state().seconds, 60, 1e-6);
    harness.mac.setSpeed(0, harness.now);
    harness.pass(100);
    harness.mac.catchUp(harness.now);
    EXPECT_NEAR(harness.mac.state().seconds, 60, 1e-6);
}

TEST(Mac, AVeryLongPauseIsCaughtUpInOneGo) {
    MacHarness harness;
    harness.mac.setSpeed(10'000, harness.now);
    harness.pass(30 * 86400.0);
    harness.mac.catchUp(harness.now);
    EXPECT_NEAR(harness.mac.state().seconds, 10'000 * 30 * 86400.0, 1);
    EXPECT_NEAR(at(harness.mac.state().thermal.celsius, ThermalNode::die), 55, 3);
}

TEST(Mac, AClockThatStepsBackChangesNothing) {
    MacHarness harness;
    harness.pass(10);
    harness.mac.catchUp(harness.now);
    harness.pass(-5);
    harness.mac.catchUp(harness.now);
    EXPECT_NEAR(harness.mac.state().seconds, 10, 1e-9);
}

TEST(Mac, AbsurdHeatIsLimitedAndNeverMeltsTheModel) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        MacHarness harness(embedded.name);
        harness.mac.setHeatSource(
            std::make_unique<ConstantHeat>(Heat{.processorWatts = 1e6, .graphicsWatts = 1e6}), harness.now);
        harness.mac.skip(1800, harness.now);
        const double die = at(harness.mac.state().thermal.celsius, ThermalNode::die);
        EXPECT_GT(die, 95) << embedded.name;
        EXPECT_LT(die, 125) << embedded.name;
    }
}

TEST(Mac, ADefinedKeyJoinsTheEnumeration) {
    MacHarness harness;
    const std::size_t before = harness.mac.keys().count();
    KeyRecord record{.code = fourCC("TX0X"), .type = fourCC("sp78"), .size = 2, .attributes = 0x80};
    record.bytes[0] = 50;
    harness.mac.defineKey(record);
    EXPECT_EQ(harness.byIndex(static_cast<std::uint32_t>(before)).record.key, fourCC("TX0X"));
    EXPECT_EQ(harness.mac.keys().number(fourCC("#KEY")), static_cast<double>(before + 1));
    EXPECT_EQ(harness.bytesOf(fourCC("TX0X")), "3200");
}

TEST(Mac, MoreFansThanKeysCanNameAreTakenAsTen) {
    MacHarness harness;
    KeyRecord record{.code = fourCC("FNum"), .type = fourCC("ui32"), .size = 4, .attributes = 0x80};
    record.bytes = {0xFF, 0xFF, 0xFF, 0xFF};
    harness.mac.defineKey(record);
    EXPECT_EQ(harness.mac.fans().count(), 10U);
    harness.pass(5);
    EXPECT_EQ(harness.bytesOf(fourCC("FNum")), "FFFFFFFF");
    EXPECT_EQ(harness.bytesOf(fourCC("F0Tg")), "21C0");
}

} // namespace
} // namespace simulated
