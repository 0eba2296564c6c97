// Drivers that fail, and devices that go away and come back.

#include "FenwhirlCore/Platform/FakeDriver.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using std::chrono::milliseconds;

TEST(DriverFaults, APollOpensItsFilesOnceAndReadsEachOnce) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    const std::vector<std::string> keys = {"Tp01"};
    const auto poll = [&] {
        EXPECT_EQ(smc.readFans().size(), 1U);
        EXPECT_EQ(smc.readTemperatures(keys).size(), 1U);
    };
    const int before = mac.opened;
    poll();
    EXPECT_EQ(mac.opened - before, 5) << "four of the fan, one of the sensor";
    mac.reads = 0;
    poll();
    EXPECT_EQ(mac.opened - before, 5);
    EXPECT_EQ(mac.reads, 2) << "the fan's speed and the temperature";
}

TEST(DriverFaults, EveryDescriptorIsClosedWhenTheDeviceGoesAndAtTheEnd) {
    FakeMac mac;
    {
        SMC smc = openFakeDriver(mac);
        EXPECT_EQ(smc.readFans().size(), 1U);
        EXPECT_EQ(mac.opened - mac.closed, 4);
        mac.unplug();
        EXPECT_EQ(smc.readValue("F0Ac"), std::nullopt);
        EXPECT_EQ(mac.opened, mac.closed);
        mac.plugIn();
        mac.now += milliseconds(2000);
        static_cast<void>(smc.readValue("F0Ac")); // after this failure the transport looks for the device
        EXPECT_EQ(smc.readValue("F0Ac"), 1300);
        EXPECT_GT(mac.opened, mac.closed);
    }
    EXPECT_EQ(mac.opened, mac.closed);
}

TEST(DriverFaults, OnlyAControllersRefusalHasARecord) {
    FakeMac mac;
    const auto transport = openDriverTransport(std::make_unique<FakeDriverFiles>(mac));
    ASSERT_TRUE(transport);
    SMCParam request{};
    request.data8 = SMCCommand::readKey;
    request.key = SMC::fourCC("Tp01");
    request.keyInfo.dataSize = 4;
    const std::string file = "/sys/class/hwmon/hwmon3/temp1_input";
    for (const int error : {EACCES, EPERM, EROFS}) {
        mac.barred[file] = error;
        EXPECT_FALSE(transport->call(request)) << error;
    }
    mac.barred.clear();
    for (const int error : {EINVAL, EOPNOTSUPP, EIO}) {
        mac.failing[file] = error;
        const auto output = transport->call(request);
        ASSERT_TRUE(output) << error;
        EXPECT_EQ(output->result, SMCResult::notReadable) << error;
    }
    mac.failing.clear();
    EXPECT_EQ(transport->call(request).value().result, SMCResult::success);
}

TEST(DriverFaults, AnIntermittentControllerIsStillAsked) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    for (int round = 0; round < 5; ++round) {
        for (const int error : {EIO, ETIMEDOUT}) {
            mac.readError = error;
            EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
        }
        mac.readError = 0;
        EXPECT_EQ(smc.readValue("Tp01"), 55.0) << "two failures in a row are no silence";
    }
}

TEST(DriverFaults, AControllerThatDoesNotAnswerIsLeftAloneForFiveSeconds) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    mac.readError = EIO;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
    }
    const int readsUntilStuck = mac.reads;
    EXPECT_EQ(readsUntilStuck, 3);
    mac.readError = 0;
    EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
    EXPECT_EQ(mac.reads, readsUntilStuck);
    mac.now += milliseconds(5000);
    EXPECT_EQ(smc.readValue("Tp01"), 55.0);
}

TEST(DriverFaults, ADeviceThatComesBackUnderAnotherNumberIsFoundAgain) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    mac.now = milliseconds(10'000);
    ASSERT_EQ(smc.readValue("Tp01"), 55.0);
    mac.unplug();
    EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
    mac.plugIn("7");
    EXPECT_EQ(smc.readValue("Tp01"), std::nullopt) << "looked for at most every two seconds";
    mac.now += milliseconds(2000);
    static_cast<void>(smc.readValue("Tp01")); // after this failure the transport looks for the device
    EXPECT_EQ(smc.readValue("Tp01"), 55.0);
    EXPECT_EQ(smc.allKeys().size(), 8U) << "the list of keys stays";
}

TEST(DriverFaults, AKeyThatDoesNotComeBackReadsNoOthersFile) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    mac.now = milliseconds(10'000);
    ASSERT_EQ(smc.readValue("Tp01"), 55.0);
    mac.unplug();
    mac.plugIn("7");
    mac.files["/sys/class/hwmon/hwmon7/temp1_label"] = "Tp09\n";
    static_cast<void>(smc.readValue("Tp01")); // after this failure the transport looks for the device
    EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
    EXPECT_EQ(smc.readValue("F0Ac"), 1300);

    mac.unplug();
    mac.now += milliseconds(2000);
    mac.plugIn("8");
    static_cast<void>(smc.readValue("F0Ac"));
    EXPECT_EQ(smc.readValue("Tp01"), 55.0) << "it may come back later";
}

TEST(DriverFaults, AFanThatDoesNotComeBackIsNotWritten) {
    FakeMac mac;
    const auto addFan = [&mac](const std::string& device) {
        mac.files[device + "/fan2_min"] = "1199\n";
        mac.files[device + "/fan2_max"] = "7199\n";
        mac.files[device + "/fan2_target"] = "1199\n";
    };
    addFan("/sys/class/hwmon/hwmon3");
    mac.files["/sys/class/hwmon/hwmon3/fan2_input"] = "1500\n";
    SMC smc = openFakeDriver(mac);
    mac.now = milliseconds(10'000);
    ASSERT_EQ(smc.readValue("F1Ac"), 1500);
    mac.unplug();
    mac.plugIn("7");
    addFan("/sys/class/hwmon/hwmon7"); // without a speed it is no fan
    static_cast<void>(smc.readValue("F0Ac"));
    EXPECT_FALSE(smc.setFanSpeed(1, 3000));
    EXPECT_TRUE(mac.targetsWritten.empty());
}

TEST(DriverFaults, AnErrorOfTheControllerDuringAWriteFailsThatWrite) {
    FakeMac mac;
    SMC smc = openFakeDriver(mac);
    mac.files["/sys/class/hwmon/hwmon3/fan1_max"] = "9000\n";
    EXPECT_FALSE(smc.setFanSpeed(0, 8000));
    EXPECT_FALSE(mac.controllerIsManual);
}

} // namespace

} // namespace Fenwhirl
