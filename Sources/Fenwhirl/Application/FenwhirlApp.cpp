#include "Fenwhirl/Application/FenwhirlApp.h"

#include "Fenwhirl/Application/AppDelegate.h"
#include "Fenwhirl/Application/ApplicationIconProvider.h"
#include "Fenwhirl/Application/RealServices.h"
#include "Fenwhirl/Application/WindowControl.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/LocalizerTranslator.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"
#include "Fenwhirl/Platform/Desktop/FileDialogs.h"
#include "Fenwhirl/Platform/Desktop/SessionEnd.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"
#include "Fenwhirl/Platform/Desktop/StateFolder.h"
#include "Fenwhirl/Platform/Desktop/StatusItem.h"
#include "Fenwhirl/Platform/Desktop/TerminationSignals.h"
#include "Fenwhirl/Platform/SessionPresence.h"
#include "Fenwhirl/Platform/SleepWatch.h"
#include "Fenwhirl/Platform/SystemName.h"
#include "Fenwhirl/Processes/ProcessMonitor.h"
#include "Fenwhirl/Updates/UpdateChecker.h"
#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include <QDesktopServices>

#include <csignal>
#include <string_view>

namespace {

QString languageCode() {
    const std::string_view code = rawValue(Localizer::resolved());
    return QString::fromLatin1(code.data(), static_cast<qsizetype>(code.size()));
}

ViewServices viewServices() {
    return {
        .computerName = computerName(),
        .notify = showNotification,
        .saveReport =
            [](const QString& text) {
                saveReport(
                    text, [](const QString& name) { return askSavePath(name, languageCode()); },
                    revealInFileBrowser);
            },
        .applicationIcon = ApplicationIconProvider::sourceFor,
        .openMain = {},
        .quit = [] { QCoreApplication::quit(); },
    };
}

UpdateServices updateServices(PreferencesStore& preferences, WindowControl& windows) {
    UpdateServices services = systemUpdateServices();
    services.preferences = &preferences;
    services.languageCode = languageCode;
    services.show = [&windows](const UpdateAlert& alert) {
        windows.showAlert({alert.title, alert.body, alert.download, alert.later},
                          [page = alert.page] { QDesktopServices::openUrl(page); });
    };
    return services;
}

void drawStatusSymbol(QPainter& painter, const QRectF& bounds, const QColor& color) {
    Fenwhirl::drawSymbol(painter, QStringLiteral("fan"), bounds, color);
}

} // namespace

int fenwhirl_app_main(int argc, char** argv) {
    // Whoever started us may have ignored it, and then no child's status could be waited for.
    static_cast<void>(std::signal(SIGCHLD, SIG_DFL));
    QCoreApplication::setApplicationName(QStringLiteral("Fenwhirl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(FENWHIRL_VERSION));
    const std::unique_ptr<QGuiApplication> application = makeDesktopApplication(argc, argv);

    const std::unique_ptr<SingleInstance> instance = SingleInstance::create();
    if (!instance->becomeFirst()) {
        instance->raiseFirst();
        return 0;
    }

    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, application.get(), &QCoreApplication::quit);

    LocalizerTranslator translator;
    QCoreApplication::installTranslator(&translator);

    RealServices real;
    Monitor monitor(real.monitorServices());
    ProcessMonitor processes(systemProcessServices());
    const std::unique_ptr<SystemAppearance> appearance = SystemAppearance::create();
    const std::unique_ptr<StatusItem> statusItem = StatusItem::create(drawStatusSymbol);
    WindowControl windows(monitor, processes, *appearance, viewServices());
    windows.rememberPlaceIn(stateFolder() + QStringLiteral("/window.json"));
    UpdateChecker updates(updateServices(real.preferences(), windows));
    AppDelegate delegate(monitor, windows, *statusItem, [&updates] { updates.startIfNeeded(); });
    QObject::connect(instance.get(), &SingleInstance::raiseRequested, &delegate,
                     &AppDelegate::applicationShouldHandleReopen);
    QObject::connect(application.get(), &QCoreApplication::aboutToQuit, &delegate,
                     &AppDelegate::applicationWillTerminate);
    const SessionEnd sessionEnd([&delegate] { delegate.applicationWillTerminate(); });

    const std::unique_ptr<SleepWatch> sleep = SleepWatch::create();
    QObject::connect(sleep.get(), &SleepWatch::goingToSleep, &monitor,
                     [&monitor, &sleep] { monitor.prepareForSleep([&sleep] { sleep->ready(); }); });
    QObject::connect(sleep.get(), &SleepWatch::awake, &monitor, &Monitor::wakeUp);

    // The first poll comes after the first word on who is in front: another user's fans are not touched.
    const std::unique_ptr<SessionPresence> presence = SessionPresence::create();
    const auto tellPresence = [&monitor, &presence] { monitor.setInFront(presence->isInFront()); };
    QObject::connect(presence.get(), &SessionPresence::changed, &monitor, tellPresence);
    tellPresence();
    if (presence->isSettled())
        monitor.start();
    else
        QObject::connect(presence.get(), &SessionPresence::settled, &monitor, &Monitor::start);
    delegate.applicationDidFinishLaunching();
    return QCoreApplication::exec();
}
