#include "MonitorHarness.h"
#include "Support/Volume.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>

#include <atomic>
#include <future>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using Runs = std::vector<FakeHelper::Arguments>;

class MonitorLifecycle : public testing::Test, protected MonitorHarness {
protected:
    MonitorLifecycle() { preferences.setText(QStringLiteral("language"), QStringLiteral("fr")); }

    void waitForInstall() {
        ASSERT_TRUE(waitUntil([&] { return !monitor().isInstalling(); }));
    }

    // Makes a report and waits for it, as the application does.
    QString report(bool withFanTest) {
        std::optional<QString> text;
        monitor().makeDiagnosticReport(withFanTest, [&](const QString& result) {
            EXPECT_TRUE(MainThread::isCurrent());
            text = result;
        });
        EXPECT_FALSE(text.has_value()); // never called before it returns
        EXPECT_TRUE(waitUntil([&] { return text.has_value(); }));
        return text.value_or(QString());
    }
};

} // namespace

TEST_F(MonitorLifecycle, InstallingEndsInstalledAndClearsTheMessage) {
    helper.installed = false;
    loginItemWorks = false;
    make();
    monitor().setLaunchAtLogin(true);
    ASSERT_FALSE(monitor().controlError().isEmpty());
    QSignalSpy installing(&monitor(), &Monitor::isInstallingChanged);
    monitor().installHelper();
    EXPECT_TRUE(monitor().isInstalling());
    waitForInstall();
    EXPECT_EQ(installing.count(), 2);
    EXPECT_TRUE(monitor().helperInstalled());
    EXPECT_FALSE(monitor().helperOutdated());
    EXPECT_TRUE(monitor().controlError().isEmpty());
}

TEST_F(MonitorLifecycle, InstalledHelperOfAnotherVersionIsOutdated) {
    helper.setVersion("");
    make();
    monitor().installHelper();
    waitForInstall();
    EXPECT_TRUE(monitor().helperInstalled());
    EXPECT_TRUE(monitor().helperOutdated());
}

TEST_F(MonitorLifecycle, InstallThatIsCancelledSaysSo) {
    helper.installSucceeds = false;
    make();
    monitor().installHelper();
    waitForInstall();
    EXPECT_FALSE(monitor().helperInstalled());
    EXPECT_FALSE(monitor().helperOutdated());
    EXPECT_EQ(monitor().controlError(), QStringLiteral("L'activation a été annulée ou a échoué."));
}

TEST_F(MonitorLifecycle, InstallThatFailsCallsNoHelperOutdated) {
    helper.setVersion("2");
    helper.installSucceeds = false;
    start();
    ASSERT_TRUE(waitUntil([&] { return monitor().helperOutdated(); }));
    monitor().installHelper();
    waitForInstall();
    EXPECT_FALSE(monitor().helperOutdated());
}

TEST_F(MonitorLifecycle, SecondClickWhileInstallingIsIgnored) {
    std::promise<void> release;
    helper.onInstall = [released = release.get_future().share()] { released.wait(); };
    make();
    monitor().installHelper();
    monitor().installHelper();
    release.set_value();
    waitForInstall();
    EXPECT_EQ(helper.installs, 1);
    monitor().installHelper();
    waitForInstall();
    EXPECT_EQ(helper.installs, 2);
}

TEST_F(MonitorLifecycle, UninstallingHandsBackFirstAndThenRemovesTheFile) {
    start();
    monitor().uninstallHelper();
    ASSERT_TRUE(waitUntil([&] { return !monitor().helperInstalled(); }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto"}}));
    EXPECT_EQ(helper.takeAdministratorCommands(),
              std::vector<std::string>{"rm -f '/Library/PrivilegedHelperTools/FenwhirlHelper'"});
    EXPECT_TRUE(monitor().controlError().isEmpty());
}

TEST_F(MonitorLifecycle, FansAreHandedBackWhileTheHelperStillExists) {
    Runs before;
    MonitorServices recording = services();
    recording.helper.runAsAdministrator = [&](const std::string&) {
        before = helper.takeRuns();
        helper.installed = false;
        return true;
    };
    Monitor m(recording);
    m.uninstallHelper();
    ASSERT_TRUE(waitUntil([&] { return !m.helperInstalled(); }));
    EXPECT_EQ(before, (Runs{{"auto"}}));
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorLifecycle, UninstallThatIsCancelledSaysSoAndKeepsTheHelper) {
    helper.administratorAgrees = false;
    start();
    monitor().uninstallHelper();
    ASSERT_TRUE(waitUntil([&] { return !monitor().controlError().isEmpty(); }));
    EXPECT_EQ(monitor().controlError(), QStringLiteral("La désactivation a échoué."));
    EXPECT_TRUE(monitor().helperInstalled());
}

TEST_F(MonitorLifecycle, NoSpeedIsSentWhileTheHelperIsBeingRemoved) {
    std::promise<void> release;
    MonitorServices slow = services();
    slow.helper.runAsAdministrator = [released = release.get_future().share()](const std::string&) {
        released.wait();
        return false;
    };
    Monitor m(slow);
    QSignalSpy polled(&m, &Monitor::polled);
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    m.setSetting(0, constant(2000));
    m.tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}}));
    m.uninstallHelper();
    advance(20);
    m.tick(); // the user is typing the password
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 3; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto"}}));
    release.set_value(); // the user cancelled after all
    ASSERT_TRUE(waitUntil([&] { return !m.controlError().isEmpty(); }));
    m.tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 4; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}}));
}

TEST_F(MonitorLifecycle, AFanThatTheWriteTestLeftManualGoesBack) {
    for (const bool withFanTest : {false, true}) {
        start();
        smc.setNumber("FS! ", "ui16", 1);
        helper.forgetRuns();
        bool isComplete = false;
        monitor().makeDiagnosticReport(withFanTest, [&](const QString&) { isComplete = true; });
        ASSERT_TRUE(waitUntil([&] { return isComplete; }));
        poll();
        EXPECT_EQ(helper.takeRuns(), withFanTest ? (Runs{{"test"}, {"auto", "0"}}) : Runs());
        smc.setNumber("FS! ", "ui16", 0);
        destroyMonitor();
    }
}

TEST_F(MonitorLifecycle, AnUpdateThatIsCancelledLeavesTheOlderHelperInCharge) {
    helper.setVersion("2");
    MonitorServices cancelled = services();
    cancelled.helper.install = [] { return false; };
    Monitor m(cancelled);
    m.installHelper();
    ASSERT_TRUE(waitUntil([&] { return !m.isInstalling(); }));
    EXPECT_FALSE(m.helperInstalled());
    EXPECT_NE(handBacks.back().scope, HandBack::Scope::nothing);
}

TEST_F(MonitorLifecycle, ResetPutsEveryFanBackUnderAutomaticControl) {
    start();
    monitor().apply(Preset::max);
    poll();
    helper.forgetRuns();
    monitor().resetToAutomatic();
    EXPECT_EQ(monitor().activePreset(), Preset::automatic);
    EXPECT_EQ(monitor().settings(), (FanSettings{{0, FanSetting()}, {1, FanSetting()}}));
    poll();
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto"}, {"auto", "0"}, {"auto", "1"}}));
}

TEST_F(MonitorLifecycle, ResetOvertakesWhatWaitsAndEndsTheSpeedsOfARunningPoll) {
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
    monitor().tick();
    monitor().resetToAutomatic();
    QSignalSpy polled(&monitor(), &Monitor::polled);
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "6000"}, {"auto"}, {"auto", "0"}}));
}

TEST_F(MonitorLifecycle, HeatProtectionGoesOnWhileTheHelperIsBeingRemoved) {
    std::promise<void> release;
    MonitorServices slow = services();
    slow.helper.runAsAdministrator = [released = release.get_future().share()](const std::string&) {
        released.wait();
        return false;
    };
    Monitor m(slow);
    QSignalSpy polled(&m, &Monitor::polled);
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    m.uninstallHelper();
    setCelsius(91);
    m.tick(); // the user is typing the password
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto"}, {"set", "0", "6000"}, {"set", "1", "6000"}}));
    setCelsius(92);
    m.tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 3; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "1"}}));
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return !m.controlError().isEmpty(); }));
}

TEST_F(MonitorLifecycle, WhatHeatProtectionDroveGoesBackThoughTheHelperIsGone) {
    std::promise<void> release;
    MonitorServices slow = services();
    slow.helper.runAsAdministrator = [this, released = release.get_future().share()](const std::string&) {
        released.wait();
        helper.installed = false;
        return true;
    };
    slow.helper.keep = [run = slow.helper.run] { return run; };
    Monitor m(slow);
    QSignalSpy polled(&m, &Monitor::polled);
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    m.uninstallHelper();
    setCelsius(91);
    m.tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    helper.forgetRuns();
    release.set_value();
    ASSERT_TRUE(waitUntil([&] { return !m.helperInstalled(); }));
    m.tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 3; }));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto", "0"}, {"auto", "1"}}));
}

TEST_F(MonitorLifecycle, ResetThatTheHelperRefusesIsNotReported) {
    helper.succeeds = false;
    start();
    monitor().resetToAutomatic();
    poll(); // its results arrive after those of the reset
    EXPECT_EQ(helper.takeRuns(), (Runs{{"auto"}}));
    EXPECT_TRUE(monitor().controlError().isEmpty());
}

TEST_F(MonitorLifecycle, ResetWithoutTheHelperRunsNothing) {
    helper.installed = false;
    start();
    monitor().resetToAutomatic();
    poll();
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorLifecycle, LoginItemIsSwitchedAndFailuresAreShown) {
    make();
    QSignalSpy changed(&monitor(), &Monitor::launchAtLoginChanged);
    monitor().setLaunchAtLogin(true);
    EXPECT_TRUE(monitor().launchAtLogin());
    EXPECT_TRUE(monitor().controlError().isEmpty());
    loginItemWorks = false;
    monitor().setLaunchAtLogin(false);
    EXPECT_TRUE(monitor().launchAtLogin());
    EXPECT_EQ(monitor().controlError(), QStringLiteral("Impossible de changer le démarrage automatique."));
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(MonitorLifecycle, ReportTellsControllerAndHelper) {
    start();
    const QString expected = QString::fromStdString(smc.open().diagnosticReport());
    EXPECT_EQ(report(false), expected + QStringLiteral("\n\nAssistant installé : oui"));
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorLifecycle, ReportHasAConnectionOfItsOwn) {
    std::atomic<int> connections = 0;
    MonitorServices counted = services();
    counted.openSMC = [&, open = counted.openSMC] {
        ++connections;
        return open();
    };
    Monitor m(counted);
    QSignalSpy polled(&m, &Monitor::polled);
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1; }));
    EXPECT_EQ(connections, 1);
    bool completed = false;
    m.makeDiagnosticReport(false, [&](const QString&) { completed = true; });
    ASSERT_TRUE(waitUntil([&] { return completed; }));
    EXPECT_EQ(connections, 2);
    m.tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 2; }));
    EXPECT_EQ(connections, 2);
}

TEST_F(MonitorLifecycle, ReportHoldsTheFanTestOnRequest) {
    start();
    const QString expected = QString::fromStdString(smc.open().diagnosticReport());
    EXPECT_EQ(report(true), expected + QStringLiteral("\n\nAssistant installé : oui"
                                                      "\n\n-- Test d'écriture (6 s) --\nrésultat"));
    EXPECT_EQ(helper.takeRuns(), (Runs{{"test"}}));
}

TEST_F(MonitorLifecycle, ReportWithoutControllerAndHelperIsTwoLines) {
    smcOpens = false;
    helper.installed = false;
    make();
    EXPECT_EQ(report(true),
              QStringLiteral("Impossible d'ouvrir le SMC (AppleSMC).\n\nAssistant installé : non"));
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorLifecycle, ReportAfterTheMonitorIsGoneIsDropped) {
    start();
    bool completed = false;
    std::promise<void> opened;
    std::promise<void> release;
    helper.onRun = [](const auto&) {};
    MonitorServices slow = services();
    slow.openSMC = [&, released = release.get_future().share()]() -> std::unique_ptr<SMC> {
        opened.set_value();
        released.wait();
        return nullptr;
    };
    slow.helper.isInstalled = [] { return false; };
    {
        Monitor m(slow);
        m.makeDiagnosticReport(false, [&](const QString&) { completed = true; });
        opened.get_future().wait();
    }
    release.set_value();
    poll(); // runs the event loop, which the other monitor shares
    EXPECT_FALSE(completed);
}

TEST_F(MonitorLifecycle, AnyInterleavingOfClicksEndsInOneState) {
    start();
    const int clicks = rounds(100, 1000);
    int reports = 0;
    for (int i = 0; i < clicks; ++i) {
        monitor().installHelper();
        monitor().tick();
        monitor().makeDiagnosticReport(true, [&](const QString&) { ++reports; });
        monitor().uninstallHelper();
        monitor().installHelper();
        monitor().tick();
        waitForInstall();
    }
    ASSERT_TRUE(waitUntil([&] { return reports == clicks; }));
    std::size_t removals = 0;
    ASSERT_TRUE(waitUntil([&] {
        return (removals += helper.takeAdministratorCommands().size()) == static_cast<std::size_t>(clicks);
    }));
    helper.installed = true;
    // The last removal may still publish what it saw earlier; later polls see the current state.
    EXPECT_TRUE(waitUntil([&] {
        monitor().tick();
        return monitor().helperInstalled();
    }));
    EXPECT_FALSE(monitor().isInstalling());
}

} // namespace Fenwhirl
