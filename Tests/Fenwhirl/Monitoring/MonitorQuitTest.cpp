#include "MonitorHarness.h"
#include "Support/Volume.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>

#include <algorithm>
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <thread>

namespace Fenwhirl {

namespace {

using Runs = std::vector<FakeHelper::Arguments>;
using Scope = HandBack::Scope;

class MonitorQuit : public testing::Test, protected MonitorHarness {};

// The final state of fans 0 and 1 after these runs: "auto" or a speed.
std::map<std::string, std::string> endState(const Runs& runs) {
    std::map<std::string, std::string> state = {{"0", "auto"}, {"1", "auto"}};
    for (const auto& run : runs) {
        if (run.at(0) == "set") {
            state[run.at(1)] = run.at(2);
        } else if (run.size() == 2) {
            state[run.at(1)] = "auto";
        } else {
            state = {{"0", "auto"}, {"1", "auto"}};
        }
    }
    return state;
}

} // namespace

TEST_F(MonitorQuit, HandsBackEveryFanButTheConstantOnes) {
    start();
    monitor().setSetting(0, curve(40, 80));
    monitor().setSetting(1, constant(3000));
    poll();
    helper.forgetRuns();
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}}));
    EXPECT_EQ(timesHandedBack, 1);
}

TEST_F(MonitorQuit, AutomaticFansAreHandedBackToo) {
    start();
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "1"}}));
}

TEST_F(MonitorQuit, WithoutFansAndSettingsAllAreHandedBackAtOnce) {
    make();
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto"}}));
}

TEST_F(MonitorQuit, OnlyConstantFansMeansNothingToHandBack) {
    preferences.setData(
        QStringLiteral("settings"),
        R"({"5":{"mode":"constant","constantRPM":1,"sensorKey":"","startTemp":1,"maxTemp":2}})");
    make();
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorQuit, WithoutTheHelperNothingIsRun) {
    start();
    helper.installed = false;
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorQuit, FansThatVanishedAreHandedBackWhenTheyHaveASetting) {
    start();
    monitor().setSetting(0, curve(40, 80));
    poll();
    smc.remove("F0Ac");
    smc.remove("F1Ac");
    poll();
    helper.forgetRuns();
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}}));
}

TEST_F(MonitorQuit, HandsBackOnlyOnce) {
    start();
    monitor().restoreAutomaticBlocking();
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns().size(), 2U);
    EXPECT_EQ(timesHandedBack, 1);
}

TEST_F(MonitorQuit, LaterPollsDoNothing) {
    start();
    monitor().setSetting(0, constant(3000));
    monitor().restoreAutomaticBlocking();
    helper.forgetRuns();
    QSignalSpy polled(&monitor(), &Monitor::polled);
    monitor().tick();
    destroyMonitor(); // waits for the queue
    EXPECT_EQ(polled.count(), 0);
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorQuit, RunningPollEndsFirstAndStartsNoFurtherHelper) {
    start();
    monitor().setSetting(0, curve(40, 80));
    monitor().setSetting(1, curve(40, 80));
    std::promise<void> running;
    const auto gone = destroyMonitorAtTheEnd();
    std::promise<void> release;
    helper.onRun = [&, released = release.get_future().share(), first = true](const auto& arguments) mutable {
        if (arguments.at(0) == "set" && std::exchange(first, false)) {
            running.set_value();
            released.wait();
        }
    };
    monitor().tick();
    monitor().tick();
    running.get_future().wait();
    auto releaseLater = std::async(std::launch::async, [&] { release.set_value(); });
    monitor().restoreAutomaticBlocking();
    const Runs runs = helper.takeRuns();
    EXPECT_LE(std::ranges::count(runs, "set", [](const auto& run) { return run.at(0); }), 2);
    EXPECT_EQ(endState(runs), endState({}));
    ASSERT_GE(runs.size(), 2U);
    EXPECT_EQ(Runs(runs.end() - 2, runs.end()), (Runs{{"auto", "0"}, {"auto", "1"}}));
}

TEST_F(MonitorQuit, FansOfAPollThatIsNotPublishedYetAreHandedBack) {
    preferences.setData(
        QStringLiteral("settings"),
        R"({"0":{"mode":"constant","constantRPM":2000,"sensorKey":"","startTemp":1,"maxTemp":2}})");
    setCelsius(91); // heat protection drives both fans in the first poll
    make();
    std::atomic<bool> driven = false;
    const auto gone = destroyMonitorAtTheEnd();
    std::promise<void> release;
    helper.onRun = [&, released = release.get_future().share()](const auto&) {
        if (!driven.exchange(true)) {
            released.wait();
        }
    };
    monitor().start();
    ASSERT_TRUE(waitUntil([&] { return driven.load(); }));
    ASSERT_TRUE(monitor().fans().isEmpty());
    auto releaseLater = std::async(std::launch::async, [&] { release.set_value(); });
    monitor().restoreAutomaticBlocking();
    const Runs runs = helper.takeRuns();
    EXPECT_EQ(runs.back(), (FakeHelper::Arguments{"auto", "1"}));
}

TEST_F(MonitorQuit, PublishedFansThatTheLastPollDidNotReadAreHandedBackToo) {
    preferences.setData(
        QStringLiteral("settings"),
        R"({"0":{"mode":"sensor","constantRPM":2000,"sensorKey":"","startTemp":40,"maxTemp":80}})");
    setCelsius(91); // heat protection drives both fans
    start();
    EXPECT_EQ(helper.takeRuns().size(), 2U);
    std::promise<void> running;
    const auto gone = destroyMonitorAtTheEnd();
    std::promise<void> release;
    helper.onRun = [&, released = release.get_future().share()](const auto& arguments) {
        if (arguments.at(0) == "set") {
            running.set_value();
            released.wait();
        }
    };
    smc.remove("F1Ac");
    advance(11);
    monitor().tick();
    running.get_future().wait();
    auto releaseLater = std::async(std::launch::async, [&] { release.set_value(); });
    monitor().restoreAutomaticBlocking();
    const Runs runs = helper.takeRuns(); // the poll may already have handed the second fan back
    ASSERT_GE(runs.size(), 3U);
    EXPECT_EQ(runs.front(), (FakeHelper::Arguments{"set", "0", "6000"}));
    EXPECT_EQ(Runs(runs.end() - 2, runs.end()), (Runs{{"auto", "0"}, {"auto", "1"}}));
}

TEST_F(MonitorQuit, AtAnyMomentNoFanStaysManualThatIsNotConstant) {
    std::mt19937 generator(3);
    std::atomic<int> helperMicroseconds = 0;
    const auto gone = destroyMonitorAtTheEnd();
    helper.onRun = [&](const auto&) {
        std::this_thread::sleep_for(std::chrono::microseconds(helperMicroseconds));
    };
    for (int round = 0; round < rounds(500, 20'000); ++round) {
        helperMicroseconds = static_cast<int>(generator() % 3 * (generator() % 500));
        start();
        monitor().setSetting(0, curve(40, 80));
        monitor().setSetting(1, constant(3000));
        for (auto ticks = generator() % 4; ticks > 0; --ticks) {
            advance(11);
            monitor().tick();
        }
        if (generator() % 2 == 0) {
            poll();
        } else {
            // Not a wait for a condition: the test varies the moment at which it quits.
            std::this_thread::sleep_for(std::chrono::microseconds(generator() % 1000));
        }
        monitor().restoreAutomaticBlocking();
        const auto state = endState(helper.takeRuns());
        ASSERT_EQ(state.at("0"), "auto");
        destroyMonitor();
    }
}

TEST_F(MonitorQuit, PollThatNeverEndsDoesNotBlockQuitting) {
    MonitorServices impatient = services();
    impatient.drainTimeout = std::chrono::milliseconds(20);
    std::promise<void> release;
    std::promise<void> hanging;
    helper.onRun = [&, released = release.get_future().share()](const auto& arguments) {
        if (arguments.at(0) == "set") {
            hanging.set_value();
            released.wait();
        }
    };
    auto m = std::make_unique<Monitor>(impatient);
    QSignalSpy polled(m.get(), &Monitor::polled);
    m->start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    m->setSetting(0, curve(40, 80));
    m->tick();
    hanging.get_future().wait();
    m->restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "1"}}));
    m.reset(); // returns although its queue cannot finish
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return !helper.takeRuns().empty(); }));
}

TEST_F(MonitorQuit, ASpeedThatWasChosenAndNotYetSentIsSent) {
    start();
    monitor().setSetting(0, constant(2000));
    poll();
    helper.forgetRuns();
    monitor().apply(Preset::max);
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "6000"}, {"set", "1", "6000"}}));
    EXPECT_EQ(timesHandedBack, 1);
}

TEST_F(MonitorQuit, ASpeedThatIsRefusedAtTheEndIsHandedBack) {
    start();
    monitor().setSetting(0, constant(2000));
    helper.onRun = [&](const auto& arguments) { helper.succeeds = arguments.at(0) == "auto"; };
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}, {"auto", "0"}, {"auto", "1"}}));
    EXPECT_EQ(timesHandedBack, 1);
}

TEST_F(MonitorQuit, AConstantFanThatHeatProtectionDrivesIsHandedBack) {
    for (const double rpm : {2500.0, 6000.0}) { // also when it runs at exactly the chosen speed
        setCelsius(50);
        start();
        monitor().setSetting(0, constant(rpm));
        poll();
        setCelsius(91);
        poll();
        helper.forgetRuns();
        monitor().restoreAutomaticBlocking();
        EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "1"}}));
        destroyMonitor();
    }
}

TEST_F(MonitorQuit, AnUnreadableFanOfOursIsHandedBack) {
    for (const std::string_view lost : {"F1Ac", "FNum"}) {
        smc.setNumber("FNum", "ui8 ", 2);
        setFan(1, 2000);
        start();
        monitor().setSetting(1, constant(3000));
        poll();
        smc.remove(lost);
        poll();
        monitor().setSetting(1, constant(4000)); // its speed differs from the chosen one
        helper.forgetRuns();
        monitor().restoreAutomaticBlocking();
        EXPECT_EQ(helper.takeRuns().back(), (FakeHelper::Arguments{"auto", "1"})) << lost;
        destroyMonitor();
    }
}

TEST_F(MonitorQuit, RefusedHandBacksAreRetriedThenLeftToTheGuard) {
    MonitorServices patient = services();
    patient.longestRetry = std::chrono::milliseconds(1);
    Monitor m(patient);
    QSignalSpy polled(&m, &Monitor::polled);
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    helper.onRun = [&](const auto& arguments) { helper.succeeds = arguments.at(1) == "1"; };
    m.restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "1"}, {"auto", "0"}}));
    EXPECT_EQ(timesHandedBack, 0);
    EXPECT_EQ(handBacks.back().indices, (std::vector{0, 1}));
}

TEST_F(MonitorQuit, AFanIsAnnouncedBeforeItsFirstCommandRuns) {
    setCelsius(91); // heat protection drives automatic fans in the first poll
    std::vector<HandBack> atCommands;
    const auto gone = destroyMonitorAtTheEnd();
    helper.onRun = [&](const auto&) { atCommands.push_back(handBacks.back()); };
    start();
    ASSERT_EQ(atCommands.size(), 2U);
    for (std::size_t i = 0; i < atCommands.size(); ++i) {
        EXPECT_NE(std::ranges::find(atCommands[i].indices, static_cast<int>(i)), atCommands[i].indices.end());
    }
}

TEST_F(MonitorQuit, AConstantFanIsPinnedOnceItsSpeedWasSent) {
    start();
    monitor().setSetting(0, constant(2000));
    helper.succeeds = false;
    poll();
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::indices, {0, 1}, {}}));
    helper.succeeds = true;
    pollAfter(11);
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::indices, {1}, {0}}));
    monitor().setSetting(0, constant(2050));
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::indices, {0, 1}, {}}));
}

TEST_F(MonitorQuit, TheGuardKnowsOfAFanBeforeItsFirstCommandAlthoughTheHelperIsNew) {
    helper.installed = false;
    start();
    monitor().setSetting(0, curve(40, 80));
    poll();
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::nothing, {}}));
    std::vector<HandBack> atCommands;
    const auto gone = destroyMonitorAtTheEnd();
    helper.onRun = [&](const auto&) { atCommands.push_back(handBacks.back()); };
    helper.installed = true; // by somebody else
    poll();
    ASSERT_EQ(atCommands.size(), 1U);
    EXPECT_EQ(atCommands[0], (HandBack{Scope::indices, {0, 1}}));
}

TEST_F(MonitorQuit, LeavingTheFrontEndsTheSpeedsOfARunningPoll) {
    start();
    monitor().apply(Preset::max);
    std::atomic<bool> isHeldUp = false;
    const auto gone = destroyMonitorAtTheEnd();
    std::promise<void> release;
    helper.onRun = [&, released = release.get_future().share()](const auto&) {
        isHeldUp = true;
        released.wait();
    };
    monitor().tick();
    ASSERT_TRUE(waitUntil([&] { return isHeldUp.load(); })); // held up in the first fan's "set"
    QSignalSpy polled(&monitor(), &Monitor::polled);
    monitor().setInFront(false);
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "6000"}, {"auto", "0"}}));
}

TEST_F(MonitorQuit, BehindAnotherSessionOnlyItsOwnFansAreHandedBack) {
    start();
    monitor().setInFront(false);
    ASSERT_TRUE(waitUntil([&] { return !monitor().needsHelper(); }));
    monitor().restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), Runs());
    EXPECT_EQ(timesHandedBack, 1);
}

TEST_F(MonitorQuit, AnnouncesWhatWouldHaveToBeHandedBack) {
    make();
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::allFans, {}}));
    destroyMonitor();
    start();
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::indices, {0, 1}}));
    monitor().setSetting(1, constant(3000));
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::indices, {0}}));
    monitor().setSetting(7, curve(40, 80));
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::indices, {0, 7}}));
    helper.installed = false;
    poll();
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::nothing, {}}));
    const auto count = handBacks.size();
    poll();
    EXPECT_EQ(handBacks.size(), count + 1); // at each poll
}

} // namespace Fenwhirl
