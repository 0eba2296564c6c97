#include "Fenwhirl/Application/RealServices.h"

#include "Fenwhirl/HelperClient/EmergencyHandBack.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/HelperClient/RetainedHelper.h"
#include "Fenwhirl/Localization/DrawnText.h"
#include "Fenwhirl/Platform/Activity.h"
#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/Notifier.h"
#include "Fenwhirl/Platform/ProcessScope.h"
#include "Fenwhirl/Platform/Toolkit/Clock.h"
#include "Fenwhirl/Platform/Toolkit/FileStatus.h"

namespace Fenwhirl {

namespace {

// The time at which the helper's file was last modified, as a single number.
std::optional<std::int64_t> helperFileStamp() {
    const auto status = fileStatus(std::string(HelperClient::helperPath));
    if (!status) {
        return std::nullopt;
    }
    constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;
    // Unsigned, because a hostile file may have any time, and only equality matters.
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(status->modified.seconds) *
                                         nanosecondsPerSecond +
                                     static_cast<std::uint64_t>(status->modified.nanoseconds));
}

} // namespace

RealServices::RealServices()
    : preferences_(openUserPreferences())
    , emergency_(EmergencyHandBack::forThisInstallation([](pid_t guard) {
        ProcessScope::separate(guard, QStringLiteral("fenwhirl-guard"), QStringLiteral("Fenwhirl's guard"));
    })) {}

RealServices::~RealServices() = default;

MonitorServices RealServices::monitorServices() {
    return {
        .openSMC = SMC::open,
        .helper = {.isInstalled = HelperClient::isInstalled,
                   .installedVersion = HelperClient::installedVersion,
                   .run = HelperClient::run,
                   .output = HelperClient::output,
                   .runAsAdministrator = HelperClient::runAsAdministrator,
                   .install = HelperClient::install,
                   .keep =
                       [] {
                           const auto kept =
                               std::make_shared<const RetainedHelper>(std::string(HelperClient::helperPath));
                           return [kept](const auto& arguments) { return kept->run(arguments); };
                       },
                   .fileStamp = helperFileStamp},
        .now = continuousTime,
        .preferences = preferences_.get(),
        .notify = showNotification,
        .loginItem = {.isEnabled = LoginItem::isEnabled, .setEnabled = LoginItem::setEnabled},
        .announceHandBack = [this](const HandBack& handBack) { emergency_->update(handBack); },
        .pollFinished = [this] { emergency_->keepAlive(); },
        .handedBack = [this] { emergency_->finish(); },
        .needsTimelySchedulingChanged =
            [this](bool needsTimelyScheduling) {
                activity_ = needsTimelyScheduling
                                ? std::make_unique<Activity>(QStringLiteral("Fenwhirl controls the fans"))
                                : nullptr;
            },
    };
}

void showNotification(const QString& title, const QString& message) {
    Notifier::send(drawnText(title), drawnText(message));
}

} // namespace Fenwhirl
