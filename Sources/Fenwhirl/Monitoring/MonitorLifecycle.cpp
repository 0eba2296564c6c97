// What happens around the polls: installing and removing the helper, the login item, the report, the end.

#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Monitoring/DiagnosticReport.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Monitoring/MonitorPrivate.h"
#include "Fenwhirl/Platform/BackgroundTask.h"

#include <future>

namespace {

// No double quote and no backslash, as HelperClient::runAsAdministrator asks for.
std::string removalCommand() {
    return "rm -f '" + std::string(HelperClient::helperPath) + "'";
}

} // namespace

void Monitor::installHelper() {
    Private& d = state();
    if (d.isInstalling) {
        return;
    }
    d.assign(d.isInstalling, true, &Monitor::isInstallingChanged);
    runInBackground([&d, helper = d.services.helper, reply = d.inbox.sender()] {
        const bool installed = helper.install();
        const bool outdated = installed && helper.installedVersion() != HelperClient::expectedVersion;
        reply.post([&d, installed, outdated] {
            mainThread.assertIsCurrent();
            ++d.helperEra;
            d.versionStamp.reset();
            d.assign(d.isInstalling, false, &Monitor::isInstallingChanged);
            d.assign(d.helperInstalled, installed, &Monitor::helperInstalledChanged);
            d.assign(d.helperOutdated, outdated, &Monitor::helperOutdatedChanged);
            d.assign(d.controlError,
                     installed ? std::nullopt
                               : std::optional(TextKey(u"L'activation a été annulée ou a échoué.")),
                     &Monitor::controlErrorChanged);
            d.announceObligations();
        });
    });
}

void Monitor::uninstallHelper() {
    Private& d = state();
    // Polls send no speeds until this is over: a fan that was set again while the password is being typed
    // would stay at that speed with no helper left to hand it back.
    ++d.removalsRunning;
    const auto remove = [&d, helper = d.services.helper, reply = d.inbox.sender()] {
        const bool removed = helper.runAsAdministrator(removalCommand());
        const bool installed = helper.isInstalled();
        reply.post([&d, removed, installed] {
            mainThread.assertIsCurrent();
            --d.removalsRunning;
            d.assign(d.helperInstalled, installed, &Monitor::helperInstalledChanged);
            if (!removed) {
                d.assign(d.controlError, std::optional(TextKey(u"La désactivation a échoué.")),
                         &Monitor::controlErrorChanged);
            }
            d.announceObligations();
        });
    };
    // On the poll queue first, so that it comes after the speeds of a poll that is under way; the password
    // must not hold up that queue.
    d.queue->async([run = d.services.helper.run, remove] {
        static_cast<void>(run({"auto"}));
        runInBackground(remove);
    });
}

void Monitor::resetToAutomatic() {
    Private& d = state();
    apply(Preset::automatic);
    d.queue->async([helper = d.services.helper] {
        if (helper.isInstalled()) {
            static_cast<void>(helper.run({"auto"}));
        }
    });
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
    Q_EMIT launchAtLoginChanged(); // also after a failure: a switch that was already moved must move back
}

void Monitor::makeDiagnosticReport(bool withFanTest, std::function<void(const QString& text)> completion) {
    Private& d = state();
    runInBackground([services = d.services, stop = d.stop, reply = d.inbox.sender(), withFanTest,
                     completion = std::move(completion)] {
        const QString text = QString::fromStdString(diagnosticReportText(services, withFanTest, *stop));
        reply.post([text, completion] { completion(text); });
    });
}

void Monitor::restoreAutomaticBlocking() {
    Private& d = state();
    if (std::exchange(d.hasRestored, true)) {
        return;
    }
    *d.stop = true;
    d.timer.stop();

    // Whatever the queue still does ends first: a speed that is being sent must not arrive after the fans
    // were handed back. Its last act is to name the fans that it read: those of a poll that is not published
    // yet may be others than the published ones, and both are handed back.
    const auto drained = std::make_shared<std::promise<std::vector<int>>>();
    auto fansRead = drained->get_future();
    d.queue->async([drained, poller = d.poller] { drained->set_value(poller->fansLastRead()); });
    d.isStuck = fansRead.wait_for(d.services.longestDrain) != std::future_status::ready;

    std::vector<int> fans = d.publishedFans();
    if (!d.isStuck) {
        const std::vector<int> unpublished = fansRead.get();
        fans.insert(fans.end(), unpublished.begin(), unpublished.end());
    }
    const auto handBack = d.handBack(d.services.helper.isInstalled(), fans);
    for (const auto& command : HandBackRule::commands(handBack)) {
        static_cast<void>(d.services.helper.run(command));
    }
    if (d.services.handedBack) {
        d.services.handedBack();
    }
}

std::vector<int> Monitor::Private::publishedFans() const {
    std::vector<int> indices;
    indices.reserve(static_cast<std::size_t>(fans.size()));
    for (const FanState& fan : fans) {
        indices.push_back(fan.id);
    }
    return indices;
}

HandBack Monitor::Private::handBack(bool isHelperInstalled, std::span<const int> fansRead) const {
    std::vector<HandBackRule::ConfiguredFan> configured;
    configured.reserve(saved.settings.size());
    for (const auto& [index, setting] : saved.settings) {
        configured.push_back({.index = index, .isConstant = setting.mode == FanModeKind::constant});
    }
    return HandBackRule::decide(isHelperInstalled, fansRead, configured);
}
