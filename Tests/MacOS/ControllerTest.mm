#include "Fenwhirl/Helper.h"
#include "Fenwhirl/Monitoring/Poller.h"
#include "FenwhirlCore/Platform/IOKitTransport.h"
#include "FenwhirlCore/SMC.h"
#include "Frameworks/IOKit.h"
#import "MacTest.h"

#include <atomic>
#include <string>
#include <vector>

namespace Fenwhirl {

namespace {

// Tests the real macOS transport and everything above it: the IOKit calls are faked, and a simulated Mac
// answers them.
class ControllerTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        FakeMac::kernel() = {};
    }

    void TearDown() override {
        EXPECT_EQ(FakeMac::kernel().openConnections, 0);
        EXPECT_EQ(FakeMac::kernel().services, 0);
        EXPECT_EQ(FakeMac::kernel().matchingDictionaries, 0);
        EXPECT_EQ(FakeMac::kernel().badCalls, 0);
        MacTest::TearDown();
    }

    // Runs the helper's command line as root and returns its exit status.
    static int helper(std::vector<std::string> words) {
        std::vector<char*> arguments;
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        FakeMac::kernel().isRoot = true;
        const int status = HelperMode::run(arguments);
        FakeMac::kernel().isRoot = false;
        return status;
    }

    FakeMac::Controller mac;
};

} // namespace

TEST_F(ControllerTest, IsReadByEverybody) {
    const auto smc = SMC::open();
    ASSERT_NE(smc, nullptr);
    EXPECT_EQ(smc->fanCount(), 2);
    EXPECT_EQ(smc->readFans().size(), 2U);
    EXPECT_FALSE(smc->discoverTemperatureKeys().empty());
    EXPECT_EQ(FakeMac::kernel().services, 0); // the service is released once the connection is open
    EXPECT_EQ(FakeMac::kernel().openConnections, 1);
}

TEST_F(ControllerTest, RefusesWritesByOthersThanRoot) {
    const auto smc = SMC::open();
    EXPECT_FALSE(smc->setFanSpeed(0, 3000));
    EXPECT_FALSE(smc->fanModes().at(0));
    FakeMac::kernel().isRoot = true;
    EXPECT_TRUE(smc->setFanSpeed(0, 3000));
    EXPECT_TRUE(smc->fanModes().at(0));
}

TEST_F(ControllerTest, MayBeMissingOrClosed) {
    FakeMac::kernel().hasService = false;
    EXPECT_EQ(SMC::open(), nullptr);
    EXPECT_EQ(helper({"set", "0", "3000"}), HelperMode::smcUnavailable);
    FakeMac::kernel().hasService = true;
    FakeMac::kernel().opens = false;
    EXPECT_EQ(SMC::open(), nullptr);
    EXPECT_EQ(helper({"auto"}), HelperMode::smcUnavailable);
}

TEST_F(ControllerTest, MayVanishWhileItIsOpen) {
    const auto smc = SMC::open();
    ASSERT_TRUE(smc->hasKey("FNum"));
    FakeMac::kernel().vanishes = true;
    EXPECT_FALSE(smc->hasKey("FNum"));
    EXPECT_EQ(smc->readFans().size(), 0U);
    EXPECT_EQ(helper({"set", "0", "3000"}), HelperMode::smcFailure);
    FakeMac::kernel().vanishes = false;
    EXPECT_TRUE(smc->hasKey("FNum"));
}

TEST_F(ControllerTest, IsDrivenByTheHelper) {
    const auto smc = SMC::open();
    EXPECT_EQ(helper({"set", "1", "3100"}), HelperMode::success);
    EXPECT_TRUE(smc->fanModes().at(1));
    EXPECT_FALSE(smc->fanModes().at(0));
    EXPECT_NEAR(smc->readFans().at(1).targetRPM, 3100, 1);
    EXPECT_EQ(helper({"auto", "1"}), HelperMode::success);
    EXPECT_FALSE(smc->fanModes().at(1));
    EXPECT_EQ(helper({"set", "7", "3100"}), HelperMode::smcFailure);
}

TEST_F(ControllerTest, IsDrivenByAPollThroughTheHelper) {
    const auto stop = std::make_shared<std::atomic<bool>>(false);
    std::vector<int> statuses;
    Poller poller({.openSMC = SMC::open,
                   .runHelper =
                       [&](const HelperCommand& command) {
                           statuses.push_back(helper(command));
                           return statuses.back() == HelperMode::success;
                       },
                   .now = [] { return std::chrono::duration<double>(1000); },
                   .stop = stop});
    ASSERT_TRUE(poller.open());
    FanSettings settings;
    settings[0] = {.mode = FanModeKind::constant, .constantRPM = 3300, .sensorKey = {}};
    PollRequest request{.settings = std::make_shared<const FanSettings>(settings),
                        .helperInstalled = true,
                        .suspendsUserSpeeds = false,
                        .protect = true,
                        .protectAt = 90};
    const auto driven = poller.poll(request);
    ASSERT_TRUE(driven);
    EXPECT_EQ(driven->fans.size(), 2U);
    EXPECT_TRUE(driven->primaryCelsius.has_value());
    EXPECT_TRUE(driven->wantsManualControl);
    EXPECT_EQ(driven->problem, std::nullopt);
    EXPECT_EQ(statuses, std::vector<int>{HelperMode::success});
    const auto smc = SMC::open();
    EXPECT_TRUE(smc->fanModes().at(0));
    EXPECT_NEAR(smc->readFans().at(0).targetRPM, 3300, 1);
    poller.handBackEverything();
    EXPECT_FALSE(smc->fanModes().at(0));
    // The controller disappears, and comes back.
    FakeMac::kernel().vanishes = true;
    const auto blind = poller.poll(request);
    ASSERT_TRUE(blind);
    EXPECT_TRUE(blind->fans.empty());
    FakeMac::kernel().vanishes = false;
    EXPECT_EQ(poller.poll(request)->fans.size(), 2U);
}

} // namespace Fenwhirl
