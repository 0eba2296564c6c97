// The driver transport on trees of ordinary files: which keys it offers, what they read, and where it writes.

#include "FenwhirlCore/Platform/DriverTransport.h"

#include "FenwhirlCore/Platform/DriverTrees.h"
#include "FenwhirlCore/SMC.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::unique_ptr<SMC> open(const DriverTree& tree) {
    std::unique_ptr<SMCTransport> transport = openDriverTransport(systemDriverFiles(tree.root()));
    return transport ? std::make_unique<SMC>(std::move(transport)) : nullptr;
}

TEST(DriverTransport, IsAbsentWhereNoDriverOfAMacIsLoaded) {
    DriverTree tree;
    tree.write("sys/class/hwmon/hwmon0/name", "coretemp\n");
    tree.write("sys/class/hwmon/hwmon0/temp1_input", "52000\n");
    EXPECT_EQ(open(tree), nullptr);
}

TEST(DriverTransport, ListsTheKeysOfAnIntelLaptopInOrder) {
    DriverTree tree;
    tree.makeIntelLaptop();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_EQ(smc->readValue("#KEY"), 30);
    EXPECT_THAT(smc->allKeys(),
                ElementsAre("#KEY", "F0Ac", "F0Md", "F0Mn", "F0Mx", "F0Tg", "F1Ac", "F1Md", "F1Mn", "F1Mx",
                            "F1Tg", "FNum", "TB0T", "TB1T", "TB2T", "TC0C", "TC0D", "TC0P", "TC1C", "TG0D",
                            "TG0P", "TG0T", "TMCD", "TP0P", "TPCD", "Th1H", "Th2H", "Tm0P", "Ts0P", "Ts0S"));
}

TEST(DriverTransport, ReadsTheFansAndTemperaturesOfAnIntelLaptop) {
    DriverTree tree;
    tree.makeIntelLaptop();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_THAT(smc->readFans(),
                ElementsAre(FanReading{0, 1981, 2000, 6000, 2000}, FanReading{1, 2009, 2000, 6000, 2000}));
    const std::vector<std::string> keys = smc->discoverTemperatureKeys();
    EXPECT_EQ(keys.size(), 18U);
    const std::vector<std::string> processor = {"TC0P", "TC1C"};
    EXPECT_THAT(smc->readTemperatures(processor),
                ElementsAre(TemperatureReading{"TC0P", 51.0}, TemperatureReading{"TC1C", 53.0}));
    EXPECT_EQ(smc->describe("F0Ac"), "F0Ac | type fpe2 | 2 octets | 1E F4 | valeur 1981.00");
    EXPECT_EQ(smc->describe("TB0T"), "TB0T | type sp78 | 2 octets | 22 00 | valeur 34.00");
}

TEST(DriverTransport, DrivesAnIntelFanByModeAndOutput) {
    DriverTree tree;
    tree.makeIntelLaptop();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_TRUE(smc->setFanSpeed(0, 2640.9));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_manual"), "1");
    EXPECT_EQ(tree.read(tree.device() + "/fan1_output"), "2640");
    EXPECT_TRUE(smc->setFanSpeed(1, 1));
    EXPECT_EQ(tree.read(tree.device() + "/fan2_manual"), "1");
    EXPECT_EQ(tree.read(tree.device() + "/fan2_output"), "2000");
    EXPECT_TRUE(smc->resetFan(0));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_manual"), "0");
    EXPECT_EQ(tree.read(tree.device() + "/fan2_manual"), "1");
}

TEST(DriverTransport, FindsTheDriverOfAT2MachineOnItsAcpiDevice) {
    DriverTree tree;
    tree.makeT2Desktop();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_THAT(smc->readFans(), ElementsAre(FanReading{0, 2530, 1700, 4922, 2500}));
    EXPECT_EQ(smc->readValue("TCXC"), 69.5);
    EXPECT_TRUE(smc->setFanSpeed(0, 3000));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_output"), "3000");
}

TEST(DriverTransport, FindsTheKeysOfAnAppleSiliconLaptopInItsDeviceTree) {
    DriverTree tree;
    tree.makeAppleSiliconLaptop();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_EQ(smc->readValue("#KEY"), 16);
    EXPECT_THAT(smc->discoverTemperatureKeys(), ElementsAre("TB0T", "TCHP", "TH0x", "TW0P"));
    EXPECT_THAT(smc->readFans(),
                ElementsAre(FanReading{0, 0, 1199, 7199, 0}, FanReading{1, 1203, 1199, 7199, 1199}));
    EXPECT_NEAR(smc->readValue("TCHP").value(), 46.093, 1e-5);
    EXPECT_EQ(smc->describe("F0Md"), "F0Md : illisible");
    EXPECT_EQ(smc->describe("TB0T"), "TB0T | type flt  | 4 octets | 9A 99 F9 41 | valeur 31.20");
}

TEST(DriverTransport, RefusesManualControlWhereNoTemperatureBelongsToTheProcessor) {
    DriverTree tree;
    tree.makeAppleSiliconLaptop();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_FALSE(smc->setFanSpeed(0, 2640));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_target"), "0");
    EXPECT_EQ(tree.read("run/fenwhirl/fan0"), "");
}

TEST(DriverTransport, HandsAFanBackWithASafeTargetThenZero) {
    DriverTree tree;
    tree.makeAppleSiliconLaptop();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_TRUE(smc->resetFan(0));
    // An ordinary file keeps the tail of its old contents below the last write; `read` returns the first line
    // only.
    EXPECT_EQ(tree.read(tree.device() + "/fan1_target"), "0");
    tree.write(tree.device() + "/fan1_max", "9\n");
    EXPECT_FALSE(smc->resetFan(0)) << "limits that make no sense must not be driven into";
}

TEST(DriverTransport, DrivesAnAppleSiliconFanOnceTheProcessorIsSeen) {
    DriverTree tree;
    tree.makeAppleSiliconLaptop();
    tree.addProcessorSensors();
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_EQ(smc->readValue("#KEY"), 21);
    EXPECT_NEAR(smc->readValue("Tp01").value(), 58.046, 1e-5);
    EXPECT_TRUE(smc->setFanSpeed(0, 2640.9));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_target"), "2640");
}

TEST(DriverTransport, RemembersItsTargetSoThatTheNextOneNeedsNoRearming) {
    DriverTree tree;
    tree.makeAppleSiliconLaptop();
    tree.allowFanControl();
    if (geteuid() != 0) {
        GTEST_SKIP() << "the allowing file has to belong to root";
    }
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_TRUE(smc->setFanSpeed(0, 2640.9));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_target"), "2640");
    EXPECT_THAT(tree.read("run/fenwhirl/fan0"), testing::EndsWith(" 2640"));
    EXPECT_TRUE(smc->setFanSpeed(0, 2700));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_target"), "2700");
    EXPECT_TRUE(smc->resetFan(0));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_target"), "0");
    EXPECT_EQ(tree.read("run/fenwhirl/fan0"), "");
}

TEST(DriverTransport, WritesNothingWhenTheDriverAllowsNoFanControl) {
    DriverTree tree;
    tree.makeAppleSiliconLaptop();
    tree.addProcessorSensors();
    tree.write(tree.device() + "/fan1_target", "0\n", false);
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_FALSE(smc->setFanSpeed(0, 2640));
    EXPECT_FALSE(smc->resetFan(0));
    EXPECT_EQ(tree.read(tree.device() + "/fan1_target"), "0");
}

TEST(DriverTransport, GivesAnUnknownSensorAGeneratedKey) {
    DriverTree tree;
    tree.makeAppleSiliconLaptop();
    tree.remove("sys/firmware");
    tree.write(tree.device() + "/temp5_label", "SoC Backside Temp\n");
    tree.write(tree.device() + "/temp5_input", "47000\n");
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_THAT(smc->discoverTemperatureKeys(), ElementsAre("TB0T", "TCHP", "TH0x", "TW0P", "T~Gk"));
}

TEST(DriverTransport, TakesAFanWithPwmEnableAsManualOnlyAtOne) {
    DriverTree tree;
    tree.makeIntelLaptop();
    const std::string fan = tree.device() + "/fan1";
    tree.remove(fan + "_manual");
    tree.remove(fan + "_output");
    tree.write(fan + "_target", "2000\n", true);
    tree.write(tree.device() + "/pwm1_enable", "2\n", true);
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_EQ(smc->readValue("F0Md"), 0);
    EXPECT_TRUE(smc->setFanSpeed(0, 3000));
    EXPECT_EQ(tree.read(tree.device() + "/pwm1_enable"), "1");
    EXPECT_EQ(tree.read(fan + "_target"), "3000");
    EXPECT_EQ(smc->readValue("F0Md"), 1);
    EXPECT_TRUE(smc->resetFan(0));
    EXPECT_EQ(tree.read(tree.device() + "/pwm1_enable"), "2");
}

TEST(DriverTransport, TakesAFanWithEnableAsAutomaticAtOne) {
    DriverTree tree;
    tree.makeIntelLaptop();
    const std::string fan = tree.device() + "/fan2";
    tree.remove(fan + "_manual");
    tree.remove(fan + "_output");
    tree.write(fan + "_target", "2000\n", true);
    tree.write(fan + "_enable", "1\n", true);
    const auto smc = open(tree);
    ASSERT_TRUE(smc);
    EXPECT_EQ(smc->readValue("F1Md"), 0);
    EXPECT_TRUE(smc->setFanSpeed(1, 3000));
    EXPECT_EQ(tree.read(fan + "_enable"), "0");
    EXPECT_EQ(smc->readValue("F1Md"), 1);
    EXPECT_TRUE(smc->resetFan(1));
    EXPECT_EQ(tree.read(fan + "_enable"), "1");
}

TEST(DriverTransport, AnswersAsTheControllerDoes) {
    DriverTree tree;
    tree.makeIntelLaptop();
    const auto transport = openDriverTransport(systemDriverFiles(tree.root()));
    ASSERT_TRUE(transport);
    const auto ask = [&](std::uint8_t command, std::string_view key, std::uint32_t size,
                         std::uint32_t index = 0) {
        SMCParam input{};
        input.data8 = command;
        input.key = SMC::fourCC(key);
        input.keyInfo.dataSize = size;
        input.data32 = index;
        return transport->call(input).value().result;
    };
    EXPECT_EQ(ask(SMCCommand::keyInfo, "XXXX", 0), SMCResult::keyNotFound);
    EXPECT_EQ(ask(SMCCommand::readKey, "F0Ac", 4), SMCResult::sizeMismatch);
    EXPECT_EQ(ask(SMCCommand::keyByIndex, "", 0, 30), SMCResult::indexRange);
    EXPECT_EQ(ask(SMCCommand::writeKey, "F0Ac", 2), SMCResult::notWritable);
    tree.write(tree.device() + "/temp6_input", "hot\n");
    EXPECT_EQ(ask(SMCCommand::readKey, "TC0P", 2), SMCResult::notReadable);
}

} // namespace

} // namespace Fenwhirl
