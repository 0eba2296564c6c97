// What ordinary files cannot play: a driver with a memory of its own, sleep, a controller that does not
// answer, a device that goes away and comes back.

#include "FenwhirlCore/Platform/DriverTransport.h"
#include "FenwhirlCore/SMC.h"

#include <algorithm>
#include <cerrno>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

// An Apple Silicon Mac with one fan, played in memory as its driver behaves: a target within the limits sets
// the controller's mode only when the driver does not believe the fan manual already, and 0 clears it only
// when it does.
class PlayedMac {
public:
    std::map<std::string, std::string> files;
    std::vector<std::string> targetsWritten;
    bool controllerIsManual = false;
    bool driverBelievesManual = false;
    int readError = 0; // of every attribute, when not 0
    int reads = 0;
    milliseconds now{0};
    milliseconds slept{0};

    explicit PlayedMac(const std::string& number = "3") { plugIn(number); }

    void plugIn(const std::string& number) {
        const std::string device = "/sys/class/hwmon/hwmon" + number + "/";
        files[device + "name"] = "macsmc_hwmon\n";
        files[device + "fan1_input"] = "1300\n";
        files[device + "fan1_min"] = "1199\n";
        files[device + "fan1_max"] = "7199\n";
        files[device + "fan1_target"] = "1199\n";
        files[device + "temp1_label"] = "Tp01\n";
        files[device + "temp1_input"] = "55000\n";
        files["/proc/sys/kernel/random/boot_id"] = "boot\n";
    }

    void unplug() {
        std::erase_if(files, [](const auto& file) { return file.first.starts_with("/sys/"); });
    }

    void sleepAndWake() {
        slept += milliseconds(60'000);
        controllerIsManual = false;
    }

    void reloadDriver() { driverBelievesManual = false; }

    int writeTarget(const std::string& path, std::string_view text) {
        const int value = std::stoi(std::string(text));
        targetsWritten.push_back(std::to_string(value));
        if (value == 0) {
            if (driverBelievesManual)
                controllerIsManual = driverBelievesManual = false;
            return 0;
        }
        if (value < 1199 || value > 7199)
            return EINVAL;
        if (!driverBelievesManual)
            controllerIsManual = driverBelievesManual = true;
        files[path] = std::to_string(value) + "\n";
        return 0;
    }
};

class PlayedFiles final : public DriverFiles {
public:
    explicit PlayedFiles(PlayedMac& mac) : mac_(mac) {}

    std::vector<std::string> list(const std::string& folder) override {
        std::vector<std::string> names;
        for (const auto& [path, text] : mac_.files) {
            if (!path.starts_with(folder + "/"))
                continue;
            std::string name = path.substr(folder.size() + 1);
            name.resize(std::min(name.find('/'), name.size()));
            if (names.empty() || names.back() != name)
                names.push_back(name);
        }
        return names;
    }

    std::optional<Status> status(const std::string& path) override {
        if (!mac_.files.contains(path))
            return std::nullopt;
        return Status{true, path.ends_with("_target"), 0};
    }

    int open(const std::string& path, Access /*access*/) override {
        if (!mac_.files.contains(path))
            return -ENOENT;
        opened_.push_back(path);
        return static_cast<int>(opened_.size()) + 2;
    }

    ssize_t readAt0(int descriptor, std::span<char> buffer) override {
        const std::string& path = opened_[static_cast<std::size_t>(descriptor) - 3];
        if (!mac_.files.contains(path))
            return -ENODEV;
        if (path.ends_with("_input")) {
            ++mac_.reads;
            if (mac_.readError != 0)
                return -mac_.readError;
        }
        const std::string& text = mac_.files[path];
        std::copy(text.begin(), text.end(), buffer.begin());
        return static_cast<ssize_t>(text.size());
    }

    ssize_t writeAt0(int descriptor, std::string_view text) override {
        const std::string& path = opened_[static_cast<std::size_t>(descriptor) - 3];
        const int error = mac_.writeTarget(path, text);
        return error != 0 ? -error : static_cast<ssize_t>(text.size());
    }

    void close(int /*descriptor*/) override {}

    bool store(const std::string& folder, const std::string& name, std::string_view text) override {
        mac_.files[folder + "/" + name] = text;
        return true;
    }

    void remove(const std::string& path) override { mac_.files.erase(path); }

    milliseconds now() override { return mac_.now; }

    milliseconds sleepOffset() override { return mac_.slept; }

private:
    PlayedMac& mac_;
    std::vector<std::string> opened_;
};

SMC open(PlayedMac& mac) {
    return SMC(openDriverTransport(std::make_unique<PlayedFiles>(mac)));
}

TEST(DriverMemory, TheFirstTargetReArmsTheDriverAndLaterOnesDoNot) {
    PlayedMac mac;
    SMC smc = open(mac);
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(smc.setFanSpeed(0, 3100));
    EXPECT_THAT(mac.targetsWritten, ElementsAre("0", "3000", "3000", "3100"));
    EXPECT_TRUE(mac.controllerIsManual);
}

TEST(DriverMemory, TheNextTargetAfterSleepMakesTheFanManualAgain) {
    PlayedMac mac;
    SMC smc = open(mac);
    ASSERT_TRUE(smc.setFanSpeed(0, 3000));
    mac.sleepAndWake();
    ASSERT_FALSE(mac.controllerIsManual);
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(mac.controllerIsManual);
}

TEST(DriverMemory, ATargetThatTheFirmwareChangedIsArmedAgain) {
    PlayedMac mac;
    SMC smc = open(mac);
    ASSERT_TRUE(smc.setFanSpeed(0, 3000));
    mac.files["/sys/class/hwmon/hwmon3/fan1_target"] = "1199\n";
    mac.controllerIsManual = false;
    EXPECT_TRUE(smc.setFanSpeed(0, 3000));
    EXPECT_TRUE(mac.controllerIsManual);
}

TEST(DriverMemory, AutomaticReachesTheControllerAlsoAfterTheDriverWasLoadedAgain) {
    PlayedMac mac;
    SMC smc = open(mac);
    ASSERT_TRUE(smc.setFanSpeed(0, 3000));
    mac.reloadDriver();
    EXPECT_TRUE(smc.resetFan(0));
    EXPECT_FALSE(mac.controllerIsManual);
    EXPECT_FALSE(mac.files.contains("/run/fenwhirl/fan0"));
}

TEST(DriverFaults, AControllerThatDoesNotAnswerIsLeftAloneForFiveSeconds) {
    PlayedMac mac;
    SMC smc = open(mac);
    mac.readError = EIO;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
    const int readsUntilStuck = mac.reads;
    EXPECT_EQ(readsUntilStuck, 3);
    mac.readError = 0;
    EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
    EXPECT_EQ(mac.reads, readsUntilStuck);
    mac.now += milliseconds(5000);
    EXPECT_EQ(smc.readValue("Tp01"), 55.0);
}

TEST(DriverFaults, ADeviceThatComesBackUnderAnotherNumberIsFoundAgain) {
    PlayedMac mac;
    SMC smc = open(mac);
    mac.now = milliseconds(10'000);
    ASSERT_EQ(smc.readValue("Tp01"), 55.0);
    mac.unplug();
    EXPECT_EQ(smc.readValue("Tp01"), std::nullopt);
    mac.plugIn("7");
    EXPECT_EQ(smc.readValue("Tp01"), std::nullopt) << "looked for at most every two seconds";
    mac.now += milliseconds(2000);
    static_cast<void>(smc.readValue("Tp01")); // this failure makes the transport look
    EXPECT_EQ(smc.readValue("Tp01"), 55.0);
    EXPECT_EQ(smc.allKeys().size(), 8U) << "the list of keys stays";
}

TEST(DriverFaults, AnErrorOfTheControllerDuringAWriteFailsThatWrite) {
    PlayedMac mac;
    SMC smc = open(mac);
    mac.files["/sys/class/hwmon/hwmon3/fan1_max"] = "9000\n";
    EXPECT_FALSE(smc.setFanSpeed(0, 8000));
    EXPECT_FALSE(mac.controllerIsManual);
}

} // namespace
