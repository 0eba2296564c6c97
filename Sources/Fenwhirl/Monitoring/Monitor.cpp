#include "Fenwhirl/Monitoring/Monitor.h"

#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Monitoring/FanSummary.h"
#include "Fenwhirl/Monitoring/MonitorPrivate.h"
#include "Fenwhirl/Monitoring/SensorSummary.h"

#include <algorithm>

namespace Fenwhirl {

namespace {

Monitor* sharedMonitor = nullptr;

} // namespace

Monitor::Private::Private(Monitor& owner, MonitorServices monitorServices)
    : monitor(owner)
    , services(std::move(monitorServices))
    , custody(std::make_shared<FanCustody>(services.announceHandBack))
    , saved(SavedPreferences::load(*services.preferences))
    , settingsSnapshot(std::make_shared<const FanSettings>(saved.settings))
    , poller(std::make_shared<Poller>(Poller::Services{
          .openSMC = services.openSMC,
          .runHelper = services.helper.run,
          .now = services.now,
          .stop = stop,
          .asksForProtocol =
              [read = services.helper.installedVersion] { return read() == HelperClient::expectedVersion; },
          .resets = resets,
          .custody = custody,
          .wallClock = services.wallClock})) {}

Monitor::Monitor(MonitorServices services, QObject* parent)
    : QObject(parent)
    , d_(std::make_unique<Private>(*this, std::move(services))) {
    Private& d = state();
    if (sharedMonitor == nullptr) {
        sharedMonitor = this;
    }
    Localizer::setLanguage(d.saved.language);
    d.helperInstalled = d.services.helper.isInstalled();
    d.isHelperThere = d.helperInstalled;
    d.publishHandBackState();
}

Monitor::~Monitor() {
    Private& d = state();
    *d.stop = true;
    if (d.isStuck) {
        // Its thread cannot be waited for, so the queue is leaked; the thread ends with the process.
        static_cast<void>(d.queue.release());
    }
    if (sharedMonitor == this) {
        sharedMonitor = nullptr;
    }
}

Monitor* Monitor::shared() {
    return sharedMonitor;
}

Monitor::Private& Monitor::state() const {
    mainThread.assertIsCurrent();
    return *d_;
}

const QList<FanState>& Monitor::fans() const {
    return state().fans;
}

const QList<SensorState>& Monitor::sensors() const {
    return state().sensors;
}

const QList<double>& Monitor::history() const {
    return state().history;
}

const QList<std::chrono::system_clock::time_point>& Monitor::historyTimes() const {
    return state().historyTimes;
}

std::optional<double> Monitor::primaryCelsius() const {
    return state().primaryCelsius;
}

bool Monitor::smcAvailable() const {
    return state().smcAvailable;
}

bool Monitor::isProtecting() const {
    return state().isProtecting;
}

bool Monitor::helperInstalled() const {
    return state().helperInstalled;
}

bool Monitor::helperOutdated() const {
    return state().helperOutdated;
}

bool Monitor::needsHelper() const {
    return state().needsHelper;
}

bool Monitor::isInstalling() const {
    return state().isInstalling;
}

QString Monitor::controlError() const {
    const std::optional<TextKey> key = state().controlError;
    return key ? localized(*key) : QString();
}

void Monitor::dismissControlError() {
    Private& d = state();
    d.assign(d.controlError, {}, &Monitor::controlErrorChanged);
}

Page Monitor::selectedPage() const {
    return state().selectedPage;
}

void Monitor::setSelectedPage(Page page) {
    Private& d = state();
    d.assign(d.selectedPage, page, &Monitor::selectedPageChanged);
}

QList<SensorState> Monitor::featured() const {
    return featuredSensors(state().sensors);
}

HealthStatus Monitor::status() const {
    const Private& d = state();
    return healthStatus(d.primaryCelsius, d.saved.warmThreshold, d.saved.hotThreshold);
}

double Monitor::averageRPM() const {
    return averageFanSpeed(state().fans);
}

QString Monitor::menuText() const {
    const Private& d = state();
    return statusItemText(d.fans, d.primaryCelsius);
}

QString Monitor::fanName(const FanState& fan) const {
    return fanDisplayName(fan, state().fans.size());
}

void Monitor::setInFront(bool isInFront) {
    Private& d = state();
    if (std::exchange(d.isInFront, isInFront) != isInFront) {
        if (!isInFront) {
            ++*d.resets; // a poll in progress sends no more speeds
        }
        d.publishHandBackState();
        // A session that leaves the front hands its fans back at once. A session that comes to the front
        // takes its fans only with its next poll, so that the other session's hand-back does not come last.
        if (!isInFront) {
            tick();
        }
    }
}

FanCustody::Intent Monitor::Private::intent() const {
    FanCustody::Intent intent{.settings = settingsSnapshot,
                              .helperInstalled = helperInstalled || isHelperThere,
                              .isInFront = isInFront,
                              .isGoingToSleep = isGoingToSleep,
                              .fansShown = {}};
    for (const FanState& fan : fans) {
        intent.fansShown.push_back(fan.id);
    }
    return intent;
}

void Monitor::Private::publishHandBackState() {
    custody->setIntent(intent());
    mailbox->put(request());
    const bool needsTimelyScheduling =
        saved.alertsEnabled || std::ranges::any_of(saved.settings, [](const auto& entry) {
            return entry.second.mode != FanModeKind::automatic;
        });
    if (services.needsTimelySchedulingChanged && announcedActsInTime != needsTimelyScheduling) {
        announcedActsInTime = needsTimelyScheduling;
        services.needsTimelySchedulingChanged(needsTimelyScheduling);
    }
}

} // namespace Fenwhirl
