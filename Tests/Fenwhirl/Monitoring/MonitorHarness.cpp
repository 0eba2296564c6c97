#include "MonitorHarness.h"

#include "Support/WaitUntil.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace Fenwhirl {

void FakeHelper::setVersion(std::optional<std::string> version) {
    const std::lock_guard lock(mutex_);
    version_ = std::move(version);
}

std::vector<FakeHelper::Arguments> FakeHelper::takeRuns() {
    const std::lock_guard lock(mutex_);
    return std::exchange(runs_, {});
}

std::vector<std::string> FakeHelper::takeAdministratorCommands() {
    const std::lock_guard lock(mutex_);
    return std::exchange(administratorCommands_, {});
}

MonitorServices::Helper FakeHelper::services() {
    const std::shared_ptr<FakeHelper> self = shared_from_this();
    return {.isInstalled = [self] { return self->installed.load(); },
            .installedVersion =
                [self] {
                    ++self->versionReads;
                    if (self->onVersion) {
                        self->onVersion();
                    }
                    const std::lock_guard lock(self->mutex_);
                    return self->version_;
                },
            .run =
                [self](const Arguments& arguments) {
                    if (self->onRun) {
                        self->onRun(arguments);
                    }
                    const std::lock_guard lock(self->mutex_);
                    self->runs_.push_back(arguments);
                    return self->succeeds.load();
                },
            .output =
                [self](const Arguments& arguments) {
                    const std::lock_guard lock(self->mutex_);
                    self->runs_.push_back(arguments);
                    return std::string("résultat");
                },
            .runAsAdministrator =
                [self](const std::string& command) {
                    const std::lock_guard lock(self->mutex_);
                    self->administratorCommands_.push_back(command);
                    self->installed = self->installed && !self->administratorAgrees;
                    return self->administratorAgrees.load();
                },
            .install =
                [self] {
                    ++self->installs;
                    if (self->onInstall) {
                        self->onInstall();
                    }
                    self->installed = self->installSucceeds.load();
                    return self->installSucceeds.load();
                }};
}

MonitorHarness::MonitorHarness() {
    smc.addOlderFans(2);
    smc.setNumber("TC0P", "sp78", 50);
}

MonitorHarness::~MonitorHarness() {
    destroyMonitor();
}

MonitorServices MonitorHarness::services() {
    return {.openSMC =
                [this] { return smcOpens ? std::make_unique<SMC>(smc.connect()) : std::unique_ptr<SMC>(); },
            .helper = helper.services(),
            .now = [this] { return std::chrono::duration<double>(seconds_); },
            .wallClock = [this] { return wallTime(seconds_); },
            .preferences = &preferences,
            .notify = [this](const QString& title,
                             const QString& message) { notifications.emplace_back(title, message); },
            .loginItem = {.isEnabled = [this] { return loginItemEnabled; },
                          .setEnabled =
                              [this](bool on) {
                                  loginItemEnabled = loginItemWorks ? on : loginItemEnabled;
                                  return loginItemWorks;
                              }},
            .announceHandBack = [this](const HandBack& handBack) { handBacks.push_back(handBack); },
            .handedBack = [this] { ++timesHandedBack; },
            .needsTimelySchedulingChanged = [this](bool acts) { needsTimelyScheduling.push_back(acts); },
            .longestRetry = std::chrono::milliseconds(0),
            .runsOwnTimer = false};
}

void MonitorHarness::make() {
    monitor_ = std::make_unique<Monitor>(services());
}

void MonitorHarness::start() {
    make();
    QSignalSpy polled(monitor_.get(), &Monitor::polled);
    monitor_->start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() >= 1; }));
}

void MonitorHarness::poll() {
    QSignalSpy polled(monitor_.get(), &Monitor::polled);
    monitor_->tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() >= 1; }));
}

void MonitorHarness::pollAfter(double seconds) {
    advance(seconds);
    poll();
}

void MonitorHarness::advance(double seconds) {
    seconds_ = seconds_ + seconds;
}

std::chrono::system_clock::time_point MonitorHarness::wallTime(double seconds) const {
    return std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(
            std::chrono::duration<double>(secondsAhead_ + seconds)));
}

void MonitorHarness::setCelsius(double celsius) {
    smc.setNumber("TC0P", "flt ", celsius);
}

void MonitorHarness::setFan(int index, double rpm) {
    smc.setNumber("F" + std::to_string(index) + "Ac", "fpe2", rpm);
}

FanSetting MonitorHarness::constant(double rpm) const {
    return {.mode = FanModeKind::constant, .constantRPM = rpm, .sensorKey = {}};
}

FanSetting MonitorHarness::curve(double startTemp, double maxTemp, std::string sensorKey) const {
    return {.mode = FanModeKind::sensor,
            .sensorKey = std::move(sensorKey),
            .startTemp = startTemp,
            .maxTemp = maxTemp};
}

} // namespace Fenwhirl
