// Everything around the polls: installing and removing the helper, sleep, the login item, the report, and the
// end of the process.

#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Monitoring/DiagnosticReport.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Monitoring/MonitorPrivate.h"
#include "Fenwhirl/Platform/Toolkit/BackgroundTask.h"

#include <future>
#include <string>
#include <thread>
#include <vector>

namespace Fenwhirl {

void Monitor::installHelper() {
    Private& d = state();
    if (d.isInstalling) {
        return;
    }
    d.assign(d.isInstalling, true, &Monitor::isInstallingChanged);
    runInBackground([&d, helper = d.services.helper, reply = d.inbox.sender()] {
        const bool installed = helper.install();
        const bool outdated = installed && helper.installedVersion() != HelperClient::expectedVersion;
        const bool isThere = helper.isInstalled(); // an older one, if its update was cancelled
        reply.post([&d, installed, outdated, isThere] {
            mainThread.assertIsCurrent();
            ++d.helperGeneration;
            d.versionStamp.reset();
            d.isHelperThere = isThere;
            d.speaksOurProtocol = installed ? std::optional(!outdated) : std::nullopt;
            d.assign(d.isInstalling, false, &Monitor::isInstallingChanged);
            d.assign(d.helperInstalled, installed, &Monitor::helperInstalledChanged);
            d.assign(d.helperOutdated, outdated, &Monitor::helperOutdatedChanged);
            d.assign(d.controlError,
                     installed ? std::nullopt
                               : std::optional(TextKey(u"L'activation a été annulée ou a échoué.")),
                     &Monitor::controlErrorChanged);
            d.publishHandBackState();
        });
    });
}

void Monitor::uninstallHelper() {
    Private& d = state();
    // Until this is over, polls send none of the user's speeds: a fan that was set again while the password
    // is being typed would keep that speed with no helper left to hand it back. Heat protection and the
    // emergency rule stay active.
    ++d.removalsRunning;
    d.publishHandBackState();
    const auto remove = [&d, helper = d.services.helper, reply = d.inbox.sender()] {
        // Fans that heat protection drives in the meantime must go back even after the helper is gone.
        const auto kept = helper.keep ? helper.keep() : nullptr;
        const bool removed = helper.runAsAdministrator(HelperClient::removalCommand());
        const bool installed = helper.isInstalled();
        reply.post([&d, kept, removed, installed] {
            mainThread.assertIsCurrent();
            --d.removalsRunning;
            d.isHelperThere = installed;
            if (!installed && kept) {
                d.queue->async([poller = d.poller, kept] { poller->handBackWithRemovedHelper(kept); });
            }
            d.assign(d.helperInstalled, installed, &Monitor::helperInstalledChanged);
            if (!removed) {
                d.assign(d.controlError, std::optional(TextKey(u"La désactivation a échoué.")),
                         &Monitor::controlErrorChanged);
            }
            d.publishHandBackState();
        });
    };
    // The fans are handed back on the poll queue, and thus after the speeds of a poll in progress. The
    // password dialog runs in the background, because it must not block that queue.
    d.queue->async([poller = d.poller, remove] {
        poller->handBackEverything();
        runInBackground(remove);
    });
}

void Monitor::resetToAutomatic() {
    Private& d = state();
    apply(Preset::automatic);
    // The new count keeps a poll in progress from sending further speeds; asyncNext runs
    // before any poll that waits.
    ++*d.resets;
    d.publishHandBackState();
    d.queue->asyncNext([isInstalled = d.services.helper.isInstalled, poller = d.poller] {
        if (isInstalled()) {
            poller->handBackEverything();
        }
    });
}

void Monitor::prepareForSleep(std::function<void()> done) {
    Private& d = state();
    d.isGoingToSleep = true;
    // The new count keeps a poll in progress from sending further speeds; asyncNext runs
    // before any poll that waits.
    ++*d.resets;
    d.publishHandBackState();
    d.queue->asyncNext(
        [run = d.services.helper.run, poller = d.poller, reply = d.inbox.sender(), done = std::move(done)] {
            poller->handBackOurs(run);
            reply.post(done);
        });
}

void Monitor::wakeUp() {
    Private& d = state();
    if (std::exchange(d.isGoingToSleep, false)) {
        d.publishHandBackState();
        tick();
    }
}

bool Monitor::launchAtLogin() const {
    return state().services.loginItem.isEnabled();
}

void Monitor::setLaunchAtLogin(bool on) {
    Private& d = state();
    if (!d.services.loginItem.setEnabled(on)) {
        d.assign(d.controlError, std::optional(TextKey(u"Impossible de changer le démarrage automatique.")),
                 &Monitor::controlErrorChanged);
    }
    Q_EMIT launchAtLoginChanged(); // after a failure, too: a switch that has moved must move back
}

void Monitor::makeDiagnosticReport(bool withFanTest, std::function<void(const QString& text)> completion) {
    Private& d = state();
    runInBackground([&d, services = d.services, stop = d.stop, reply = d.inbox.sender(), withFanTest,
                     completion = std::move(completion)] {
        const QString text = QString::fromStdString(diagnosticReportText(services, withFanTest, *stop));
        reply.post([&d, withFanTest, text, completion] {
            mainThread.assertIsCurrent();
            if (withFanTest) { // it may have left a fan manual that was refused its way back
                d.queue->async([poller = d.poller] { poller->checkModesAgain(); });
            }
            completion(text);
        });
    });
}

void Monitor::restoreAutomaticBlocking() {
    Private& d = state();
    if (std::exchange(d.hasRestored, true)) {
        return;
    }
    *d.stop = true;

    // The queue finishes its work first: a speed that is being sent must not arrive after
    // the fans were handed back.
    const auto drained = std::make_shared<std::promise<void>>();
    d.queue->async([drained] { drained->set_value(); });
    d.isStuck = drained->get_future().wait_for(d.services.drainTimeout) != std::future_status::ready;

    d.helperInstalled = d.services.helper.isInstalled();
    d.isHelperThere = d.helperInstalled;
    d.custody->setIntent(d.intent());
    if (!d.isStuck && d.removalsRunning == 0) {
        d.sendUnsentSpeeds();
    }
    const bool isDone = d.handBackAtTheEnd();
    if (isDone && !d.isStuck && d.services.handedBack) {
        d.services.handedBack();
    }
}

void Monitor::Private::sendUnsentSpeeds() {
    const std::vector<FanRequest> fanRequests = custody->unsentSpeeds();
    if (fanRequests.empty()) {
        return;
    }
    if (!speaksOurProtocol) {
        speaksOurProtocol = services.helper.installedVersion() == HelperClient::expectedVersion;
    }
    if (!*speaksOurProtocol) {
        return;
    }
    for (const FanRequest& request : fanRequests) {
        SentTarget target{.desired = request.desired, .at = services.now(), .succeeded = false};
        custody->setSent(request.index, target);
        target.succeeded = services.helper.run(
            {"set", std::to_string(request.index), std::to_string(*request.desired.manualRPM)});
        custody->setSent(request.index, target);
    }
}

bool Monitor::Private::handBack(const HelperCommand& command) {
    if (!services.helper.run(command)) {
        return false;
    }
    bool isDone = true;
    for (const int index : custody->ours()) {
        if (command.size() > 1 && command[1] != std::to_string(index)) {
            continue;
        }
        const SentTarget target{.desired = {}, .at = services.now(), .succeeded = hasGoneBack(index)};
        custody->setSent(index, target);
        isDone = isDone && target.succeeded;
    }
    return isDone;
}

bool Monitor::Private::hasGoneBack(int index) const {
    if (isStuck) {
        return true; // the queue cannot be asked, and the guard continues in any case
    }
    const auto answer = std::make_shared<std::promise<bool>>();
    auto answered = answer->get_future();
    queue->async([answer, index, smcPoller = poller] { answer->set_value(smcPoller->hasGoneBack(index)); });
    return answered.wait_for(services.drainTimeout) == std::future_status::ready && answered.get();
}

bool Monitor::Private::handBackAtTheEnd() {
    constexpr std::chrono::milliseconds pause{250};
    const auto end = std::chrono::steady_clock::now() + services.longestRetry;
    auto commands = HandBackRule::commands(custody->handBack());
    for (;;) {
        std::erase_if(commands, [this](const auto& command) {
            mainThread.assertIsCurrent();
            return handBack(command);
        });
        if (commands.empty() || std::chrono::steady_clock::now() >= end || !services.helper.isInstalled()) {
            return commands.empty();
        }
        std::this_thread::sleep_for(pause);
    }
}

} // namespace Fenwhirl
