#include "Fenwhirl/Monitoring/Poller.h"

#include "Fenwhirl/Monitoring/FanCustody.h"
#include "Support/ScriptedSMC.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using Commands = std::vector<HelperCommand>;

// A poller over two fans and a processor sensor at 60 °C. The test controls the clock and the helper.
class PollerTest : public testing::Test {
protected:
    ScriptedSMC smc;
    const std::shared_ptr<std::atomic<bool>> stop = std::make_shared<std::atomic<bool>>(false);
    std::chrono::duration<double> now{1000};
    std::chrono::duration<double> runTime{0}; // duration of each helper run
    Commands commands;
    std::function<bool(const HelperCommand&)> answer = [](const auto&) { return true; };
    PollRequest request{.settings = std::make_shared<const FanSettings>(),
                        .helperInstalled = true,
                        .suspendsUserSpeeds = false,
                        .protect = true,
                        .protectAt = 90};

    Poller poller{{.openSMC = [this] { return std::make_unique<SMC>(smc.connect()); },
                   .runHelper =
                       [this](const HelperCommand& command) {
                           commands.push_back(command);
                           now += runTime;
                           return answer(command);
                       },
                   .now = [this] { return now; },
                   .stop = stop}};

    PollerTest() {
        smc.addOlderFans(2);
        smc.setNumber("TC0P", "sp78", 60);
        EXPECT_TRUE(poller.open());
    }

    std::optional<PollResult> poll() { return poller.poll(request); }

    void pin(int fan, double rpm) {
        FanSettings settings = *request.settings;
        settings[fan] = {.mode = FanModeKind::constant, .constantRPM = rpm, .sensorKey = {}};
        request.settings = std::make_shared<const FanSettings>(settings);
    }

    // Tells the poller to stop as soon as it requests this key.
    void stopAtRequestFor(std::string_view key) {
        smc.hook = [this,
                    code = SMC::fourCC(key)](const SMCParam& asked) -> std::optional<ScriptedSMC::Reply> {
            if (asked.key == code) {
                *stop = true;
            }
            return std::nullopt;
        };
    }
};

TEST(PollerWithoutController, DoesNothing) {
    Poller poller({.openSMC = [] { return std::unique_ptr<SMC>(); },
                   .runHelper = [](const HelperCommand&) { return true; },
                   .now = [] { return std::chrono::duration<double>(); },
                   .stop = std::make_shared<std::atomic<bool>>(false)});
    EXPECT_FALSE(poller.open());
    EXPECT_FALSE(poller.poll({.settings = std::make_shared<const FanSettings>(),
                              .helperInstalled = true,
                              .suspendsUserSpeeds = false,
                              .protect = true,
                              .protectAt = 90}));
    EXPECT_EQ(poller.fansLastRead(), std::vector<int>());
    EXPECT_TRUE(poller.hasGoneBack(0)); // nothing can be checked
}

TEST_F(PollerTest, ReadsTheTemperaturesThatThereWereAtTheStart) {
    smc.setNumber("TG0P", "sp78", 70);
    EXPECT_EQ(poll()->temperatures.size(), 1U);
}

TEST_F(PollerTest, TenSecondsCountFromTheEndOfARun) {
    pin(0, 2000);
    runTime = std::chrono::seconds(4);
    (void)poll();
    now += std::chrono::seconds(8); // twelve seconds after the run began
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}}));
    now += std::chrono::milliseconds(2001);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"set", "0", "2000"}}));
}

TEST_F(PollerTest, OfSeveralProblemsTheLastCounts) {
    pin(0, 2000);
    pin(1, 2000);
    (void)poll();
    smc.remove("TC0P");
    answer = [](const HelperCommand& command) { return command.at(1) != "1"; };
    EXPECT_EQ(poll()->problem, PollProblem::refused); // of the second fan's hand-back
    answer = [](const HelperCommand&) { return true; };
    EXPECT_EQ(poll()->problem, PollProblem::noTemperature);
    EXPECT_EQ(commands.size(), 5U);
}

// If the program ended during the first command, the guard would otherwise not hand the fan back.
TEST_F(PollerTest, AFanIsKnownToTheGuardBeforeItIsDriven) {
    pin(1, 2000);
    const auto custody = std::make_shared<FanCustody>(nullptr);
    custody->setIntent({.settings = request.settings,
                        .helperInstalled = true,
                        .isInFront = true,
                        .isGoingToSleep = false,
                        .fansShown = {}});
    std::vector<int> known;
    Poller guarded({.openSMC = [this] { return std::make_unique<SMC>(smc.connect()); },
                    .runHelper =
                        [&known, &custody](const HelperCommand&) {
                            known = custody->ours();
                            return true;
                        },
                    .now = [this] { return now; },
                    .stop = stop,
                    .custody = custody});
    ASSERT_TRUE(guarded.open());
    (void)guarded.poll(request);
    EXPECT_EQ(known, std::vector<int>({1}));
}

TEST_F(PollerTest, AFanThatIsRefusedDoesNotKeepTheOthersWaiting) {
    pin(0, 2000);
    pin(1, 3000);
    answer = [](const HelperCommand&) { return false; };
    EXPECT_EQ(poll()->problem, PollProblem::refused);
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"set", "1", "3000"}}));
}

TEST_F(PollerTest, ASpeedThatIsHeldBackIsNotTakenForSent) {
    pin(0, 2000);
    request.suspendsUserSpeeds = true;
    EXPECT_TRUE(poll()->wantsManualControl);
    EXPECT_EQ(commands, Commands());
    request.suspendsUserSpeeds = false;
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}}));
}

TEST_F(PollerTest, AFanIsHandedBackAlsoWhileSpeedsAreHeldBack) {
    pin(0, 2000);
    (void)poll();
    request.suspendsUserSpeeds = true;
    smc.setNumber("TC0P", "sp78", 92);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"auto", "0"}}));
}

TEST_F(PollerTest, HeatProtectionGoesOnWhileSpeedsAreHeldBack) {
    pin(0, 2000);
    request.suspendsUserSpeeds = true;
    smc.setNumber("TC0P", "sp78", 90);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "6000"}, {"set", "1", "6000"}}));
}

TEST_F(PollerTest, AFanThatIsManualAtTheStartIsHandedBackOrSentItsSpeed) {
    answer = [this](const HelperCommand&) {
        smc.setNumber("FS! ", "ui16", 1);
        return true;
    };
    smc.setNumber("FS! ", "ui16", 3);
    pin(0, 2000);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"auto", "1"}}));
}

TEST_F(PollerTest, AModeThatCannotBeReadAtTheStartIsReadLater) {
    smc.setNumber("FS! ", "ui16", 3);
    smc.at("FS! ").readResult = 0x84;
    (void)poll();
    EXPECT_EQ(commands, Commands());
    smc.at("FS! ").readResult = SMCResult::success;
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto", "0"}, {"auto", "1"}}));
}

TEST_F(PollerTest, AFanThatSomebodyDrivesInAnEmergencyIsHandedBackAgainAndAgain) {
    smc.setNumber("TC0P", "sp78", 92);
    (void)poll();
    EXPECT_EQ(commands, Commands());
    answer = [this](const HelperCommand&) {
        smc.setNumber("FS! ", "ui16", 0);
        return true;
    };
    for (int i = 0; i < 2; ++i) {
        smc.setNumber("FS! ", "ui16", 2);
        (void)poll();
        (void)poll();
    }
    EXPECT_EQ(commands, (Commands{{"auto", "1"}, {"auto", "1"}}));
}

TEST_F(PollerTest, ARefusedHandBackIsRepeatedUntilItSucceeds) {
    pin(0, 2000);
    (void)poll();
    commands.clear();
    answer = [](const HelperCommand&) { return false; };
    smc.setNumber("TC0P", "sp78", 92);
    (void)poll();
    (void)poll(); // repeated at every poll while manual control is forbidden
    EXPECT_EQ(commands, (Commands{{"auto", "0"}, {"auto", "0"}}));
    request.settings = std::make_shared<const FanSettings>();
    smc.setNumber("TC0P", "sp78", 60);
    (void)poll(); // otherwise repeated ten seconds later
    now += std::chrono::milliseconds(9999);
    (void)poll();
    EXPECT_EQ(commands.size(), 2U);
    now += std::chrono::milliseconds(1);
    answer = [](const HelperCommand&) { return true; };
    (void)poll();
    now += std::chrono::hours(1);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto", "0"}, {"auto", "0"}, {"auto", "0"}}));
}

TEST_F(PollerTest, AFanThatCannotBeReadIsHandedBackByItsIndex) {
    for (const std::string_view lost : {"F1Ac", "FNum"}) {
        for (const double celsius : {90.0, 92.0, 0.0}) { // protection, emergency, no temperature
            smc.setNumber("FNum", "ui8 ", 2);
            smc.setNumber("F1Ac", "fpe2", 2000);
            smc.setNumber("TC0P", "sp78", 60);
            now += std::chrono::hours(1);
            pin(1, 3000);
            (void)poll();
            ASSERT_EQ(commands.back(), (HelperCommand{"set", "1", "3000"}));
            smc.remove(lost);
            const auto before = commands.size();
            (void)poll();
            ASSERT_EQ(commands.size(), before) << "it may come back";
            smc.setNumber("TC0P", "sp78", celsius);
            (void)poll();
            EXPECT_EQ(commands.back(), (HelperCommand{"auto", "1"})) << lost << celsius;
        }
    }
}

TEST_F(PollerTest, AFanWithoutAMaximumIsLeftToTheFirmware) {
    pin(0, 2000);
    (void)poll();
    smc.remove("F0Mx");
    smc.setNumber("TC0P", "sp78", 91);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"auto", "0"}, {"set", "1", "6000"}}));
}

TEST_F(PollerTest, AFanWithoutAMaximumThatSomebodyDrivesIsHandedBackInTheHeat) {
    (void)poll();
    smc.remove("F0Mx");
    smc.setNumber("FS! ", "ui16", 1);
    (void)poll();
    EXPECT_EQ(commands, Commands());
    smc.setNumber("TC0P", "sp78", 90);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto", "0"}, {"set", "1", "6000"}}));
}

TEST_F(PollerTest, BehindAnotherSessionItOnlyGivesBackWhatIsItsOwn) {
    pin(0, 2000);
    (void)poll();
    request.isInFront = false;
    smc.setNumber("FS! ", "ui16", 2); // the other session drives the second fan
    (void)poll();
    now += std::chrono::hours(1);
    EXPECT_FALSE(poll()->wantsManualControl);
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"auto", "0"}}));
    request.isInFront = true;
    (void)poll(); // the other session has left the second fan manual
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"auto", "0"}, {"set", "0", "2000"}, {"auto", "1"}}));
}

TEST_F(PollerTest, AHelperOfAnotherProtocolIsSentNoSpeed) {
    pin(0, 2000);
    (void)poll();
    request.speaksOurProtocol = false;
    now += std::chrono::hours(1);
    (void)poll();
    smc.setNumber("TC0P", "sp78", 92);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"auto", "0"}}));
}

TEST_F(PollerTest, AFanFoundManualGoesBackWhenTheHelperSpeaksAnotherProtocol) {
    smc.setNumber("FS! ", "ui16", 1);
    pin(0, 2000);
    request.speaksOurProtocol = false;
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto", "0"}}));
}

TEST_F(PollerTest, ARefusedHandBackIsRepeatedWhileTheHelperIsBeingRemoved) {
    pin(0, 2000);
    (void)poll();
    commands.clear();
    smc.setNumber("FS! ", "ui16", 1);
    answer = [](const HelperCommand& command) { return command.size() < 2; };
    poller.handBackEverything();
    EXPECT_EQ(commands, (Commands{{"auto"}, {"auto", "0"}}));
    request.suspendsUserSpeeds = true;
    (void)poll();
    EXPECT_EQ(commands.size(), 2U);
    now += std::chrono::seconds(11);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto"}, {"auto", "0"}, {"auto", "0"}}));
}

TEST_F(PollerTest, WhatHeatProtectionDroveGoesBackThoughTheHelperIsBeingRemoved) {
    pin(0, 2000);
    pin(1, 3000);
    (void)poll();
    poller.handBackEverything();
    commands.clear();
    request.suspendsUserSpeeds = true;
    (void)poll();
    now += std::chrono::seconds(11);
    (void)poll();
    EXPECT_EQ(commands, Commands()); // the one command has handed both back
    smc.setNumber("TC0P", "sp78", 90);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "6000"}, {"set", "1", "6000"}}));
    smc.setNumber("TC0P", "sp78", 84);
    now += std::chrono::seconds(2);
    commands.clear();
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto", "0"}, {"auto", "1"}}));
}

TEST_F(PollerTest, HeatProtectionActsAtOnceAfterEverythingWasHandedBack) {
    pin(0, 6000);
    (void)poll();
    poller.handBackEverything();
    commands.clear();
    smc.setNumber("TC0P", "sp78", 90);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "6000"}, {"set", "1", "6000"}}));
}

TEST_F(PollerTest, ARemovedHelperGoesOnUntilEveryFanIsBack) {
    pin(0, 2000);
    (void)poll();
    request.helperInstalled = false;
    commands.clear();
    Commands removed;
    bool accepts = false;
    const auto run = [&](const HelperCommand& command) {
        removed.push_back(command);
        return accepts;
    };
    poller.handBackWithRemovedHelper(run);
    (void)poll();
    EXPECT_EQ(removed, (Commands{{"auto", "0"}, {"auto", "0"}}));
    accepts = true;
    (void)poll();
    (void)poll();
    EXPECT_EQ(removed, (Commands{{"auto", "0"}, {"auto", "0"}, {"auto", "0"}}));
    EXPECT_EQ(commands, Commands());
}

TEST_F(PollerTest, ChecksTheModesAgainWhenSomethingElseMayHaveChangedThem) {
    (void)poll();
    smc.setNumber("FS! ", "ui16", 1);
    (void)poll();
    EXPECT_EQ(commands, Commands());
    poller.checkModesAgain();
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto", "0"}}));
}

TEST_F(PollerTest, BehindAnotherSessionHeatProtectionTakesOverNoFan) {
    smc.remove("F1Mx");
    request.isInFront = false;
    (void)poll();
    smc.setNumber("FS! ", "ui16", 1); // the session in front drives the first fan
    smc.setNumber("TC0P", "sp78", 90);
    (void)poll();
    EXPECT_EQ(commands, Commands());
}

TEST_F(PollerTest, HandingEverythingBackNamesTheFansThatTheMachineShowsManual) {
    pin(0, 2000);
    pin(1, 3000);
    (void)poll();
    commands.clear();
    smc.setNumber("FS! ", "ui16", 2); // "auto" without a number missed the second fan
    smc.remove("FNum");
    poller.handBackEverything();
    EXPECT_EQ(commands, (Commands{{"auto"}, {"auto", "1"}}));
}

TEST_F(PollerTest, AModeThatCanNoLongerBeReadConfirmsNoHandBack) {
    pin(0, 2000);
    (void)poll();
    commands.clear();
    request.settings = std::make_shared<const FanSettings>();
    smc.at("FS! ").readResult = 0x84;
    poller.handBackEverything();
    EXPECT_EQ(commands, (Commands{{"auto"}, {"auto", "0"}}));
    now += std::chrono::seconds(10);
    EXPECT_EQ(poll()->problem, PollProblem::refused);
    smc.at("FS! ").readResult = SMCResult::success;
    now += std::chrono::seconds(10);
    EXPECT_EQ(poll()->problem, std::nullopt);
    now += std::chrono::hours(1);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"auto"}, {"auto", "0"}, {"auto", "0"}, {"auto", "0"}}));
}

TEST_F(PollerTest, AFanThatNeverReportedItsModeIsBackWhenTheHelperSaysSo) {
    smc.remove("FS! ");
    pin(0, 2000);
    (void)poll();
    request.settings = std::make_shared<const FanSettings>();
    EXPECT_EQ(poll()->problem, std::nullopt);
    now += std::chrono::hours(1);
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}, {"auto", "0"}}));
}

// No poll could ever confirm it: the connection is not opened again.
TEST_F(PollerTest, AFanIsBackWhenTheHelperSaysSoAndTheConnectionIsLostMeanwhile) {
    pin(0, 2000);
    (void)poll();
    commands.clear();
    answer = [this](const HelperCommand& command) {
        if (command.size() == 2) {
            smc.diesAtRequest = smc.requests.size() + 1; // while the mode is read
        }
        return true;
    };
    smc.at("FS! ").readResult = 0x84; // so that "auto" alone is not enough
    poller.handBackEverything();
    EXPECT_EQ(commands, (Commands{{"auto"}, {"auto", "0"}}));
    now += std::chrono::hours(1);
    (void)poll();
    EXPECT_EQ(commands.size(), 2U);
}

TEST_F(PollerTest, AFanThatHasNoModeKeyIsNotAskedForItsModeAgain) {
    ScriptedSMC large;
    large.addUnlockableFans(10);
    large.setNumber("FNum", "ui8 ", 11);
    large.setNumber("F10A", "flt ", 2000);
    large.setNumber("TC0P", "sp78", 60);
    Poller another({.openSMC = [&large] { return std::make_unique<SMC>(large.connect()); },
                    .runHelper = [](const HelperCommand&) { return true; },
                    .now = [this] { return now; },
                    .stop = stop});
    ASSERT_TRUE(another.open());
    const auto asksForModes = [&] {
        large.requests.clear();
        EXPECT_EQ(another.poll(request)->fans.size(), 11U);
        return std::ranges::any_of(large.requests, [](const SMCParam& asked) {
            return asked.key == SMC::fourCC("F9Md") && asked.data8 == SMCCommand::readKey;
        });
    };
    EXPECT_TRUE(asksForModes());
    EXPECT_FALSE(asksForModes());
    large.at("F9Md").readResult = 0x84;
    another.checkModesAgain();
    EXPECT_TRUE(asksForModes());
    EXPECT_TRUE(asksForModes()); // the tenth fan's mode is still not known
}

TEST_F(PollerTest, WithoutAWayToAskTheHelperIsTakenToSpeakOurProtocol) {
    pin(0, 2000);
    request.speaksOurProtocol.reset();
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}}));
}

TEST_F(PollerTest, OnceItIsToStopItStartsNoFurtherHelper) {
    pin(0, 2000);
    pin(1, 3000);
    answer = [this](const HelperCommand&) {
        *stop = true;
        return true;
    };
    (void)poll();
    EXPECT_EQ(commands, (Commands{{"set", "0", "2000"}}));
    EXPECT_FALSE(poll());
}

TEST_F(PollerTest, AReadingThatIsCutShortDrivesNothingAndForgetsNoFan) {
    ASSERT_TRUE(poll());
    EXPECT_EQ(poller.fansLastRead(), (std::vector<int>{0, 1}));
    pin(0, 2000);
    stopAtRequestFor("F0Tg");
    EXPECT_FALSE(poll());
    EXPECT_EQ(commands, Commands());
    EXPECT_EQ(poller.fansLastRead(), (std::vector<int>{0, 1}));
}

} // namespace

} // namespace Fenwhirl
