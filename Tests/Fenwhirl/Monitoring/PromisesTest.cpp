// Random lives of the real monitor on failing machines, checked only against the promises that the program
// makes:
//
// - From 92 °C on, and without a temperature, no fan is manual.
// - After the program has ended or has stopped responding, only fans at their own constant speed are manual.
// - With heat alerts on and the threshold reached, every fan is at its maximum or automatic.
// - In all other situations, when nothing is disturbed, the fans do what the user set.
//
// Nothing here knows what the monitor sends, or when. The machine's own state is checked after every step,
// and each promise is allowed the time that it takes to be fulfilled. A failure message gives the seed, the
// step, and the events that led to it.

#include "FaultyMac.h"
#include "MonitorHarness.h"
#include "Support/Volume.h"

#include <QSignalSpy>

#include <algorithm>
#include <cmath>
#include <deque>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <span>

namespace {

constexpr double stepSeconds = 2;
constexpr double emergencyCelsius = 92;
constexpr double reactionSeconds = 6;
constexpr double endSeconds = 20;
constexpr double watchdogSeconds = 10;
constexpr double repetitionSeconds = 12; // a refused speed is sent again after this time
constexpr double restSeconds = 24;
constexpr double mostLagRPM = 100; // smaller changes of speed may be delayed by some seconds

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
    RandomLife(unsigned seed, FaultKinds troubles)
        : troubles_(troubles)
        , generator_(seed)
        , mac_(emptied(harness_.smc), generator_) {
        harness_.smc.requests.clear();
        startProcess();
    }

    ~RandomLife() { endProcess(); }

    RandomLife(const RandomLife&) = delete;
    RandomLife& operator=(const RandomLife&) = delete;

    // Continues for this many steps. Returns the broken promise, or nothing.
    std::optional<std::string> live(int steps) {
        for (int i = 0; i < steps; ++i) {
            step();
            if (testing::Test::HasFatalFailure()) {
                return "the monitor did not go on";
            }
            if (auto broken = judge()) {
                return *broken + "\nat step " + std::to_string(i) + ", second " + text(now()) + ": " +
                       mac_.description() + "\n" + settingsText() + "\nbefore that:\n" + history();
            }
        }
        return std::nullopt;
    }

    // How often each promise was checked.
    struct Judged {
        int emergencies = 0;
        int ends = 0;
        int protections = 0;
        int calm = 0;
    } judged;

private:
    // --- Random numbers ---

    [[nodiscard]] int below(int count) {
        return static_cast<int>(generator_() % static_cast<unsigned>(count));
    }

    [[nodiscard]] bool oneIn(int count) { return below(count) == 0; }

    static ScriptedSMC& emptied(ScriptedSMC& controller) {
        for (const char* key :
             {"FNum", "FS! ", "F0Ac", "F0Mn", "F0Mx", "F0Tg", "F1Ac", "F1Mn", "F1Mx", "F1Tg", "TC0P"}) {
            controller.remove(key);
        }
        return controller;
    }

    // --- The log for a failure message ---

    static std::string text(double number) { return QString::number(number).toStdString(); }

    void note(const std::string& what) {
        const std::lock_guard lock(notesMutex_);
        notes_.push_back(text(now()) + "  " + what);
        if (notes_.size() > 60) {
            notes_.pop_front();
        }
    }

    [[nodiscard]] std::string history() {
        const std::lock_guard lock(notesMutex_);
        std::string lines;
        for (const std::string& line : notes_) {
            lines += "  " + line + "\n";
        }
        return lines;
    }

    [[nodiscard]] std::string settingsText() const {
        std::string line = alerts_ ? "alerts at " + text(threshold_) : "no alerts";
        for (const auto& [index, setting] : settings_) {
            line += "; fan " + std::to_string(index) + " " +
                    (setting.mode == FanModeKind::constant ? "constant " + text(setting.constantRPM)
                     : setting.mode == FanModeKind::sensor ? "curve " + text(setting.startTemp) + " to " +
                                                                 text(setting.maxTemp) + setting.sensorKey
                                                           : "automatic");
        }
        return line;
    }

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

    [[nodiscard]] MonitorServices services() {
        MonitorServices services = harness_.services();
        const auto process = process_;
        services.helper.run = [this, process](const FakeHelper::Arguments& arguments) {
            return runHelper(*process, arguments);
        };
        services.now = [this] { return std::chrono::duration<double>(seconds_); };
        services.helper.fileStamp = [] { return std::optional<std::int64_t>(1); };
        services.notify = [](const QString&, const QString&) {};
        services.announceHandBack = [process](const HandBack& handBack) {
            const std::lock_guard lock(process->mutex);
            if (!process->isDead) {
                process->announced = handBack;
            }
        };
        services.handedBack = [process] {
            const std::lock_guard lock(process->mutex);
            process->isGuardDismissed = !process->isDead;
        };
        return services;
    }

    bool runHelper(Process& process, const FakeHelper::Arguments& arguments) {
        const std::lock_guard lock(process.mutex);
        if (process.runsUntilDeath == 0 && process.diesBeforeTheRun) {
            process.isDead = true;
        }
        if (process.isDead) {
            return false;
        }
        if (process.isQuitting) {
            seconds_ = seconds_ + 0.5; // time must pass, or timed retries would never end
        }
        const bool succeeded = mac_.runHelper(arguments);
        std::string line = "helper";
        for (const std::string& argument : arguments) {
            line += " " + argument;
        }
        note(line + (succeeded ? "" : " failed"));
        if (arguments.size() > 1) {
            const int fan = std::stoi(arguments[1]);
            if (arguments[0] == "set") {
                process.fansSet.insert(fan);
            }
            if (succeeded) {
                takenByOthers_.erase(fan);
            }
        }
        if (!succeeded && arguments[0] == "set") {
            refusedAt_ = now();
        }
        if (process.runsUntilDeath >= 0 && process.runsUntilDeath-- == 0) {
            process.isDead = true;
        }
        return succeeded;
    }

    void startProcess() {
        note("start");
        process_ = std::make_shared<Process>();
        sensors_.clear();
        for (const char* key : {FaultyMac::processorSensor, FaultyMac::otherSensor}) {
            if (mac_.celsius(key)) {
                sensors_.emplace_back(key); // a sensor that is missing at the start is never looked for
            }
        }
        takenByOthers_.clear();
        for (const FaultyMac::Fan& fan : mac_.fans()) {
            if (mac_.isManual(fan.index) && !mac_.showsFanCount()) {
                takenByOthers_.insert(fan.index); // the program cannot know about it
            }
        }
        hasReadFans_ = false;
        lastShown_.clear();
        monitor_ = std::make_unique<Monitor>(services());
        settings_ = monitor_->settings();
        alerts_ = monitor_->alertsEnabled();
        threshold_ = monitor_->alertThreshold();
        isStopped_ = false;
        if (troubles_.ends && oneIn(4)) {
            dieDuringAPoll();
        }
        QSignalSpy polled(monitor_.get(), &Monitor::polled);
        monitor_->start();
        ASSERT_TRUE(MonitorHarness::waitUntil([&] { return polled.count() >= 1; }));
        disturbed();
        polledOnce();
    }

    // Arranges for the process to die before or after one of its next helper commands.
    void dieDuringAPoll() {
        const std::lock_guard lock(process_->mutex);
        process_->runsUntilDeath = below(3);
        process_->diesBeforeTheRun = oneIn(2);
    }

    void poll() {
        QSignalSpy polled(monitor_.get(), &Monitor::polled);
        monitor_->tick();
        ASSERT_TRUE(MonitorHarness::waitUntil([&] { return polled.count() >= 1; }));
        polledOnce();
    }

    void polledOnce() {
        polledAt_ = now();
        bool isDead = false;
        {
            const std::lock_guard lock(process_->mutex);
            isDead = process_->isDead;
        }
        if (isDead) {
            die(true);
        } else {
            hasReadFans_ = hasReadFans_ || mac_.showsFanCount();
            lastShown_.clear();
            for (const FaultyMac::Fan& fan : mac_.fans()) {
                if (mac_.shows(fan.index)) {
                    lastShown_.insert(fan.index);
                }
            }
        }
    }

    void endProcess() { monitor_.reset(); }

    // Simulates a kill. `guarded`: its guard survives.
    void die(bool guarded) {
        HandBack announced;
        {
            const std::lock_guard lock(process_->mutex);
            process_->isDead = true;
            announced = process_->announced;
        }
        note(guarded ? "killed" : "killed, and its guard as well");
        endProcess();
        isWatched_ = guarded;
        if (guarded) {
            guards_.emplace_back(announced);
        }
        disturbed();
    }

    void quit() {
        note("quit");
        {
            const std::lock_guard lock(process_->mutex);
            process_->isQuitting = true;
        }
        monitor_->restoreAutomaticBlocking();
        HandBack announced;
        bool isGuardDismissed = false;
        {
            const std::lock_guard lock(process_->mutex);
            process_->isDead = true;
            announced = process_->announced;
            isGuardDismissed = process_->isGuardDismissed;
        }
        endProcess();
        isWatched_ = true;
        if (!isGuardDismissed) {
            note("and its guard takes over");
            guards_.emplace_back(announced);
        }
        disturbed();
    }

    [[nodiscard]] bool isRunning() const { return monitor_ && !isStopped_; }

    // --- Events ---

    void disturbed() {
        calm_.restart();
        end_.restart();
        emergency_.restart();
        protection_.restart();
    }

    void step() {
        seconds_ = seconds_ + stepSeconds;
        harness_.smc.requests.clear();
        harness_.smc.writes.clear();
        if (--weatherSteps_ <= 0) {
            changeWeather();
        }
        driftCelsius();
        if (isCalmWeather_ ? oneIn(40) : oneIn(3)) {
            happen();
        }
        if (troubles_.ends && oneIn(isRunning() ? 25 : 18)) {
            endOrBegin();
        }
        if (mac_.mayRefuseSpeeds()) {
            refusedAt_ = now();
        }
        tryGuards();
        if (isRunning()) {
            poll();
        }
        updateConditions();
    }

    void changeWeather() {
        weatherSteps_ = 4 + below(26);
        isCalmWeather_ = oneIn(2);
        const int kind = below(4);
        const bool isHot = kind == 2;
        const bool isEmergency = kind == 3;
        // Hot weather stays just below the emergency temperature.
        celsius_ = isEmergency ? 92 + below(14)
                   : isHot     ? std::min(threshold_ + below(8), 91.5)
                               : 35 + below(45);
        drift_ = isCalmWeather_ ? 0 : (below(9) - 4) * 0.25;
        note("weather " + text(celsius_) + (isCalmWeather_ ? ", calm" : ""));
    }

    void driftCelsius() {
        celsius_ = std::clamp(celsius_ + drift_, 32.0, 108.0);
        mac_.setCelsius(celsius_, celsius_ - 6);
    }

    void happen() {
        std::vector<void (RandomLife::*)()> possible = {&RandomLife::changeTheUsersMind};
        if (oneIn(8)) {
            possible = {&RandomLife::sleep};
        }
        const auto add = [&](bool isTrouble, void (RandomLife::*what)()) {
            if (isTrouble) {
                possible.push_back(what);
            }
        };
        add(troubles_.refusals, &RandomLife::changeMood);
        add(troubles_.vanishingKeys, &RandomLife::changeKeys);
        add(troubles_.strangers, &RandomLife::actAsOtherProgram);
        add(troubles_.ends, &RandomLife::endOrBegin);
        (this->*possible[static_cast<std::size_t>(below(static_cast<int>(possible.size())))])();
    }

    void changeTheUsersMind() {
        if (!isRunning()) {
            return;
        }
        if (oneIn(5)) {
            alerts_ = !oneIn(4);
            monitor_->setAlertsEnabled(alerts_);
        } else if (oneIn(5)) {
            threshold_ = 65 + below(30);
            monitor_->setAlertThreshold(threshold_);
        } else if (oneIn(4)) {
            constexpr Preset presets[] = {Preset::automatic, Preset::silent, Preset::balanced, Preset::game,
                                          Preset::max};
            monitor_->apply(presets[below(5)]);
        } else {
            randomSettings(1);
        }
        settings_ = monitor_->settings();
        note("settings: " + settingsText());
        calm_.restart();
    }

    void randomSettings(int count) {
        for (int i = 0; i < count && !mac_.fans().empty(); ++i) {
            const int index =
                mac_.fans()[static_cast<std::size_t>(below(static_cast<int>(mac_.fans().size())))].index;
            FanSetting setting;
            switch (below(4)) {
            case 0:
            case 1:
                setting = harness_.constant(500 + below(7000));
                break;
            case 2:
                setting =
                    harness_.curve(30 + below(40), 60 + below(40), oneIn(3) ? FaultyMac::otherSensor : "");
                break;
            default:
                break;
            }
            if (monitor_) {
                monitor_->setSetting(index, setting);
            }
        }
    }

    void sleep() {
        note("sleeps for an hour");
        mac_.sleepAndWake();
        seconds_ = seconds_ + 3600;
        polledAt_ = polledAt_ + 3600; // the watchdog does not count the sleep as silence
        disturbed();
    }

    void changeMood() {
        constexpr FaultyMac::Mood moods[] = {FaultyMac::Mood::willing, FaultyMac::Mood::refusesTargets,
                                             FaultyMac::Mood::refusesWrites, FaultyMac::Mood::silent};
        mac_.setMood(mac_.mood() == FaultyMac::Mood::willing ? moods[below(4)] : FaultyMac::Mood::willing);
        note(mac_.description());
        calm_.restart();
    }

    void changeKeys() {
        if (mac_.hasVanishedKeys() && oneIn(2)) {
            mac_.restore();
        } else if (oneIn(3) || mac_.fans().empty()) {
            mac_.vanish(FaultyMac::processorSensor);
            if (oneIn(2)) {
                mac_.vanish(FaultyMac::otherSensor);
            }
        } else if (oneIn(4)) {
            mac_.vanish("FNum");
        } else {
            const auto& fan =
                mac_.fans()[static_cast<std::size_t>(below(static_cast<int>(mac_.fans().size())))];
            constexpr const char* suffixes[] = {"Ac", "Ac", "Mx", "Tg"};
            mac_.vanish("F" + std::to_string(fan.index) + suffixes[below(4)]);
        }
        note(mac_.description());
        calm_.restart();
    }

    // Acts as another program, which takes a fan over or hands one back. Only while Fenwhirl runs: otherwise
    // no promise covers it.
    void actAsOtherProgram() {
        if (!isRunning() || mac_.fans().empty()) {
            return;
        }
        const auto& fan = mac_.fans()[static_cast<std::size_t>(below(static_cast<int>(mac_.fans().size())))];
        if (oneIn(4)) {
            mac_.releaseFan(fan.index);
            note("another program hands fan " + std::to_string(fan.index) + " back");
        } else {
            const double rpm = fan.minimum + below(static_cast<int>(fan.maximum - fan.minimum));
            mac_.takeOver(fan.index, rpm);
            takenByOthers_.insert(fan.index);
            note("another program sets fan " + std::to_string(fan.index) + " to " + text(rpm));
        }
        strangerAt_ = now();
        calm_.restart();
        emergency_.restart();
    }

    void endOrBegin() {
        if (isStopped_) {
            note("goes on");
            isStopped_ = false;
            disturbed();
        } else if (!monitor_) {
            if (oneIn(6)) {
                note("its settings are lost");
                harness_.preferences.values.erase(QStringLiteral("settings"));
            }
            startProcess();
        } else {
            switch (below(5)) {
            case 0:
                quit();
                break;
            case 1:
                note("stops");
                isStopped_ = true;
                disturbed();
                break;
            case 2:
                die(!oneIn(3));
                break;
            default:
                dieDuringAPoll();
                break;
            }
        }
    }

    void tryGuards() {
        for (Guard& guard : guards_) {
            guard.attempt(mac_);
            if (guard.isDone()) {
                note("a guard has succeeded");
            }
            if (monitor_) { // a guard of an earlier process
                strangerAt_ = now();
                calm_.restart();
            }
        }
        std::erase_if(guards_, [](const Guard& guard) { return guard.isDone(); });
        if (!isStopped_) {
            watchdog_.reset();
            return;
        }
        if (!watchdog_ && now() - polledAt_ >= watchdogSeconds) {
            note("the guard acts on the silence");
            const std::lock_guard lock(process_->mutex);
            watchdog_.emplace(process_->announced, true);
        }
        if (watchdog_) {
            watchdog_->attempt(mac_);
        }
    }

    // --- The promises ---

    [[nodiscard]] std::optional<double> mainCelsius() const {
        for (const std::string& sensor : sensors_) {
            if (const auto celsius = mac_.celsius(sensor)) {
                return celsius;
            }
        }
        return std::nullopt;
    }

    void updateConditions() {
        const auto celsius = mainCelsius();
        const bool isEmergency = !celsius || *celsius >= emergencyCelsius;
        const bool isProtecting = alerts_ && celsius && *celsius >= threshold_;
        const bool isCool = !isEmergency && !(alerts_ && *celsius >= threshold_ - 5);
        emergency_.update(isRunning() && mac_.acceptsHandBacks() && isEmergency, now());
        protection_.update(isRunning() && isProtecting && !isEmergency, now());
        calm_.update(isRunning() && isCool && !mac_.mayRefuseSpeeds() && !mac_.hasVanishedKeys(), now());
        end_.update((isStopped_ || (!monitor_ && isWatched_)) && mac_.acceptsHandBacks(), now());
    }

    [[nodiscard]] std::optional<std::string> judge() {
        const bool isEmergency = emergency_.lasts(reactionSeconds, now());
        const bool hasEnded = end_.lasts(endSeconds, now());
        const bool isProtecting = protection_.lasts(reactionSeconds, now()) &&
                                  now() - refusedAt_ > repetitionSeconds &&
                                  now() - strangerAt_ > repetitionSeconds;
        const bool isCalm = calm_.lasts(restSeconds, now());
        for (const FaultyMac::Fan& fan : mac_.fans()) {
            const bool isManual = mac_.isManual(fan.index);
            const bool isStrangers = takenByOthers_.contains(fan.index);
            const std::string name = "fan " + std::to_string(fan.index);
            if (isEmergency && !(isStrangers && !mac_.showsFanCount())) {
                ++judged.emergencies;
                if (isManual) {
                    return name + " is manual although it is too hot, or nobody knows how hot";
                }
            }
            if (hasEnded) {
                ++judged.ends;
                if (isManual && !isAtItsConstant(fan) && isKnown(fan.index)) {
                    return name + " was left behind";
                }
            }
            if (isProtecting && !(isStrangers && !mac_.canBeCooled(fan.index))) {
                ++judged.protections;
                if (isManual && mac_.target(fan.index) <= fan.maximum - mostLagRPM) {
                    return name + " does not cool although the alert threshold was reached";
                }
            }
            if (isCalm) {
                ++judged.calm;
                if (!doesWhatTheUserSet(fan)) {
                    return name + " does not do what the user set";
                }
            }
        }
        return std::nullopt;
    }

    // Whether the last process could know that the fan had been made manual.
    [[nodiscard]] bool isKnown(int fan) const {
        if (takenByOthers_.contains(fan)) {
            return lastShown_.contains(fan) && modeOf(fan) != FanModeKind::constant;
        }
        return hasReadFans_ || process_->fansSet.contains(fan);
    }

    [[nodiscard]] const FanSetting& settingOf(int fan) const {
        static const FanSetting otherwise;
        const auto entry = settings_.find(fan);
        return entry == settings_.end() ? otherwise : entry->second;
    }

    [[nodiscard]] FanModeKind modeOf(int fan) const { return settingOf(fan).mode; }

    [[nodiscard]] bool isAtItsConstant(const FaultyMac::Fan& fan) const {
        const FanSetting& setting = settingOf(fan.index);
        return setting.mode == FanModeKind::constant &&
               std::abs(mac_.target(fan.index) -
                        std::min(fan.maximum, std::max(fan.minimum, setting.constantRPM))) <= 1;
    }

    [[nodiscard]] bool doesWhatTheUserSet(const FaultyMac::Fan& fan) const {
        const FanSetting& setting = settingOf(fan.index);
        switch (setting.mode) {
        case FanModeKind::automatic:
            return !mac_.isManual(fan.index) || takenByOthers_.contains(fan.index);
        case FanModeKind::constant:
            return mac_.isManual(fan.index) && isAtItsConstant(fan);
        case FanModeKind::sensor:
            break;
        }
        const bool isOwn = std::ranges::find(sensors_, setting.sensorKey) != sensors_.end();
        const double celsius = isOwn ? *mac_.celsius(setting.sensorKey) : *mainCelsius();
        const double span = std::max(1.0, setting.maxTemp - setting.startTemp);
        const double part = std::clamp((celsius - setting.startTemp) / span, 0.0, 1.0);
        const double rpm = fan.minimum + part * (fan.maximum - fan.minimum);
        constexpr double halfStepRPM = 25; // half of the rounding step of a curve
        return mac_.isManual(fan.index) && std::abs(mac_.target(fan.index) - rpm) <= mostLagRPM + halfStepRPM;
    }

    const FaultKinds troubles_;
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

class Promises : public testing::Test {
protected:
    static void keep(FaultKinds troubles, int sample, int whole) {
        constexpr int stepsOfALife = 400;
        RandomLife::Judged judged;
        for (unsigned seed = 1; seed <= static_cast<unsigned>(rounds(sample, whole)); ++seed) {
            RandomLife life(seed, troubles);
            const auto broken = life.live(stepsOfALife);
            ASSERT_FALSE(broken) << "seed " << seed << ": " << *broken;
            judged.emergencies += life.judged.emergencies;
            judged.ends += life.judged.ends;
            judged.protections += life.judged.protections;
            judged.calm += life.judged.calm;
        }
        // A promise that is rarely checked proves nothing.
        EXPECT_GT(judged.emergencies, 100);
        EXPECT_GT(judged.protections, 100);
        EXPECT_GT(judged.calm, 100);
        EXPECT_TRUE(!troubles.ends || judged.ends > 100) << judged.ends;
    }
};

} // namespace

TEST_F(Promises, AreKeptOnMachinesThatWork) {
    keep({}, 8, 400);
}

TEST_F(Promises, AreKeptWhenWritesAreRefused) {
    keep({.refusals = true}, 10, 400);
}

TEST_F(Promises, AreKeptWhenKeysVanish) {
    keep({.vanishingKeys = true}, 20, 400);
}

TEST_F(Promises, AreKeptWhenOthersDriveTheFans) {
    keep({.strangers = true}, 10, 400);
}

TEST_F(Promises, AreKeptHoweverTheProgramEnds) {
    keep({.ends = true}, 15, 400);
}

TEST_F(Promises, AreKeptWhateverHappens) {
    keep({.refusals = true, .vanishingKeys = true, .strangers = true, .ends = true}, 30, 2500);
}
