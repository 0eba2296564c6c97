#include "Fenwhirl/Application/SelfCheck/HelperChecks.h"

#include "Fenwhirl/Application/SelfCheck/ControllerChecks.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/HelperClient/HelperInstallation.h"
#include "Fenwhirl/Monitoring/PollDecision.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Fenwhirl {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t root = 0;
constexpr std::uint32_t installedPermissions = 04755;
// How much faster the fan is to turn than it does: a part of its range.
constexpr double addedSpeed = 0.1;
constexpr double largestDeviation = 1; // rpm, from what controllers store
// How long the controller may take to show what was written.
constexpr int readAttempts = 40;
constexpr std::chrono::milliseconds betweenReads(50);
// How often a hand-back that was refused is sent again.
constexpr int handBackAttempts = 5;
constexpr std::chrono::milliseconds betweenAttempts(400);
// The user's own alert threshold may be lower: a fan that is driven to its maximum by it is not automatic.
constexpr double alertCelsius = 90;

QString octal(std::uint32_t permissions) {
    return QString::number(permissions, 8).rightJustified(4, u'0');
}

QString absentHelper() {
    return QStringLiteral("there is no helper: fan control was not activated");
}

std::optional<std::int64_t> speedToAskFor(const FanReading& fan) {
    const double now = std::max({fan.rpm, fan.targetRPM, fan.minRPM});
    const double wanted = std::min(fan.maxRPM, now + addedSpeed * (fan.maxRPM - fan.minRPM));
    constexpr double fastest = 100'000;
    if (!fan.isMaximumKnown || !std::isfinite(wanted) || wanted < 1 || wanted > fastest) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(wanted);
}

// Why no fan may be driven by hand now.
std::optional<QString> forbiddenByRules(SMC& smc, const std::vector<FanReading>& fans) {
    const std::vector<TemperatureReading> temperatures = smc.readTemperatures(smc.discoverTemperatureKeys());
    const FanSettings noSettings;
    const PollDecision decision = decide({.fans = fans,
                                          .temperatures = temperatures,
                                          .settings = noSettings,
                                          .protect = true,
                                          .protectAt = alertCelsius},
                                         false);
    if (!decision.primaryCelsius) {
        return QStringLiteral("no temperature can be read");
    }
    if (decision.forbidsManualControl || decision.boosting) {
        return QStringLiteral("the Mac is too hot (%1 °C)").arg(*decision.primaryCelsius, 0, 'f', 1);
    }
    return std::nullopt;
}

} // namespace

HelperChecks::HelperChecks(Services services) : services_(std::move(services)), status_(services_.status()) {}

std::vector<SelfCheck> HelperChecks::checks() {
    const auto ofFile = [this](const QString& name, CheckResult (HelperChecks::*check)() const) {
        return SelfCheck{
            name, [this, check] { return status_ ? (this->*check)() : CheckResult::skip(absentHelper()); }};
    };
    return {ofFile(QStringLiteral("helper present"), &HelperChecks::present),
            ofFile(QStringLiteral("helper owner"), &HelperChecks::owner),
            ofFile(QStringLiteral("helper mode"), &HelperChecks::mode),
            {QStringLiteral("helper version"), [this] { return version(); }},
            {QStringLiteral("helper set"), [this] { return set(); }},
            {QStringLiteral("helper auto"), [this] { return handedBack(); }},
            {QStringLiteral("fans as before"), [this] { return asBefore(); }}};
}

CheckResult HelperChecks::present() const {
    const QString path = QString::fromStdString(services_.path);
    return status_->kind == FileStatus::Kind::regular
               ? CheckResult::pass(path)
               : CheckResult::fail(path + QStringLiteral(" is not a regular file"));
}

CheckResult HelperChecks::owner() const {
    return status_->owner == root
               ? CheckResult::pass(QStringLiteral("root"))
               : CheckResult::fail(QStringLiteral("user %1 instead of root").arg(status_->owner));
}

CheckResult HelperChecks::mode() const {
    return status_->permissions == installedPermissions
               ? CheckResult::pass(octal(status_->permissions))
               : CheckResult::fail(QStringLiteral("%1 instead of %2")
                                       .arg(octal(status_->permissions), octal(installedPermissions)));
}

CheckResult HelperChecks::version() {
    if (!status_) {
        return CheckResult::skip(absentHelper());
    }
    if (status_->kind != FileStatus::Kind::regular || status_->owner != root || !status_->isSetUserID()) {
        return CheckResult::skip(QStringLiteral("this file cannot be the helper, and is not run"));
    }
    const auto begin = Clock::now();
    const std::string answer = services_.version().value_or(std::string());
    const QString time = millisecondsText(Clock::now() - begin);
    if (answer == HelperInstallation::launchFailureText) {
        return CheckResult::fail(QStringLiteral("the helper cannot be started"));
    }
    const QString expected = QString::fromLatin1(
        HelperClient::expectedVersion.data(), static_cast<qsizetype>(HelperClient::expectedVersion.size()));
    if (answer != HelperClient::expectedVersion) {
        return CheckResult::fail(QStringLiteral("answered \"%1\" instead of \"%2\"")
                                     .arg(QString::fromStdString(answer), expected));
    }
    isUsable_ = status_->permissions == installedPermissions;
    return CheckResult::pass(QStringLiteral("%1, in %2").arg(expected, time));
}

CheckResult HelperChecks::set() {
    drive_.leftOut = driveOneFan();
    return drive_.leftOut ? CheckResult::skip(*drive_.leftOut) : drive_.set;
}

CheckResult HelperChecks::handedBack() const {
    return drive_.leftOut ? CheckResult::skip(QStringLiteral("no fan was driven")) : drive_.handedBack;
}

CheckResult HelperChecks::asBefore() const {
    if (drive_.leftOut) {
        return CheckResult::skip(QStringLiteral("no fan was driven"));
    }
    return drive_.modesBefore == drive_.modesAfter
               ? CheckResult::pass(QStringLiteral("every fan is in the mode that it was in"))
               : CheckResult::fail(QStringLiteral("the modes of the fans differ"));
}

std::optional<QString> HelperChecks::driveOneFan() {
    if (!status_) {
        return absentHelper();
    }
    if (!isUsable_) {
        return QStringLiteral("the helper is not installed as it has to be");
    }
    const std::unique_ptr<SMC> smc = services_.openSMC();
    if (!smc) {
        return QStringLiteral("the SMC could not be opened");
    }
    if (usableFanCount(*smc).value_or(0) == 0) {
        return QStringLiteral("there is no fan");
    }
    const std::vector<FanReading> fans = smc->readFans();
    if (auto reason = forbiddenByRules(*smc, fans)) {
        return reason;
    }
    const std::shared_ptr<void> onlyInstance = services_.becomeOnlyInstance();
    if (!onlyInstance) {
        return QStringLiteral("Fenwhirl is running and may drive the fans: quit it first");
    }
    drive_.modesBefore = smc->fanModes();
    for (const FanReading& fan : fans) {
        const auto mode = drive_.modesBefore.find(fan.index);
        const auto rpm = speedToAskFor(fan);
        if (mode != drive_.modesBefore.end() && !mode->second && rpm) {
            drive(*smc, fan, *rpm);
            drive_.modesAfter = smc->fanModes();
            return std::nullopt;
        }
    }
    return QStringLiteral("no fan is automatic and tells its limits; the others are left as they are");
}

void HelperChecks::drive(SMC& smc, const FanReading& fan, std::int64_t rpm) {
    const std::string index = std::to_string(fan.index);
    const QString name = QStringLiteral("fan %1").arg(fan.index);
    const auto isManual = [&] {
        const auto modes = smc.fanModes();
        const auto mode = modes.find(fan.index);
        return mode == modes.end() ? std::nullopt : std::optional(mode->second);
    };
    const auto target = [&] { return smc.readValue("F" + index + "Tg"); };

    services_.announce({.scope = HandBack::Scope::indices, .indices = {fan.index}});
    services_.keepAlive();
    auto begin = Clock::now();
    const bool wasAccepted = services_.run({"set", index, std::to_string(rpm)});
    const auto isAsAsked = [&] {
        const auto shown = target();
        return isManual() == true && shown && std::abs(*shown - static_cast<double>(rpm)) <= largestDeviation;
    };
    if (!wasAccepted) {
        drive_.set = CheckResult::fail(QStringLiteral("%1 refused %2 rpm").arg(name).arg(rpm));
    } else if (becomesTrue(isAsAsked)) {
        drive_.set = CheckResult::pass(QStringLiteral("%1 at %2 rpm, read back after %3")
                                           .arg(name)
                                           .arg(rpm)
                                           .arg(millisecondsText(Clock::now() - begin)));
    } else {
        const auto shown = target();
        drive_.set = CheckResult::fail(
            QStringLiteral("%1 accepted %2 rpm, but its mode reads %3 and its target %4")
                .arg(name, QString::number(rpm),
                     isManual() == true ? QStringLiteral("manual") : QStringLiteral("automatic"),
                     shown ? QString::number(*shown, 'f', 0) : QStringLiteral("nothing")));
    }

    // Whatever came of that: it may have been carried out in part.
    services_.keepAlive();
    begin = Clock::now();
    bool wasHandedBack = services_.run({"auto", index});
    for (int attempt = 1; !wasHandedBack && attempt < handBackAttempts; ++attempt) {
        services_.wait(betweenAttempts);
        services_.keepAlive();
        wasHandedBack = services_.run({"auto", index});
    }
    const bool isAutomatic = becomesTrue([&] { return isManual() == false; });
    const QString time = millisecondsText(Clock::now() - begin);
    if (isAutomatic) {
        services_.finish();
    }
    if (!isAutomatic) {
        drive_.handedBack = CheckResult::fail(name + QStringLiteral(" is not automatic; the guard goes on"));
    } else if (!wasHandedBack) {
        drive_.handedBack = CheckResult::fail(name + QStringLiteral(" refused, but is automatic"));
    } else {
        drive_.handedBack =
            CheckResult::pass(QStringLiteral("%1 automatic, read back after %2").arg(name, time));
    }
}

bool HelperChecks::becomesTrue(const std::function<bool()>& question) const {
    for (int attempt = 0; attempt < readAttempts; ++attempt) {
        if (question()) {
            return true;
        }
        services_.wait(betweenReads);
    }
    return false;
}

} // namespace Fenwhirl
