#include "Support/ScriptedSMC.h"

#include <ctime>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

using Keys = std::vector<std::string>;

class SMCTemperatures : public testing::Test {
protected:
    ScriptedSMC controller;
    SMC smc = controller.open();
};

TEST_F(SMCTemperatures, ASensorIsAKeyOfTheRightNameTypeAndValue) {
    controller.setNumber("TC0P", "sp78", 47.5);
    controller.setNumber("Tp01", "flt ", 51.25);
    controller.setNumber("tC0P", "sp78", 47.5);
    controller.setNumber("F0Tg", "flt ", 50);
    controller.setNumber("TFan", "fpe2", 50);
    controller.setNumber("TCnt", "ui8 ", 50);
    EXPECT_EQ(smc.discoverTemperatureKeys(), (Keys{"TC0P", "Tp01"}));
}

TEST_F(SMCTemperatures, ASensorReadsBetweenOneAndAHundredAndThirtyDegreesAtDiscovery) {
    controller.setNumber("TA00", "flt ", 0.5);
    controller.setNumber("TA01", "flt ", 1);
    controller.setNumber("TA02", "flt ", 1.0001);
    controller.setNumber("TA03", "flt ", 129.9);
    controller.setNumber("TA04", "flt ", 130);
    controller.setNumber("TA05", "flt ", -20);
    controller.setNumber("TA06", "flt ", std::numeric_limits<double>::quiet_NaN());
    controller.setNumber("TA07", "flt ", std::numeric_limits<double>::infinity());
    controller.setNumber("TA08", "sp78", 0.5);
    EXPECT_EQ(smc.discoverTemperatureKeys(), (Keys{"TA02", "TA03"}));
}

TEST_F(SMCTemperatures, ADiscoveredSensorMayCoolDownButNotToZero) {
    controller.setNumber("TA00", "sp78", 0.5);
    controller.setNumber("TA01", "sp78", 0);
    controller.setNumber("TA02", "sp78", -1);
    controller.setNumber("TA03", "flt ", 129.9);
    controller.setNumber("TA04", "flt ", 130);
    controller.setNumber("TA05", "flt ", std::numeric_limits<double>::quiet_NaN());
    controller.setNumber("TA06", "ui8 ", 40);
    const Keys keys{"TA06", "TA05", "TA04", "TA03", "TA02", "TA01", "TA00", "none"};
    EXPECT_EQ(smc.readTemperatures(keys),
              (std::vector<TemperatureReading>{
                  {"TA06", 40}, {"TA03", static_cast<double>(129.9F)}, {"TA00", 0.5}}));
    EXPECT_EQ(controller.requests.size(), 15U); // two for each existing key
}

TEST_F(SMCTemperatures, UnreadableSensorsAreLeftOut) {
    controller.setNumber("TA00", "sp78", 40);
    controller.setNumber("TA01", "sp78", 40);
    controller.at("TA00").readResult = SMCResult::notReadable;
    EXPECT_EQ(smc.discoverTemperatureKeys(), Keys{"TA01"});
    EXPECT_EQ(smc.readTemperatures(Keys{"TA00", "TA01"}).size(), 1U);
    controller.at("TA01").reportedSize = 1;
    EXPECT_TRUE(smc.discoverTemperatureKeys().empty());
}

TEST_F(SMCTemperatures, AKeyThatIsListedButUnknownIsLeftOut) {
    controller.setNumber("TA00", "sp78", 40);
    controller.setNumber("TA01", "sp78", 40);
    controller.hook = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 == SMCCommand::keyInfo && request.key == SMC::fourCC("TA00")) {
            return ScriptedSMC::Reply();
        }
        return std::nullopt;
    };
    EXPECT_EQ(smc.discoverTemperatureKeys(), Keys{"TA01"});
    EXPECT_TRUE(smc.diagnosticReport().ends_with("\nTotal : 1 capteurs de température"));
}

TEST_F(SMCTemperatures, DuplicatesAreDiscoveredOnce) {
    controller.set("#KEY", "ui32", {0, 0, 0, 5});
    controller.setNumber("TC0P", "sp78", 40);
    controller.hook = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 != SMCCommand::keyByIndex) {
            return std::nullopt;
        }
        if (request.data32 == 2) {
            return ScriptedSMC::Reply();
        }
        SMCParam output{};
        output.key = request.data32 == 3 ? 0x54FF3050U : SMC::fourCC("TC0P");
        return output;
    };
    EXPECT_EQ(smc.discoverTemperatureKeys(), Keys{"TC0P"});
}

TEST_F(SMCTemperatures, ADuplicateThatReadsWellLaterIsStillFound) {
    controller.set("#KEY", "ui32", {0, 0, 0, 2});
    controller.setNumber("TC0P", "sp78", 0);
    controller.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 != SMCCommand::keyByIndex) {
            return std::nullopt;
        }
        if (request.data32 == 1) {
            controller.setNumber("TC0P", "sp78", 40);
        }
        SMCParam output{};
        output.key = SMC::fourCC("TC0P");
        return output;
    };
    EXPECT_EQ(smc.discoverTemperatureKeys(), Keys{"TC0P"});
}

TEST_F(SMCTemperatures, SixtyFiveThousandKeysAreWalkedOnce) {
    controller.set("#KEY", "ui32", {0, 0, 0xFF, 0xFF});
    controller.setNumber("TC0P", "sp78", 40);
    const std::clock_t begin = std::clock(); // processor time, because other programs may be busy
    EXPECT_EQ(smc.discoverTemperatureKeys(), Keys{"TC0P"});
    EXPECT_LT(std::clock() - begin, 5 * CLOCKS_PER_SEC);
    EXPECT_EQ(controller.requests.size(), 2U + 65535 + 2);
}

TEST_F(SMCTemperatures, TheStopFlagEndsTheReading) {
    controller.setNumber("TC0P", "sp78", 40);
    std::atomic<bool> stop = true;
    smc.setStopFlag(&stop);
    EXPECT_TRUE(smc.readTemperatures(Keys{"TC0P"}).empty());
    EXPECT_TRUE(controller.requests.empty());
}

} // namespace

} // namespace Fenwhirl
