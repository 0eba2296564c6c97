// A driver that remembers whether it drives a fan: when it must be re-armed, and how a fan is handed back to
// it.

#include "FenwhirlCore/Platform/FakeDriver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

// The target in the controller, and the state file that the last run left behind.
constexpr const char* targetFile = "/sys/class/hwmon/hwmon3/fan1_target";
constexpr const char* stateFile = "/run/fenwhirl/fan0";

TEST(DriverMemory, TheFirstTargetReArmsTheDriverAndLaterOnesDoNot) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(smc.setFanSpeed(0, 3100));
    EXPECT_THAT(mac.targetsWritten, ElementsAre("0", "3000", "3000", "3100"));
    EXPECT_TRUE(mac.controllerIsManual);
}

TEST(DriverMemory, TheNextTargetAfterSleepMakesTheFanManualAgain) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    ASSERT_TRUE(smc.setFanSpeed(0, 3000));
    mac.sleepAndWake();
    ASSERT_FALSE(mac.controllerIsManual);
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(mac.controllerIsManual);
}

TEST(DriverMemory, ATargetThatTheFirmwareChangedIsArmedAgain) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    ASSERT_TRUE(smc.setFanSpeed(0, 3000));
    mac.files[targetFile] = "1199\n";
    mac.controllerIsManual = false;
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(mac.controllerIsManual);
}

TEST(DriverMemory, AutomaticReachesTheControllerAlsoAfterTheDriverWasLoadedAgain) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    ASSERT_TRUE(smc.setFanSpeed(0, 3000));
    mac.reloadDriver();
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_FALSE(mac.controllerIsManual);
    EXPECT_FALSE(mac.files.contains(stateFile));
}

TEST(DriverMemory, RearmsOnlyAfterARestartASleepOrADrift) {
    struct Row {
        const char* state;
        milliseconds slept;
        const char* target;
        bool isArmed;
    };

    for (const Row& row :
         {Row{"boot 0 3000", milliseconds(0), "3000", false},
          Row{"boot 0 3000", milliseconds(1000), "3000", false},
          Row{"boot 0 3000", milliseconds(1001), "3000", true},
          Row{"boot 700 3000", milliseconds(0), "3000", false},
          Row{"boot 0 3000", milliseconds(0), "3050", false},
          Row{"boot 0 3000", milliseconds(0), "2950", false},
          Row{"boot 0 3000", milliseconds(0), "3051", true},
          Row{"boot 0 3000", milliseconds(0), "2949", true},
          Row{"another 0 3000", milliseconds(0), "3000", true}, Row{"", milliseconds(0), "3000", true},
          Row{"boot", milliseconds(0), "3000", true}, Row{"boot 0", milliseconds(0), "3000", true},
          Row{"boot x 3000", milliseconds(0), "3000", true},
          Row{"boot 0 3000 1", milliseconds(0), "3000", true},
          Row{"boot -9223372036854775808 3000", milliseconds(1), "3000", true},
          Row{"boot 9223372036854775807 3000", milliseconds(0), "3000", true},
          Row{"boot 0 -9223372036854775808", milliseconds(0), "3000", true},
          Row{"boot 0 9223372036854775807", milliseconds(0), "-9223372036854775808", true},
          Row{"boot 0 3000", milliseconds(0), "fast", true}}) {
        FakeMac mac;
        SMC smc = openFakeDriver(mac);
        mac.files[stateFile] = std::string(row.state) + "\n";
        mac.slept = row.slept;
        mac.files[targetFile] = std::string(row.target) + "\n";
        EXPECT_TRUE(smc.setFanSpeed(0, 3000)) << row.state;
        EXPECT_EQ(mac.targetsWritten.size(), row.isArmed ? 2U : 1U) << row.state << ' ' << row.target;
        EXPECT_EQ(mac.files[stateFile], "boot " + std::to_string(row.slept.count()) + " 3000\n");
    }
}

TEST(DriverMemory, HandBackWritesATargetInRangeThenZero) {
    for (const auto& [target, harmless] : {std::pair("1500", "1500"), {"0", "1199"}, {"9000", "7199"}}) {
        FakeMac mac;
        SMC smc = openFakeDriver(mac);
        mac.files[targetFile] = std::string(target) + "\n";
        EXPECT_TRUE(smc.resetFan(0));
        EXPECT_THAT(mac.targetsWritten, ElementsAre(harmless, "0"));
    }
}

TEST(DriverMemory, AFanWhoseTargetCannotBeReadIsHandedBackByItsMaximum) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    mac.failing[targetFile] = EIO;
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_THAT(mac.targetsWritten, ElementsAre("7199", "0"));
}

TEST(DriverMemory, AFanWhoseLimitsCannotBeReadIsHandedBackAllTheSame) {
    const std::string folder = "/sys/class/hwmon/hwmon3/";
    for (const std::vector<std::string>& unreadable :
         std::vector<std::vector<std::string>>{{"fan1_min"}, {"fan1_max"}, {"fan1_min", "fan1_max"}}) {
        for (const bool isTargetNought : {false, true}) {
            for (const bool isReloaded : {false, true}) {
                FakeMac mac;
                SMC smc = openFakeDriver(mac);
                ASSERT_TRUE(smc.setFanSpeed(0, 3000));
                for (const std::string& name : unreadable) {
                    mac.failing[folder + name] = mac.barred[folder + name] = EIO;
                }
                if (isTargetNought) {
                    mac.files[targetFile] = "0\n";
                }
                if (isReloaded) {
                    mac.reloadDriver();
                }
                EXPECT_FALSE(smc.setFanSpeed(0, 3100)) << unreadable.front();
                EXPECT_TRUE(mac.controllerIsManual);
                EXPECT_TRUE(smc.resetFan(0)) << unreadable.front();
                EXPECT_FALSE(mac.controllerIsManual)
                    << unreadable.front() << ' ' << isTargetNought << ' ' << isReloaded;
            }
        }
    }
}

TEST(DriverMemory, AnUnknownFanIsHandedBackWithZeroOnly) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    ASSERT_TRUE(smc.setFanSpeed(0, 3000));
    mac.targetsWritten.clear();
    for (const char* name : {"fan1_min", "fan1_max", "fan1_input", "fan1_target"}) {
        mac.failing[std::string("/sys/class/hwmon/hwmon3/") + name] = EIO;
    }
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_THAT(mac.targetsWritten, ElementsAre("0"));
    EXPECT_FALSE(mac.controllerIsManual);
}

TEST(DriverMemory, AHandBackFailsWhenZeroCannotBeWritten) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    mac.barred[targetFile] = EIO;
    EXPECT_FALSE(smc.resetFan(0));
    EXPECT_THAT(mac.targetsWritten, IsEmpty());
}

} // namespace

} // namespace Fenwhirl
