// A random life of the real monitor on a failing machine: random numbers decide what the machine, the user, other
// programs and the system do, step by step, and after each step the machine's own state is checked against the promises
// (PromisesTest.cpp).
//
// Threads: created and used on the main thread; the monitor's helper runs arrive on its own thread.

#pragma once

#include "FaultyMac.h"
#include "MonitorHarness.h"

#include <QSignalSpy>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <deque>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace Fenwhirl {

// What may go wrong in a life, besides heat and changes of the user's settings.
struct FaultKinds {
    bool refusals = false;
    bool vanishingKeys = false;
    bool strangers = false;
    bool ends = false; // quits, kills, stops, restarts
};

// Tracks since when a condition has been true without interruption.
class Since {
public:
    void update(bool isTrue, double now) {
        if (!isTrue) {
            begin_.reset();
        } else if (!begin_) {
            begin_ = now;
        }
    }

    void restart() { begin_.reset(); }

    [[nodiscard]] bool lasts(double seconds, double now) const { return begin_ && now - *begin_ >= seconds; }

private:
    std::optional<double> begin_;
};

// Simulates the process that hands the fans back when the application cannot: it acts on the last
// announcement and repeats failed hand-backs until they succeed.
class Guard {
public:
    explicit Guard(const HandBack& order, bool withPinned = false)
        : isForAll_(order.scope == HandBack::Scope::allFans) {
        if (order.scope == HandBack::Scope::indices) {
            left_.insert(order.indices.begin(), order.indices.end());
        }
        if (withPinned) {
            left_.insert(order.pinned.begin(), order.pinned.end());
        }
    }

    [[nodiscard]] bool isDone() const { return !isForAll_ && left_.empty(); }

    void attempt(FaultyMac& mac) {
        isForAll_ = isForAll_ && !mac.runHelper({"auto"});
        std::erase_if(left_, [&](int fan) { return mac.runHelper({"auto", std::to_string(fan)}); });
    }

private:
    bool isForAll_;
    std::set<int> left_;
};

// One machine, its user, and everything that happens to them.
class RandomLife {
public:
    RandomLife(unsigned seed, FaultKinds faults);

    ~RandomLife() { endProcess(); }

    RandomLife(const RandomLife&) = delete;
    RandomLife& operator=(const RandomLife&) = delete;

    // Continues for this many steps. Returns the broken promise, or nothing.
    std::optional<std::string> live(int steps);

    // How often each promise was checked.
    struct Judged {
        int emergencies = 0;
        int ends = 0;
        int protections = 0;
        int calm = 0;
    } judged;

private:
    // --- Random numbers ---

    [[nodiscard]] int below(int count);

    [[nodiscard]] bool oneIn(int count) { return below(count) == 0; }

    static ScriptedSMC& emptied(ScriptedSMC& controller);

    // --- The log for a failure message ---

    static std::string text(double number) { return QString::number(number).toStdString(); }

    void note(const std::string& what);
    [[nodiscard]] std::string history();

    [[nodiscard]] std::string settingsText() const;

    // --- The process ---

    struct Process {
        HandBack announced; // guarded by the mutex
        bool isGuardDismissed = false;
        bool isDead = false; // has been killed, although its thread does not know it yet
        int runsUntilDeath = -1;
        bool diesBeforeTheRun = false;
        bool isQuitting = false;
        std::set<int> fansSet;
        std::mutex mutex;
    };

    [[nodiscard]] double now() const { return seconds_; }

    [[nodiscard]] MonitorServices services();
    bool runHelper(Process& process, const FakeHelper::Arguments& arguments);

    void startProcess();

    // Arranges for the process to die before or after one of its next helper commands.
    void dieDuringAPoll();

    void poll();
    void polledOnce();

    void endProcess() { monitor_.reset(); }

    // Simulates a kill. `guarded`: its guard survives.
    void die(bool guarded);

    void quit();

    [[nodiscard]] bool isRunning() const { return monitor_ && !isStopped_; }

    // --- Events ---

    void disturbed();
    void step();

    void changeWeather();
    void driftCelsius();

    void happen();
    void changeTheUsersMind();

    void randomSettings(int count);
    void sleep();

    void changeMood();
    void changeKeys();

    // Acts as another program, which takes a fan over or hands one back. Only while Fenwhirl runs: otherwise
    // no promise covers it.
    void actAsOtherProgram();

    void endOrBegin();
    void tryGuards();

    // --- The promises ---

    [[nodiscard]] std::optional<double> mainCelsius() const;
    void updateConditions();

    [[nodiscard]] std::optional<std::string> judge();

    // Whether the last process could know that the fan had been made manual.
    [[nodiscard]] bool isKnown(int fan) const;

    [[nodiscard]] const FanSetting& settingOf(int fan) const;

    [[nodiscard]] FanModeKind modeOf(int fan) const { return settingOf(fan).mode; }

    [[nodiscard]] bool isAtItsConstant(const FaultyMac::Fan& fan) const;
    [[nodiscard]] bool doesWhatTheUserSet(const FaultyMac::Fan& fan) const;

    const FaultKinds faults_;
    std::mt19937 generator_;
    MonitorHarness harness_;
    FaultyMac mac_;
    std::atomic<double> seconds_ = 1000;

    std::shared_ptr<Process> process_;
    std::unique_ptr<Monitor> monitor_; // null while no process runs
    bool isStopped_ = false;
    bool isWatched_ = true;            // whether a guard survived the process
    std::vector<Guard> guards_;        // guards of ended processes
    std::optional<Guard> watchdog_;    // active while the process does not respond
    std::vector<std::string> sensors_; // found when the process started, most important first
    bool hasReadFans_ = false;         // this process, in a completed poll
    std::set<int> lastShown_;          // fans that were readable in its last poll
    double polledAt_ = 0;

    FanSettings settings_;
    bool alerts_ = true;
    double threshold_ = 90;

    int weatherSteps_ = 0;
    bool isCalmWeather_ = true;
    double celsius_ = 50;
    double drift_ = 0;

    std::set<int> takenByOthers_; // made manual by another program, with no command from us since
    std::atomic<double> refusedAt_ = 0;
    double strangerAt_ = 0;
    Since emergency_;
    Since protection_;
    Since calm_;
    Since end_;

    std::mutex notesMutex_;
    std::deque<std::string> notes_;
};

} // namespace Fenwhirl
