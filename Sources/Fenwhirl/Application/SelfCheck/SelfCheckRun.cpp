#include "Fenwhirl/Application/SelfCheck/SelfCheckRun.h"

#include "Fenwhirl/Application/SelfCheck/ControllerChecks.h"
#include "Fenwhirl/Application/SelfCheck/HelperChecks.h"
#include "Fenwhirl/Application/SelfCheck/InstallationChecks.h"
#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"
#include "Fenwhirl/Application/SelfCheck/UserChecks.h"
#include "Fenwhirl/Application/SelfCheck/WindowChecks.h"
#include "Fenwhirl/HelperClient/EmergencyHandBack.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Localization/LocalizerTranslator.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"
#include "Fenwhirl/Platform/Desktop/SystemChecks.h"
#include "Fenwhirl/Platform/Desktop/TerminationSignals.h"
#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/ProcessScope.h"

#include <QSysInfo>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <unistd.h>

namespace Fenwhirl {

namespace {

[[nodiscard]] bool printLine(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    return std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout) ==
               static_cast<std::size_t>(bytes.size()) &&
           std::fflush(stdout) == 0;
}

// What the table was made on.
QString heading(const QString& version) {
    return QStringLiteral("Fenwhirl %1 self-check, %2 (%3), Qt %4")
        .arg(version, QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
             QString::fromLatin1(qVersion()));
}

// Acts for the fan test when this process cannot; made only when a fan is about to be driven.
class Emergency {
public:
    void announce(const HandBack& handBack) {
        if (!handBack_) {
            handBack_ = EmergencyHandBack::forThisInstallation([](pid_t guard) {
                ProcessScope::separate(guard, QStringLiteral("fenwhirl-guard"),
                                       QStringLiteral("Fenwhirl's guard"));
            });
        }
        handBack_->update(handBack);
    }

    void keepAlive() const {
        if (handBack_) {
            handBack_->keepAlive();
        }
    }

    void finish() const {
        if (handBack_) {
            handBack_->finish();
        }
    }

private:
    std::unique_ptr<EmergencyHandBack> handBack_;
};

HelperChecks::Services helperServices(Emergency& emergency) {
    const std::string path(HelperClient::helperPath);
    return {.path = path,
            .status = [path] { return fileStatus(path); },
            .version = HelperClient::installedVersion,
            .run = HelperClient::run,
            .openSMC = SMC::open,
            .becomeOnlyInstance = []() -> std::shared_ptr<void> {
                std::shared_ptr<SingleInstance> instance = SingleInstance::create();
                if (!instance->becomeFirst()) {
                    return nullptr;
                }
                instance->stopListening(); // a start in the meantime waits for the end of the check
                return instance;
            },
            .announce = [&emergency](const HandBack& handBack) { emergency.announce(handBack); },
            .keepAlive = [&emergency] { emergency.keepAlive(); },
            .finish = [&emergency] { emergency.finish(); },
            .wait = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }};
}

UserCheckServices userServices() {
    return {.openPreferences = openTrialPreferences,
            .removePreferences = removeTrialPreferences,
            .loginItemPath = LoginItem::path().toStdString(),
            .isLoginItemEnabled = LoginItem::isEnabled,
            .setLoginItemEnabled = LoginItem::setEnabled,
            .notify = Notifier::deliver};
}

std::vector<SelfCheck> systemChecks() {
    return {{QStringLiteral("signature"), [] { return SystemChecks::signature(); }},
            {QStringLiteral("quarantine"), [] { return SystemChecks::quarantine(); }},
            {QStringLiteral("translocation"), SystemChecks::translocation},
            {QStringLiteral("activation policy"), SystemChecks::activationPolicy},
            {QStringLiteral("Metal device"), SystemChecks::graphicsDevice}};
}

AppLanguage chosenLanguage() {
    const QString word = openUserPreferences()->text(QStringLiteral("language")).value_or(QString());
    return appLanguageFromRawValue(word.toStdString()).value_or(AppLanguage::automatic);
}

void append(std::vector<SelfCheck>& checks, std::vector<SelfCheck> more) {
    checks.insert(checks.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

} // namespace

int runSelfCheck(int& argc, char** argv, const QString& version, const SymbolPainter& symbol) {
    // A reader that goes away ends the table, not the process in the middle of a check.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    SystemChecks::prepareScreen();
    QCoreApplication::setApplicationName(QStringLiteral("Fenwhirl"));
    QCoreApplication::setApplicationVersion(version);
    const std::unique_ptr<QGuiApplication> application = makeDesktopApplication(argc, argv);
    const TerminationSignals signals;
    bool shouldEnd = false;
    QObject::connect(&signals, &TerminationSignals::received, application.get(),
                     [&shouldEnd] { shouldEnd = true; });

    LocalizerTranslator translator;
    QCoreApplication::installTranslator(&translator);

    Emergency emergency;
    ControllerChecks controller(openSystemTransport, geteuid() == 0);
    HelperChecks helper(helperServices(emergency));
    WindowChecks window(chosenLanguage(), symbol);
    std::vector<SelfCheck> checks = installationChecks(Installation::present());
    append(checks, systemChecks());
    append(checks, window.checks());
    append(checks, controller.checks());
    append(checks, helper.checks());
    append(checks, userChecks(userServices()));

    if (!printLine(heading(version))) {
        return EXIT_FAILURE;
    }
    const SelfCheckCounts counts = runSelfChecks(checks, printLine, [&shouldEnd] {
        QCoreApplication::processEvents();
        return shouldEnd;
    });
    return printLine(selfCheckSummary(counts)) && counts.isGood() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace Fenwhirl
