#include "Fenwhirl/Localization/Localizer.h"
#include "MonitorHarness.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>

#include <atomic>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace Fenwhirl {

namespace {

using Runs = std::vector<FakeHelper::Arguments>;

class MonitorPolling : public testing::Test, protected MonitorHarness {};

} // namespace

TEST_F(MonitorPolling, PublishesWhatTheMachineReports) {
    smc.setNumber("TG0P", "sp78", 44);
    start();
    ASSERT_EQ(monitor().fans().size(), 2);
    EXPECT_EQ(monitor().fans()[1], (FanState{1, 2000, 1200, 6000, smc.number("F1Tg")}));
    EXPECT_EQ(monitor().sensors(),
              (QList<SensorState>{{QStringLiteral("TC0P"), 50}, {QStringLiteral("TG0P"), 44}}));
    EXPECT_EQ(monitor().primaryCelsius(), 50);
    EXPECT_EQ(monitor().history(), QList<double>{50});
    EXPECT_TRUE(monitor().smcAvailable());
    EXPECT_FALSE(monitor().needsHelper());
    EXPECT_TRUE(monitor().controlError().isEmpty());
    EXPECT_EQ(monitor().averageRPM(), 2000);
    EXPECT_EQ(monitor().status(), HealthStatus::normal);
    EXPECT_EQ(monitor().featured().size(), 2);
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorPolling, WithoutAControllerThereIsNoPolling) {
    smcOpens = false;
    make();
    QSignalSpy changed(&monitor(), &Monitor::smcAvailableChanged);
    QSignalSpy polled(&monitor(), &Monitor::polled);
    monitor().start();
    ASSERT_TRUE(waitUntil([&] { return changed.count() == 1; }));
    EXPECT_FALSE(monitor().smcAvailable());
    monitor().tick();
    EXPECT_EQ(timesHandedBack, 1);        // nothing will ever be driven, so nobody needs to watch
    monitor().restoreAutomaticBlocking(); // waits until the queue is empty
    EXPECT_EQ(polled.count(), 0);
    EXPECT_EQ(monitor().menuText(), QStringLiteral("Fenwhirl"));
}

TEST_F(MonitorPolling, PollsEveryTwoSecondsAndNeverWithoutAController) {
    using Clock = std::chrono::steady_clock;
    MonitorServices timed = services();
    timed.runsOwnTimer = true;
    std::atomic<int> askedWithoutController = 0;
    MonitorServices blind = timed;
    blind.openSMC = [] { return std::unique_ptr<SMC>(); };
    blind.helper.isInstalled = [&] {
        ++askedWithoutController;
        return true;
    };
    Monitor withoutController(blind);
    Monitor monitor(timed);
    std::vector<Clock::time_point> polls;
    QObject::connect(&monitor, &Monitor::polled, &monitor, [&] { polls.push_back(Clock::now()); });
    withoutController.start();
    const auto begin = Clock::now();
    monitor.start();
    // The first poll comes at once, then one every two seconds. None comes early; a busy computer delays or
    // drops some, but not all.
    using Seconds = std::chrono::duration<double>;
    const auto isInTime = [&] { return polls.back() - polls[polls.size() - 2] < Seconds(2.5); };
    ASSERT_TRUE(waitUntil([&] { return polls.size() >= 3 && (isInTime() || polls.size() >= 9); }));
    EXPECT_TRUE(isInTime());
    for (std::size_t poll = 1; poll < polls.size(); ++poll) {
        EXPECT_GT(polls[poll] - begin, Seconds(1.85) * static_cast<double>(poll)) << poll;
    }
    EXPECT_EQ(askedWithoutController, 1); // by the constructor, and by no poll
}

TEST_F(MonitorPolling, PublishesInTheOrderThatViewsRelyOn) {
    QStringList order;
    const auto note = [&](const char* name) {
        return [&order, name] { order += QString::fromLatin1(name); };
    };
    MonitorServices noting = services();
    noting.notify = [alert = note("alert")](const QString&, const QString&) { alert(); };
    Monitor m(noting);
    helper.succeeds = false;
    setCelsius(91);
    m.setSetting(0, constant(3000));
    QObject::connect(&m, &Monitor::fansChanged, &m, note("fans"));
    QObject::connect(&m, &Monitor::sensorsChanged, &m, note("sensors"));
    QObject::connect(&m, &Monitor::primaryCelsiusChanged, &m, note("primary"));
    QObject::connect(&m, &Monitor::needsHelperChanged, &m, note("needsHelper"));
    QObject::connect(&m, &Monitor::controlErrorChanged, &m, note("error"));
    QObject::connect(&m, &Monitor::historyChanged, &m, note("history"));
    QObject::connect(&m, &Monitor::polled, &m, note("polled"));
    QSignalSpy polled(&m, &Monitor::polled);
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    EXPECT_EQ(order.join(u' '),
              QStringLiteral("fans sensors primary needsHelper error history alert polled"));
}

TEST_F(MonitorPolling, OnlyChangesAreAnnounced) {
    start();
    QSignalSpy fans(&monitor(), &Monitor::fansChanged);
    QSignalSpy sensors(&monitor(), &Monitor::sensorsChanged);
    QSignalSpy primary(&monitor(), &Monitor::primaryCelsiusChanged);
    QSignalSpy helperInstalled(&monitor(), &Monitor::helperInstalledChanged);
    QSignalSpy needsHelper(&monitor(), &Monitor::needsHelperChanged);
    poll();
    EXPECT_EQ(
        fans.count() + sensors.count() + primary.count() + helperInstalled.count() + needsHelper.count(), 0);
    EXPECT_TRUE(monitor().controlError().isEmpty()); // setting an unchanged value is no error
    setFan(0, 2100);
    poll();
    EXPECT_EQ(fans.count(), 1);
    EXPECT_EQ(sensors.count(), 0);
    setCelsius(51);
    poll();
    EXPECT_EQ(sensors.count(), 1);
    EXPECT_EQ(primary.count(), 1);
}

TEST_F(MonitorPolling, APollThatWaitedTakesTheNewestSettings) {
    start();
    std::atomic<bool> isHeldUp = false;
    const auto gone = destroyMonitorAtTheEnd();
    std::promise<void> release;
    helper.onRun = [&, released = release.get_future().share()](const auto&) {
        isHeldUp = true;
        released.wait();
    };
    QSignalSpy polled(&monitor(), &Monitor::polled);
    monitor().setSetting(0, constant(2000));
    monitor().tick(); // held up in its helper run
    ASSERT_TRUE(waitUntil([&] { return isHeldUp.load(); }));
    monitor().tick(); // waits behind the first
    monitor().setSetting(0, constant(4000));
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}, {"set", "0", "4000"}}));
}

TEST_F(MonitorPolling, ManualTargetIsSentAtTheFirstPollThatWantsIt) {
    preferences.setData(
        QStringLiteral("settings"),
        R"({"0":{"mode":"constant","constantRPM":3000,"sensorKey":"","startTemp":50,"maxTemp":90}})");
    start();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "3000"}}));
    EXPECT_TRUE(monitor().needsHelper());
}

TEST_F(MonitorPolling, UnchangedTargetIsSentAgainAfterTenSeconds) {
    start();
    monitor().setSetting(0, constant(3000));
    poll();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "3000"}}));
    pollAfter(10);
    EXPECT_EQ(helper.takeRuns(), Runs());
    pollAfter(0.5);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "3000"}}));
}

TEST_F(MonitorPolling, PublishesTheSpeedThatAFanWasReallyAskedFor) {
    start();
    const auto requested = [this] { return monitor().fans()[0].requestedRPM; };
    EXPECT_EQ(requested(), std::nullopt);
    monitor().setSetting(0, constant(2000));
    EXPECT_EQ(requested(), std::nullopt); // nothing has been sent yet
    poll();
    EXPECT_EQ(requested(), 2000);
    monitor().setSetting(0, constant(2080)); // too small a change to be sent at once
    pollAfter(2);
    EXPECT_EQ(requested(), 2000);
    pollAfter(8.5);
    EXPECT_EQ(requested(), 2080);
    EXPECT_EQ(monitor().fans()[1].requestedRPM, std::nullopt);
    monitor().setSetting(0, FanSetting());
    poll();
    EXPECT_EQ(requested(), std::nullopt);
}

TEST_F(MonitorPolling, NoSpeedIsAskedForWhileTheFansAreLeftToTheMachine) {
    start();
    const auto requested = [this] { return monitor().fans()[0].requestedRPM; };
    monitor().setSetting(0, constant(3000));
    const auto drive = [&] {
        setCelsius(50);
        pollAfter(11);
        EXPECT_EQ(requested(), 3000);
    };
    drive();
    setCelsius(92);
    poll();
    EXPECT_EQ(requested(), std::nullopt);
    drive();
    smc.remove("TC0P");
    poll();
    EXPECT_EQ(requested(), std::nullopt);
    drive();
    helper.installed = false;
    poll();
    EXPECT_EQ(requested(), std::nullopt);
    helper.installed = true;
    drive();
    helper.succeeds = false;
    pollAfter(11);
    EXPECT_EQ(requested(), std::nullopt);
}

TEST_F(MonitorPolling, HeatProtectionIsPublishedAndAsksForTheMaximum) {
    start();
    monitor().setAlertsEnabled(true);
    monitor().setAlertThreshold(85);
    QSignalSpy changed(&monitor(), &Monitor::isProtectingChanged);
    setCelsius(86);
    poll();
    EXPECT_TRUE(monitor().isProtecting());
    EXPECT_EQ(monitor().fans()[0].requestedRPM, 6000);
    setCelsius(81);
    poll();
    EXPECT_TRUE(monitor().isProtecting());
    setCelsius(79);
    poll();
    EXPECT_FALSE(monitor().isProtecting());
    EXPECT_EQ(monitor().fans()[0].requestedRPM, std::nullopt);
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(MonitorPolling, SmallChangesWaitTenSecondsAndLargeOnesDoNot) {
    start();
    monitor().setSetting(0, constant(2000));
    poll();
    monitor().setSetting(0, constant(2080));
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}}));
    pollAfter(8.5);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2080"}}));
    monitor().setSetting(0, constant(2180));
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2180"}}));
}

TEST_F(MonitorPolling, FanSetBackToAutomaticIsHandedBackOnce) {
    start();
    monitor().setSetting(1, constant(2000));
    poll();
    monitor().setSetting(1, FanSetting());
    pollAfter(2);
    pollAfter(2);
    pollAfter(20);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "1", "2000"}, {"auto", "1"}}));
    EXPECT_FALSE(monitor().needsHelper());
}

TEST_F(MonitorPolling, HeatProtectionGoesThroughItsWholeCourse) {
    start();
    monitor().setSetting(0, constant(2000));
    poll();
    helper.forgetRuns();
    setCelsius(90);
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "6000"}, {"set", "1", "6000"}}));
    setCelsius(86);
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), Runs()); // stays at the maximum that was sent a moment ago
    EXPECT_TRUE(monitor().needsHelper());
    setCelsius(84.9);
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}, {"auto", "1"}}));
    setCelsius(92);
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}}));
    setCelsius(91.5);
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "6000"}, {"set", "1", "6000"}}));
}

TEST_F(MonitorPolling, WithoutTemperatureManualControlIsSuspendedAndSaysSo) {
    Localizer::setLanguage(AppLanguage::fr);
    preferences.setText(QStringLiteral("language"), QStringLiteral("fr"));
    start();
    monitor().setSetting(0, constant(2000));
    poll();
    helper.forgetRuns();
    smc.remove("TC0P");
    pollAfter(2);
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}}));
    EXPECT_FALSE(monitor().needsHelper());
    EXPECT_EQ(
        monitor().controlError(),
        QStringLiteral("Aucune température lisible sur ce Mac : le contrôle est suspendu par sécurité."));
    setCelsius(50);
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}}));
}

TEST_F(MonitorPolling, WithoutTemperatureAutomaticFansCauseNoMessage) {
    start();
    smc.remove("TC0P");
    poll();
    EXPECT_TRUE(monitor().controlError().isEmpty());
}

TEST_F(MonitorPolling, RefusedChangeIsShownAndNotRepeatedBeforeItsTime) {
    preferences.setText(QStringLiteral("language"), QStringLiteral("fr"));
    start();
    helper.succeeds = false;
    monitor().setSetting(0, constant(2000));
    poll();
    EXPECT_EQ(monitor().controlError(),
              QStringLiteral("Ce Mac n'a pas accepté le changement de vitesse du ventilateur."));
    pollAfter(2);
    EXPECT_EQ(helper.takeRuns().size(), 1U);
    pollAfter(8.5);
    EXPECT_EQ(helper.takeRuns().size(), 1U);
}

TEST_F(MonitorPolling, GoodPollDoesNotClearAnEarlierMessage) {
    start();
    helper.succeeds = false;
    monitor().setSetting(0, constant(2000));
    poll();
    helper.succeeds = true;
    pollAfter(11);
    EXPECT_FALSE(monitor().controlError().isEmpty());
    QSignalSpy changed(&monitor(), &Monitor::controlErrorChanged);
    monitor().dismissControlError();
    EXPECT_TRUE(monitor().controlError().isEmpty());
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(MonitorPolling, FailedHandBackIsRepeatedAtEveryPollOfAnEmergency) {
    start();
    monitor().setSetting(0, constant(2000));
    poll();
    helper.forgetRuns();
    helper.succeeds = false;
    setCelsius(95);
    pollAfter(2);
    pollAfter(2);
    EXPECT_FALSE(monitor().controlError().isEmpty());
    helper.succeeds = true;
    for (int i = 0; i < 10; ++i) {
        pollAfter(2);
    }
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "0"}, {"auto", "0"}}));
}

TEST_F(MonitorPolling, FreshStartSendsNothingToAutomaticFans) {
    start();
    pollAfter(20);
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorPolling, FreshStartHandsBackWhatAnEarlierProcessLeftManual) {
    smc.setNumber("FS! ", "ui16", 2);
    helper.onRun = [this](const auto&) { smc.setNumber("FS! ", "ui16", 0); };
    start();
    pollAfter(20);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "1"}}));
}

TEST_F(MonitorPolling, HandBackThatHadNoEffectIsRepeated) {
    smc.setNumber("FS! ", "ui16", 2);
    start(); // the helper reports success
    pollAfter(9.5);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "1"}}));
    pollAfter(0.5);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "1"}}));
}

TEST_F(MonitorPolling, DeadControllerStaysDeadAndItsFansAreHandedBack) {
    std::atomic<int> connections = 0;
    MonitorServices counted = services();
    counted.openSMC = [&, open = counted.openSMC] {
        ++connections;
        return open();
    };
    Monitor m(counted);
    QSignalSpy polled(&m, &Monitor::polled);
    const auto pollLater = [&](double seconds) {
        advance(seconds);
        const auto before = polled.count();
        m.tick();
        ASSERT_TRUE(waitUntil([&] { return polled.count() > before; }));
    };
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    m.setSetting(0, constant(2000));
    m.setSetting(1, curve(40, 80));
    pollLater(2);
    helper.forgetRuns();
    smc.diesAtRequest = 0;
    pollLater(20);
    pollLater(20);
    EXPECT_TRUE(m.fans().isEmpty());
    // These hand-backs work, because each helper run opens a connection of its own.
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "1"}}));
    EXPECT_EQ(connections, 1);
    m.restoreAutomaticBlocking();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "1"}}));
}

TEST_F(MonitorPolling, FanThatCannotBeReadIsSkipped) {
    start();
    monitor().setSetting(0, constant(2000));
    poll();
    helper.forgetRuns();
    smc.remove("F0Ac");
    pollAfter(20);
    EXPECT_EQ(helper.takeRuns(), Runs());
    ASSERT_EQ(monitor().fans().size(), 1);
    EXPECT_EQ(monitor().fans()[0].id, 1);
}

TEST_F(MonitorPolling, WithoutTheHelperNothingIsSentButAskedFor) {
    helper.installed = false;
    start();
    EXPECT_FALSE(monitor().helperInstalled());
    monitor().setSetting(0, constant(2000));
    poll();
    EXPECT_EQ(helper.takeRuns(), Runs());
    EXPECT_TRUE(monitor().needsHelper());
    helper.installed = true;
    poll();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}}));
    EXPECT_TRUE(monitor().helperInstalled());
}

TEST_F(MonitorPolling, APollThatWaitsTakesTheNewestAlertThreshold) {
    start();
    std::promise<void> release;
    std::atomic<bool> isPolling = false;
    smc.hook = [&isPolling, released = release.get_future().share()](const SMCParam&) {
        isPolling = true;
        released.wait();
        return std::optional<ScriptedSMC::Reply>();
    };
    QSignalSpy polled(&monitor(), &Monitor::polled);
    monitor().tick();
    ASSERT_TRUE(waitUntil([&] { return isPolling.load(); }));
    monitor().tick(); // this poll waits for the other
    monitor().setAlertThreshold(45);
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    EXPECT_TRUE(monitor().isProtecting());
    smc.hook = nullptr;
}

TEST_F(MonitorPolling, PollsNeverOverlap) {
    std::atomic<int> inside = 0;
    std::atomic<bool> overlapped = false;
    const auto gone = destroyMonitorAtTheEnd();
    helper.onRun = [&](const auto&) {
        overlapped = overlapped || inside.fetch_add(1) != 0;
        std::this_thread::yield();
        inside.fetch_sub(1);
    };
    start();
    monitor().setSetting(0, constant(2000));
    QSignalSpy polled(&monitor(), &Monitor::polled);
    for (int i = 0; i < 200; ++i) {
        monitor().setSetting(0, constant(2000 + 200.0 * (i % 2)));
        monitor().tick();
        monitor().tick();
        ASSERT_TRUE(waitUntil([&] { return polled.count() > i; }));
    }
    EXPECT_FALSE(overlapped);
    EXPECT_GT(helper.takeRuns().size(), 100U);
}

TEST_F(MonitorPolling, TicksDuringASlowPollMakeOnePoll) {
    start();
    std::atomic<bool> isHeldUp = false;
    const auto gone = destroyMonitorAtTheEnd();
    std::promise<void> release;
    helper.onRun = [&, released = release.get_future().share()](const auto&) {
        isHeldUp = true;
        released.wait();
    };
    QSignalSpy polled(&monitor(), &Monitor::polled);
    monitor().setSetting(0, constant(2000));
    monitor().tick();
    ASSERT_TRUE(waitUntil([&] { return isHeldUp.load(); }));
    for (int i = 0; i < 1800; ++i) {
        monitor().tick();
    }
    EXPECT_EQ(polled.count(), 0);
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    poll();
    EXPECT_EQ(polled.count(), 3);
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}}));
}

TEST_F(MonitorPolling, WakingFromSleepSendsAgainInTheFirstPoll) {
    start();
    monitor().setSetting(0, constant(2000));
    poll();
    helper.forgetRuns();
    pollAfter(3600); // the clock continues during sleep
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}}));
    EXPECT_EQ(monitor().history(), (QList<double>{50, 50, 50})); // without a gap
}

TEST_F(MonitorPolling, IsSharedWhileItLives) {
    EXPECT_EQ(Monitor::shared(), nullptr);
    make();
    EXPECT_EQ(Monitor::shared(), &monitor());
    {
        const Monitor another(services());
        EXPECT_EQ(Monitor::shared(), &monitor());
    }
    EXPECT_EQ(Monitor::shared(), &monitor());
    destroyMonitor();
    EXPECT_EQ(Monitor::shared(), nullptr);
}

TEST_F(MonitorPolling, MayBeDestroyedWithPollsUnderWay) {
    for (int i = 0; i < 50; ++i) {
        start();
        monitor().tick();
        monitor().tick();
        destroyMonitor();
    }
}

} // namespace Fenwhirl
