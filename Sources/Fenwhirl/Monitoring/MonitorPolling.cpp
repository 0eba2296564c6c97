// The course of one poll: from the timer to the queue and back to the published properties.

#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/HelperClient/HelperInstallation.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Monitoring/MonitorPrivate.h"
#include "Fenwhirl/Platform/Toolkit/BackgroundTask.h"

#include <utility>

namespace Fenwhirl {

namespace {

constexpr qsizetype historyLimit = 300; // ten minutes
constexpr std::chrono::duration<double> alertInterval{300};

QList<FanState> fanStates(const std::vector<FanReading>& readings,
                          const std::map<int, std::int64_t>& requested) {
    QList<FanState> states;
    states.reserve(static_cast<qsizetype>(readings.size()));
    for (const FanReading& reading : readings) {
        FanState state{reading.index,  reading.rpm,       reading.minRPM,
                       reading.maxRPM, reading.targetRPM, reading.isMaximumKnown};
        if (const auto speed = requested.find(reading.index); speed != requested.end()) {
            state.requestedRPM = static_cast<double>(speed->second);
        }
        states.append(state);
    }
    return states;
}

QList<SensorState> sensorStates(const std::vector<TemperatureReading>& readings) {
    QList<SensorState> states;
    states.reserve(static_cast<qsizetype>(readings.size()));
    for (const TemperatureReading& reading : readings) {
        states.append({.id = QString::fromStdString(reading.key), .celsius = reading.celsius});
    }
    return states;
}

TextKey text(PollProblem problem) {
    switch (problem) {
    case PollProblem::noTemperature:
        return TextKey(u"Aucune température lisible sur ce Mac : le contrôle est suspendu par sécurité.");
    case PollProblem::refused:
        return TextKey(u"Ce Mac n'a pas accepté le changement de vitesse du ventilateur.");
    }
    Q_UNREACHABLE();
}

} // namespace

void Monitor::start() {
    Private& d = state();
    d.queue->async([&d, poller = d.poller, reply = d.inbox.sender()] {
        const bool available = poller->open();
        reply.post([&d, available] {
            mainThread.assertIsCurrent();
            d.opened(available);
        });
    });
}

void Monitor::Private::opened(bool available) {
    assign(smcAvailable, available, &Monitor::smcAvailableChanged);
    if (*stop) {
        return;
    }
    if (!available) {
        // The controller is never opened again, so no fan will ever be driven.
        if (services.handedBack) {
            services.handedBack();
        }
        return;
    }
    monitor.tick();
    if (services.runsOwnTimer) {
        pollRegularly();
    }
}

// The queue keeps the time itself: a timer on the main thread would wake that thread only to wake the queue, and
// nothing that the program does costs more while it is hidden than waking up.
void Monitor::Private::pollRegularly() {
    const auto helperFile = [helper = services.helper]() -> std::optional<HelperFile> {
        if (!helper.isInstalled()) {
            return HelperFile{.isThere = false};
        }
        const auto stamp = helper.fileStamp ? helper.fileStamp() : std::nullopt;
        return stamp ? std::optional(HelperFile{.isThere = true, .stamp = *stamp}) : std::nullopt;
    };
    queue->every(services.pollInterval, [this, helperFile, poll = pollWork(), box = mailbox,
                                         hasStopped = stop, reply = inbox.sender()] {
        if (*hasStopped) {
            return;
        }
        switch (box->due(helperFile())) {
        case PollMailbox::Due::poll:
            poll();
            break;
        case PollMailbox::Due::askMainThread:
            reply.post([this] {
                mainThread.assertIsCurrent();
                mailbox->questionReceived();
                monitor.tick();
            });
            break;
        case PollMailbox::Due::wait:
            break;
        }
    });
}

std::function<void()> Monitor::Private::pollWork() {
    return [this, box = mailbox, smcPoller = poller, reply = inbox.sender()] {
        if (auto result = smcPoller->poll(box->take())) {
            box->resultSent();
            reply.post([this, result = std::move(*result)] {
                mainThread.assertIsCurrent();
                publish(result);
                mailbox->resultPublished();
            });
        }
    };
}

void Monitor::tick() {
    Private& d = state();
    if (*d.stop) {
        return;
    }
    const bool isHelperThere = d.services.helper.isInstalled();
    if (std::exchange(d.isHelperThere, isHelperThere) != isHelperThere) {
        d.custody->setIntent(d.intent()); // before the first poll that can use the helper
    }
    d.checkVersion(isHelperThere);
    d.mailbox->put(d.request());
    if (d.mailbox->schedule()) {
        d.queue->async(d.pollWork());
    }
}

PollRequest Monitor::Private::request() const {
    return {.settings = settingsSnapshot,
            .helperInstalled = isHelperThere,
            .suspendsUserSpeeds = removalsRunning > 0,
            .protect = saved.alertsEnabled,
            .protectAt = saved.alertThreshold,
            .isInFront = isInFront,
            .isGoingToSleep = isGoingToSleep,
            .speaksOurProtocol = speaksOurProtocol,
            .resets = *resets,
            .helperFile = helperFile()};
}

std::optional<HelperFile> Monitor::Private::helperFile() const {
    if (!isHelperThere) {
        return HelperFile{.isThere = false};
    }
    return versionStamp ? std::optional(HelperFile{.isThere = true, .stamp = *versionStamp}) : std::nullopt;
}

void PollMailbox::put(PollRequest request) {
    const MutexLock lock(mutex_);
    newest_ = std::move(request);
}

bool PollMailbox::schedule() {
    const MutexLock lock(mutex_);
    return !std::exchange(isWaiting_, true);
}

PollRequest PollMailbox::take() {
    const MutexLock lock(mutex_);
    isWaiting_ = false;
    return *newest_;
}

void PollMailbox::resultSent() {
    const MutexLock lock(mutex_);
    ++unpublished_;
}

void PollMailbox::resultPublished() {
    const MutexLock lock(mutex_);
    --unpublished_;
}

PollMailbox::Due PollMailbox::due(const std::optional<HelperFile>& helper) {
    const MutexLock lock(mutex_);
    if (unpublished_ == 0 && newest_ && helper && helper == newest_->helperFile) {
        return Due::poll;
    }
    return std::exchange(isMainThreadAsked_, true) ? Due::wait : Due::askMainThread;
}

void PollMailbox::questionReceived() {
    const MutexLock lock(mutex_);
    isMainThreadAsked_ = false;
}

void Monitor::Private::publish(const PollResult& result) {
    if (*stop) {
        return;
    }
    assign(fans, fanStates(result.fans, result.requested), &Monitor::fansChanged);
    QList<SensorState> readings = sensorStates(result.temperatures);
    sensorRecord.add(readings, services.now());
    assign(sensors, std::move(readings), &Monitor::sensorsChanged);
    assign(primaryCelsius, result.primaryCelsius, &Monitor::primaryCelsiusChanged);
    assign(isProtecting, result.isProtecting, &Monitor::isProtectingChanged);
    assign(helperInstalled, result.helperInstalled, &Monitor::helperInstalledChanged);
    assign(needsHelper, result.wantsManualControl, &Monitor::needsHelperChanged);
    if (result.problem) {
        assign(controlError, std::optional(text(*result.problem)), &Monitor::controlErrorChanged);
    }
    if (primaryCelsius) {
        history.append(*primaryCelsius);
        historyTimes.append(result.readAt);
        if (history.size() > historyLimit) {
            history.removeFirst();
            historyTimes.removeFirst();
        }
        Q_EMIT monitor.historyChanged();
    }
    publishHandBackState();
    checkAlert(primaryCelsius);
    if (services.pollFinished) {
        services.pollFinished();
    }
    Q_EMIT monitor.polled();
}

void Monitor::Private::checkAlert(std::optional<double> celsius) {
    if (!saved.alertsEnabled || !celsius || !(*celsius >= saved.alertThreshold)) {
        return;
    }
    const auto now = services.now();
    if (lastAlert && now - *lastAlert < alertInterval) {
        return;
    }
    lastAlert = now;
    services.notify(
        QStringLiteral("Fenwhirl"),
        localized(u"Ton Mac chauffe : %@ degrés.", {QString::number(NumberFormat::truncated(*celsius))}));
}

void Monitor::Private::checkVersion(bool installed) {
    if (!installed) {
        ++helperGeneration;
        versionStamp.reset();
        speaksOurProtocol.reset();
        assign(helperOutdated, false, &Monitor::helperOutdatedChanged);
        return;
    }
    const auto stamp = services.helper.fileStamp ? services.helper.fileStamp() : std::nullopt;
    if (stamp && stamp != versionStamp) {
        speaksOurProtocol.reset(); // the file was replaced
    }
    if (isReadingVersion || (stamp && stamp == versionStamp)) {
        return;
    }
    // Not on the main thread, because a helper that hangs must not freeze the window; and not on the poll
    // queue, because it must not stop the readings either.
    isReadingVersion = true;
    runInBackground([this, stamp, era = helperGeneration, read = services.helper.installedVersion,
                     reply = inbox.sender()] {
        const auto version = read();
        const bool outdated = version != HelperClient::expectedVersion;
        // A helper that could not be started, perhaps for want of memory, is asked again by the next tick.
        const bool hasAnswered = version != HelperInstallation::launchFailureText;
        reply.post([this, stamp, era, outdated, hasAnswered] {
            mainThread.assertIsCurrent();
            isReadingVersion = false;
            if (era == helperGeneration) {
                versionStamp = hasAnswered ? stamp : std::nullopt;
                speaksOurProtocol = hasAnswered ? std::optional(!outdated) : std::nullopt;
                mailbox->put(request());
                assign(helperOutdated, outdated, &Monitor::helperOutdatedChanged);
            }
        });
    });
}

} // namespace Fenwhirl
