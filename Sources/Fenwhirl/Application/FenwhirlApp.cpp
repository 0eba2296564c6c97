#include "Fenwhirl/Application/FenwhirlApp.h"

#include "Fenwhirl/Application/AppDelegate.h"
#include "Fenwhirl/Application/ApplicationIconProvider.h"
#include "Fenwhirl/Application/CommandLine.h"
#include "Fenwhirl/Application/ProgramMenus.h"
#include "Fenwhirl/Application/RealServices.h"
#include "Fenwhirl/Application/SelfCheck/SelfCheckRun.h"
#include "Fenwhirl/Application/ViewEngine.h"
#include "Fenwhirl/Application/WindowControl.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/LocalizerTranslator.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Monitoring/SavedPreferences.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"
#include "Fenwhirl/Platform/Desktop/FileDialogs.h"
#include "Fenwhirl/Platform/Desktop/SessionEnd.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"
#include "Fenwhirl/Platform/Desktop/StateFolder.h"
#include "Fenwhirl/Platform/Desktop/StatusItem.h"
#include "Fenwhirl/Platform/Desktop/TerminationSignals.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"
#include "Fenwhirl/Platform/Session/SessionPresence.h"
#include "Fenwhirl/Platform/Session/SleepWatch.h"
#include "Fenwhirl/Platform/SystemName.h"
#include "Fenwhirl/Processes/ProcessMonitor.h"
#include "Fenwhirl/Updates/UpdateChecker.h"
#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include <QDesktopServices>

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Fenwhirl {

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

[[nodiscard]] bool print(const QString& text, std::FILE* stream) {
    const QByteArray bytes = text.toUtf8();
    return std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream) ==
               static_cast<std::size_t>(bytes.size()) &&
           std::fflush(stream) == 0;
}

QString actionFor(Preset preset) {
    const std::string_view word = rawValue(preset);
    return QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
}

// Makes this process the first instance. Otherwise tells the first what this start was for, and returns the
// exit status of this process.
std::optional<int> exitStatusUnlessFirst(SingleInstance& instance, std::optional<Preset> preset) {
    switch (instance.start(
        [&] { return preset ? instance.notifyFirst(actionFor(*preset)) : instance.raiseFirst(); })) {
    case SingleInstance::Start::first:
        return std::nullopt;
    case SingleInstance::Start::handedOver:
        return EXIT_SUCCESS;
    case SingleInstance::Start::unanswered:
        break;
    }
    static_cast<void>(print(CommandLine::noAnswerMessage(), stderr));
    return EXIT_FAILURE;
}

// Whether this start is the first, and opens the main window with the introduction.
bool opensMainWindow() {
    return !SavedPreferences::load(*openUserPreferences()).didOnboard;
}

void drawStatusSymbol(QPainter& painter, const QRectF& bounds, const QColor& color) {
    drawSymbol(painter, QStringLiteral("fan"), bounds, color);
}

} // namespace

int fenwhirl_app_main(int argc, char** argv) {
    // Our parent may have made us ignore SIGCHLD, and then no child's status could be waited for.
    static_cast<void>(std::signal(SIGCHLD, SIG_DFL));
    // Parsed before anything of Qt is created, so that --version and --help need no display.
    const CommandLine command =
        CommandLine::parse(std::span(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
    switch (command.task) {
    case CommandLine::Task::showVersion:
        return print(CommandLine::version(QStringLiteral(FENWHIRL_VERSION)), stdout) ? EXIT_SUCCESS
                                                                                     : EXIT_FAILURE;
    case CommandLine::Task::showHelp:
        return print(CommandLine::help(), stdout) ? EXIT_SUCCESS : EXIT_FAILURE;
    case CommandLine::Task::selfCheck:
        return runSelfCheck(argc, argv, QStringLiteral(FENWHIRL_VERSION), drawStatusSymbol);
    case CommandLine::Task::complain:
        static_cast<void>(print(command.complaint, stderr));
        return CommandLine::usageStatus;
    case CommandLine::Task::start:
        break;
    }
    QCoreApplication::setApplicationName(QStringLiteral("Fenwhirl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(FENWHIRL_VERSION));
    setTranslationThreshold();
    std::unique_ptr<QGuiApplication> application;
    PreparedViews views; // after the application, so that it is destroyed first
    application = makeDesktopApplication(argc, argv, [&] {
        if (!command.preset && opensMainWindow()) {
            views = prepareMainWindow();
        }
    });

    const std::unique_ptr<SingleInstance> instance = SingleInstance::create();
    if (const std::optional<int> status = exitStatusUnlessFirst(*instance, command.preset)) {
        return *status;
    }
    // Connected before the handler that hands the fans back: a request that arrived during the hand-back would
    // be lost.
    QObject::connect(application.get(), &QCoreApplication::aboutToQuit, instance.get(),
                     &SingleInstance::stopListening);

    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, application.get(), &QCoreApplication::quit);

    continueLoading();
    LocalizerTranslator translator;
    QCoreApplication::installTranslator(&translator);

    RealServices real;
    Monitor monitor(real.monitorServices());
    continueLoading();
    ProcessMonitor processes(systemProcessServices());
    const std::unique_ptr<SystemAppearance> appearance = SystemAppearance::create();
    const std::unique_ptr<StatusItem> statusItem = StatusItem::create(drawStatusSymbol);
    WindowControl windows(monitor, processes, *appearance, viewServices());
    continueLoading();
    windows.usePrepared(std::move(views));
    const std::unique_ptr<MenuBar> menuBar = MenuBar::create();
    const auto showMenus = [&menuBar, &windows] {
        menuBar->show(programMenus({.showPage = [&windows](Page page) { windows.openPage(page); },
                                    .createReport = [&windows] { windows.createReport(); }}));
    };
    QObject::connect(&monitor, &Monitor::languageChanged, &windows, showMenus);
    showMenus();
    windows.rememberPlaceIn(stateFolder() + QStringLiteral("/window.json"));
    UpdateChecker updates(updateServices(real.preferences(), windows));
    AppDelegate delegate(monitor, windows, *statusItem, [&updates] { updates.startIfNeeded(); }, {});
    QObject::connect(instance.get(), &SingleInstance::raiseRequested, &delegate,
                     &AppDelegate::applicationShouldHandleReopen);
    QObject::connect(instance.get(), &SingleInstance::actionRequested, &delegate,
                     [&delegate](const QString& action) {
                         if (const auto preset = presetFromRawValue(action.toStdString())) {
                             delegate.choosePreset(*preset);
                         }
                     });
    QObject::connect(application.get(), &QCoreApplication::aboutToQuit, &delegate,
                     &AppDelegate::applicationWillTerminate);
    const SessionEnd sessionEnd([&instance, &delegate] {
        instance->stopListening();
        delegate.applicationWillTerminate();
    });

    const std::unique_ptr<SleepWatch> sleep = SleepWatch::create();
    QObject::connect(sleep.get(), &SleepWatch::goingToSleep, &monitor,
                     [&monitor, &sleep] { monitor.prepareForSleep([&sleep] { sleep->ready(); }); });
    QObject::connect(sleep.get(), &SleepWatch::awake, &monitor, &Monitor::wakeUp);

    // Polling starts only after it is known which session is in front, so that another user's fans are not touched, and
    // after the first picture: a first look at the controller reads all its keys, which would delay the window.
    const std::unique_ptr<SessionPresence> presence = SessionPresence::create();
    const auto tellPresence = [&monitor, &presence] { monitor.setInFront(presence->isInFront()); };
    QObject::connect(presence.get(), &SessionPresence::changed, &monitor, tellPresence);
    tellPresence();
    QObject::connect(&delegate, &AppDelegate::launched, &monitor, [&monitor, &presence] {
        if (presence->isSettled()) {
            monitor.start();
        } else {
            QObject::connect(presence.get(), &SessionPresence::settled, &monitor, &Monitor::start);
        }
    });
    if (command.preset) {
        delegate.choosePreset(*command.preset);
    }
    delegate.applicationDidFinishLaunching(command.preset ? AppDelegate::Start::hidden
                                                          : AppDelegate::Start::usual);
    return QCoreApplication::exec();
}

} // namespace Fenwhirl
