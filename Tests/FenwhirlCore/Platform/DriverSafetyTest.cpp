// When the driver transport refuses manual control, and which files it leaves behind.

#include "FenwhirlCore/Platform/DriverTransport.h"
#include "FenwhirlCore/Platform/DriverTrees.h"
#include "FenwhirlCore/SMC.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

namespace fs = std::filesystem;

constexpr const char* allowingFile = "etc/fenwhirl/allow-fan-control";

class DriverSafety : public testing::Test {
protected:
    bool set(double rpm = 2640) const {
        return SMC(openDriverTransport(systemDriverFiles(tree.root()))).setFanSpeed(0, rpm);
    }

    bool reset() const { return SMC(openDriverTransport(systemDriverFiles(tree.root()))).resetFan(0); }

    [[nodiscard]] std::string fan(const std::string& attribute) const {
        return tree.read(tree.device() + "/fan1_" + attribute);
    }

    // Removes the laptop's processor sensors.
    void blind() {
        tree.makeIntelLaptop();
        for (const char* channel : {"4", "5", "6", "7"}) {
            tree.remove(tree.device() + "/temp" + channel + "_input");
        }
    }

    DriverTree tree;
};

TEST_F(DriverSafety, WhichTemperaturesBelongToTheProcessor) {
    tree.makeAppleSiliconLaptop();
    for (const auto& [key, isProcessor] : {std::pair("Tp01", true),
                                           {"Te05", true},
                                           {"Tf04", true},
                                           {"TC0P", true},
                                           {"TCXC", true},
                                           {"TCHP", false},
                                           {"TCHQ", true},
                                           {"TSCD", false},
                                           {"Tg05", false},
                                           {"TG0P", false},
                                           {"Tm02", false},
                                           {"TP0P", false},
                                           {"Tc01", false},
                                           {"T~Gk", false}}) {
        tree.write(tree.device() + "/temp5_label", std::string(key) + "\n");
        tree.write(tree.device() + "/temp5_input", "50000\n");
        EXPECT_EQ(set(), isProcessor) << key;
    }
}

TEST_F(DriverSafety, WithoutATemperatureNoDriverIsControlledButEachIsHandedBack) {
    blind();
    EXPECT_FALSE(set());
    EXPECT_EQ(fan("manual"), "0");
    EXPECT_EQ(fan("output"), "2000");
    tree.write(tree.device() + "/fan1_manual", "1\n", true);
    EXPECT_TRUE(reset());
    EXPECT_EQ(fan("manual"), "0");
}

TEST_F(DriverSafety, OnlyARootOwnedFileAllowsControlWithoutATemperature) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "the allowing file has to belong to root";
    }
    blind();
    const fs::path file = fs::path(tree.root()) / allowingFile;
    tree.allowFanControl();
    EXPECT_TRUE(set());
    ASSERT_EQ(chown(file.c_str(), 65534, 65534), 0);
    EXPECT_FALSE(set()) << "another user's";
    fs::remove(file);
    tree.write("etc/somewhere-else", "");
    fs::create_symlink("../somewhere-else", file);
    EXPECT_FALSE(set()) << "a link, even to a file of root's";
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_FALSE(set()) << "a folder";
    fs::remove(file);
    EXPECT_FALSE(set());
    // The file is checked before each write, so an open connection notices it.
    SMC smc(openDriverTransport(systemDriverFiles(tree.root())));
    EXPECT_FALSE(smc.setFanSpeed(0, 2640));
    tree.write(allowingFile, "whatever it says\n");
    EXPECT_TRUE(smc.setFanSpeed(0, 2640));
}

TEST_F(DriverSafety, AnOrdinaryUserReadsEverythingAndChangesNothing) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become somebody else";
    }
    tree.makeIntelLaptop();
    fs::permissions(tree.root(), fs::perms(0755));
    const pid_t child = fork();
    if (child == 0) {
        bool isAsExpected = setgid(65534) == 0 && setuid(65534) == 0;
        SMC smc(openDriverTransport(systemDriverFiles(tree.root())));
        isAsExpected = isAsExpected && smc.readFans().size() == 2 && smc.readValue("TC0P") == 51;
        isAsExpected = isAsExpected && !smc.setFanSpeed(0, 2640) && !smc.resetFan(0);
        _exit(isAsExpected ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(fan("manual"), "0");
    EXPECT_EQ(fan("output"), "2000");
}

TEST_F(DriverSafety, NoFanIsStopped) {
    tree.makeIntelLaptop();
    tree.remove(tree.device() + "/fan1_min"); // writes may then start at 0
    EXPECT_FALSE(set(0));
    EXPECT_FALSE(set(0.9));
    EXPECT_EQ(fan("output"), "2000");
    EXPECT_TRUE(set(1));
    EXPECT_EQ(fan("output"), "1");
}

TEST_F(DriverSafety, AFanWithoutUsableLimitsCanOnlyBeHandedBack) {
    for (const auto& [lowest, highest] : {std::pair("0\n", "7199\n"),
                                          {"-1\n", "7199\n"},
                                          {"7200\n", "7199\n"},
                                          {"fast\n", "7199\n"},
                                          {"1199\n", "\n"}}) {
        DriverTree own;
        own.makeAppleSiliconLaptop();
        own.addProcessorSensors();
        own.write(own.device() + "/fan1_min", lowest);
        own.write(own.device() + "/fan1_max", highest);
        SMC smc(openDriverTransport(systemDriverFiles(own.root())));
        EXPECT_FALSE(smc.setFanSpeed(0, 2640)) << lowest << highest;
        // Unreadable limits must not keep the fan from being handed back.
        const bool isReadable =
            std::isdigit(lowest[0] == '-' ? lowest[1] : lowest[0]) != 0 && std::isdigit(highest[0]) != 0;
        EXPECT_EQ(smc.resetFan(0), !isReadable) << lowest << highest;
        EXPECT_EQ(own.read(own.device() + "/fan1_target"), "0") << lowest << highest;
    }
}

TEST_F(DriverSafety, StateIsKeptInAFolderThatOnlyItsOwnerCanWrite) {
    tree.makeAppleSiliconLaptop();
    tree.addProcessorSensors();
    const fs::path folder = fs::path(tree.root()) / "run/fenwhirl";
    EXPECT_TRUE(set());
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0755)) << "made by the first one who needs it";
    EXPECT_THAT(tree.read("run/fenwhirl/fan0"), testing::EndsWith(" 2640"));

    fs::remove(folder / "fan0");
    fs::permissions(folder, fs::perms(0777));
    EXPECT_TRUE(set());
    EXPECT_FALSE(fs::exists(folder / "fan0")) << "others could write here, so nothing is kept";
}

TEST_F(DriverSafety, ALinkInPlaceOfTheStateFileIsNotFollowed) {
    tree.makeAppleSiliconLaptop();
    tree.addProcessorSensors();
    tree.write("precious", "precious\n", true);
    tree.link("run/fenwhirl/fan0", "../../precious");
    EXPECT_TRUE(set());
    EXPECT_EQ(tree.read("precious"), "precious");
    EXPECT_TRUE(reset());
    EXPECT_EQ(tree.read("precious"), "precious");
    EXPECT_FALSE(fs::is_symlink(fs::path(tree.root()) / "run/fenwhirl/fan0"));
}

} // namespace

} // namespace Fenwhirl
