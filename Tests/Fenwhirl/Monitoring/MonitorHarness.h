// The real monitor in an environment that the test controls completely.
//
// The controller is a table in memory, time stands still until the test advances it, preferences live in
// memory, and the helper records its arguments and returns what the test chose. Polls happen only when the
// test asks for one, and `poll` returns when the result is published. Nothing sleeps, so the tests are
// deterministic.

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"
#include "Support/MemoryPreferences.h"
#include "Support/ScriptedSMC.h"

#include <QScopeGuard>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Fenwhirl {

// A helper that drives nothing. Its answers may be changed at any time and from any thread. Its services
// share ownership of it, because a slow task may still call it after the monitor is destroyed.
class FakeHelper : public std::enable_shared_from_this<FakeHelper> {
public:
    using Arguments = std::vector<std::string>;

    std::atomic<bool> installed = true;
    std::atomic<bool> succeeds = true;
    std::atomic<bool> installSucceeds = true;
    std::atomic<bool> administratorAgrees = true;
    std::atomic<int> versionReads = 0;
    std::atomic<int> installs = 0;

    // Called inside each run, before the run returns, on the thread that runs the helper.
    std::function<void(const Arguments&)> onRun;
    std::function<void()> onVersion;
    std::function<void()> onInstall;

    void setVersion(std::optional<std::string> version);
    // The commands run since the last call, in order.
    [[nodiscard]] std::vector<Arguments> takeRuns();

    void forgetRuns() { static_cast<void>(takeRuns()); }

    [[nodiscard]] std::vector<std::string> takeAdministratorCommands();

    [[nodiscard]] MonitorServices::Helper services();

private:
    std::mutex mutex_;
    std::vector<Arguments> runs_;
    std::vector<std::string> administratorCommands_;
    std::optional<std::string> version_ = "3";
};

class MonitorHarness {
public:
    ScriptedSMC smc;
    bool smcOpens = true;
    const std::shared_ptr<FakeHelper> helperOwner = std::make_shared<FakeHelper>();
    FakeHelper& helper = *helperOwner;
    MemoryPreferences preferences;
    std::vector<std::pair<QString, QString>> notifications;
    std::vector<HandBack> handBacks; // in the order in which they were announced
    int timesHandedBack = 0;
    std::vector<bool> needsTimelyScheduling;
    bool loginItemEnabled = false;
    bool loginItemWorks = true;

    // A controller with two fans of 1200 to 6000 rpm and a processor sensor at 50 °C.
    MonitorHarness();
    ~MonitorHarness();

    // `make` creates the monitor; `start` also lets it open the controller and publish its first poll.
    void make();
    void start();
    // Polls once, from the tick to the published result.
    void poll();
    // Advances the clock, then polls.
    void pollAfter(double seconds);
    void advance(double seconds);
    // The wall-clock time at which the monitor's clock shows this many seconds.
    [[nodiscard]] std::chrono::system_clock::time_point wallTime(double seconds) const;

    // Sets how far the wall clock, in seconds since 1970, is ahead of the monitor's clock.
    void setWallClock(double secondsAhead) { secondsAhead_ = secondsAhead; }

    [[nodiscard]] double seconds() const { return seconds_; } // of the monitor's clock

    void setCelsius(double celsius); // sets the processor sensor
    void setFan(int index, double rpm);
    [[nodiscard]] FanSetting constant(double rpm) const;
    [[nodiscard]] FanSetting curve(double startTemp, double maxTemp, std::string sensorKey = {}) const;

    [[nodiscard]] Monitor& monitor() { return *monitor_; }

    void destroyMonitor() { monitor_.reset(); } // waits for its queue

    // Destroys the monitor at the end of a scope. To be declared after the variables of a test that helper.onRun and the
    // like use, because the queue may still run the helper when the test is over.
    [[nodiscard]] auto destroyMonitorAtTheEnd() {
        return qScopeGuard([this] { destroyMonitor(); });
    }

    [[nodiscard]] MonitorServices services();

private:
    std::atomic<double> seconds_ = 1000;
    std::atomic<double> secondsAhead_ = 1.8e9;
    std::unique_ptr<Monitor> monitor_;
};

} // namespace Fenwhirl
