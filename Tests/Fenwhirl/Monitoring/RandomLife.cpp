#include "RandomLife.h"

#include "Support/WaitUntil.h"

namespace Fenwhirl {

namespace {

constexpr double stepSeconds = 2;
constexpr double emergencyCelsius = 92;
constexpr double reactionSeconds = 6;
constexpr double endSeconds = 20;
constexpr double watchdogSeconds = 10;
constexpr double repetitionSeconds = 12; // a refused speed is sent again after this time
constexpr double restSeconds = 24;
constexpr double mostLagRPM = 100; // smaller changes of speed may be delayed by some seconds

} // namespace

RandomLife::RandomLife(unsigned seed, FaultKinds faults)
    : faults_(faults)
    , generator_(seed)
    , mac_(emptied(harness_.smc), generator_) {
    harness_.smc.requests.clear();
    startProcess();
}

std::optional<std::string> RandomLife::live(int steps) {
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

int RandomLife::below(int count) {
    return static_cast<int>(generator_() % static_cast<unsigned>(count));
}

ScriptedSMC& RandomLife::emptied(ScriptedSMC& controller) {
    for (const char* key :
         {"FNum", "FS! ", "F0Ac", "F0Mn", "F0Mx", "F0Tg", "F1Ac", "F1Mn", "F1Mx", "F1Tg", "TC0P"}) {
        controller.remove(key);
    }
    return controller;
}

void RandomLife::note(const std::string& what) {
    const std::lock_guard lock(notesMutex_);
    notes_.push_back(text(now()) + "  " + what);
    if (notes_.size() > 60) {
        notes_.pop_front();
    }
}

std::string RandomLife::history() {
    const std::lock_guard lock(notesMutex_);
    std::string lines;
    for (const std::string& line : notes_) {
        lines += "  " + line + "\n";
    }
    return lines;
}

std::string RandomLife::settingsText() const {
    std::string line = alerts_ ? "alerts at " + text(threshold_) : "no alerts";
    for (const auto& [index, setting] : settings_) {
        line += "; fan " + std::to_string(index) + " " +
                (setting.mode == FanModeKind::constant ? "constant " + text(setting.constantRPM)
                 : setting.mode == FanModeKind::sensor
                     ? "curve " + text(setting.startTemp) + " to " + text(setting.maxTemp) + setting.sensorKey
                     : "automatic");
    }
    return line;
}

MonitorServices RandomLife::services() {
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

bool RandomLife::runHelper(Process& process, const FakeHelper::Arguments& arguments) {
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

void RandomLife::startProcess() {
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
    if (faults_.ends && oneIn(4)) {
        dieDuringAPoll();
    }
    QSignalSpy polled(monitor_.get(), &Monitor::polled);
    monitor_->start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() >= 1; }));
    disturbed();
    polledOnce();
}

void RandomLife::dieDuringAPoll() {
    const std::lock_guard lock(process_->mutex);
    process_->runsUntilDeath = below(3);
    process_->diesBeforeTheRun = oneIn(2);
}

void RandomLife::poll() {
    QSignalSpy polled(monitor_.get(), &Monitor::polled);
    monitor_->tick();
    ASSERT_TRUE(waitUntil([&] { return polled.count() >= 1; }));
    polledOnce();
}

void RandomLife::polledOnce() {
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

void RandomLife::die(bool guarded) {
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

void RandomLife::quit() {
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

void RandomLife::disturbed() {
    calm_.restart();
    end_.restart();
    emergency_.restart();
    protection_.restart();
}

void RandomLife::step() {
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
    if (faults_.ends && oneIn(isRunning() ? 25 : 18)) {
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

void RandomLife::changeWeather() {
    weatherSteps_ = 4 + below(26);
    isCalmWeather_ = oneIn(2);
    const int kind = below(4);
    const bool isHot = kind == 2;
    const bool isEmergency = kind == 3;
    // Hot weather stays just below the emergency temperature.
    celsius_ = isEmergency ? 92 + below(14) : isHot ? std::min(threshold_ + below(8), 91.5) : 35 + below(45);
    drift_ = isCalmWeather_ ? 0 : (below(9) - 4) * 0.25;
    note("weather " + text(celsius_) + (isCalmWeather_ ? ", calm" : ""));
}

void RandomLife::driftCelsius() {
    celsius_ = std::clamp(celsius_ + drift_, 32.0, 108.0);
    mac_.setCelsius(celsius_, celsius_ - 6);
}

void RandomLife::happen() {
    std::vector<void (RandomLife::*)()> possible = {&RandomLife::changeTheUsersMind};
    if (oneIn(8)) {
        possible = {&RandomLife::sleep};
    }
    const auto add = [&](bool isTrouble, void (RandomLife::*what)()) {
        if (isTrouble) {
            possible.push_back(what);
        }
    };
    add(faults_.refusals, &RandomLife::changeMood);
    add(faults_.vanishingKeys, &RandomLife::changeKeys);
    add(faults_.strangers, &RandomLife::actAsOtherProgram);
    add(faults_.ends, &RandomLife::endOrBegin);
    (this->*possible[static_cast<std::size_t>(below(static_cast<int>(possible.size())))])();
}

void RandomLife::changeTheUsersMind() {
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

void RandomLife::randomSettings(int count) {
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
            setting = harness_.curve(30 + below(40), 60 + below(40), oneIn(3) ? FaultyMac::otherSensor : "");
            break;
        default:
            break;
        }
        if (monitor_) {
            monitor_->setSetting(index, setting);
        }
    }
}

void RandomLife::sleep() {
    note("sleeps for an hour");
    mac_.sleepAndWake();
    seconds_ = seconds_ + 3600;
    polledAt_ = polledAt_ + 3600; // the watchdog does not count the sleep as silence
    disturbed();
}

void RandomLife::changeMood() {
    constexpr FaultyMac::Mood moods[] = {FaultyMac::Mood::willing, FaultyMac::Mood::refusesTargets,
                                         FaultyMac::Mood::refusesWrites, FaultyMac::Mood::silent};
    mac_.setMood(mac_.mood() == FaultyMac::Mood::willing ? moods[below(4)] : FaultyMac::Mood::willing);
    note(mac_.description());
    calm_.restart();
}

void RandomLife::changeKeys() {
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
        const auto& fan = mac_.fans()[static_cast<std::size_t>(below(static_cast<int>(mac_.fans().size())))];
        constexpr const char* suffixes[] = {"Ac", "Ac", "Mx", "Tg"};
        mac_.vanish("F" + std::to_string(fan.index) + suffixes[below(4)]);
    }
    note(mac_.description());
    calm_.restart();
}

void RandomLife::actAsOtherProgram() {
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

void RandomLife::endOrBegin() {
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

void RandomLife::tryGuards() {
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

std::optional<double> RandomLife::mainCelsius() const {
    for (const std::string& sensor : sensors_) {
        if (const auto celsius = mac_.celsius(sensor)) {
            return celsius;
        }
    }
    return std::nullopt;
}

void RandomLife::updateConditions() {
    const auto celsius = mainCelsius();
    const bool isEmergency = !celsius || *celsius >= emergencyCelsius;
    const bool isProtecting = alerts_ && celsius && *celsius >= threshold_;
    const bool isCool = !isEmergency && !(alerts_ && *celsius >= threshold_ - 5);
    emergency_.update(isRunning() && mac_.acceptsHandBacks() && isEmergency, now());
    protection_.update(isRunning() && isProtecting && !isEmergency, now());
    calm_.update(isRunning() && isCool && !mac_.mayRefuseSpeeds() && !mac_.hasVanishedKeys(), now());
    end_.update((isStopped_ || (!monitor_ && isWatched_)) && mac_.acceptsHandBacks(), now());
}

std::optional<std::string> RandomLife::judge() {
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

bool RandomLife::isKnown(int fan) const {
    if (takenByOthers_.contains(fan)) {
        return lastShown_.contains(fan) && modeOf(fan) != FanModeKind::constant;
    }
    return hasReadFans_ || process_->fansSet.contains(fan);
}

const FanSetting& RandomLife::settingOf(int fan) const {
    static const FanSetting otherwise;
    const auto entry = settings_.find(fan);
    return entry == settings_.end() ? otherwise : entry->second;
}

bool RandomLife::isAtItsConstant(const FaultyMac::Fan& fan) const {
    const FanSetting& setting = settingOf(fan.index);
    return setting.mode == FanModeKind::constant &&
           std::abs(mac_.target(fan.index) -
                    std::min(fan.maximum, std::max(fan.minimum, setting.constantRPM))) <= 1;
}

bool RandomLife::doesWhatTheUserSet(const FaultyMac::Fan& fan) const {
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

} // namespace Fenwhirl
