#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QQuickWindow>
#include <QSessionManager>

#include <dlfcn.h>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// True if this user may open a render node, which means that a graphics processor with a real driver is
// there.
bool hasGraphicsProcessor() {
    const QDir devices(QStringLiteral("/dev/dri"));
    for (const QString& node : devices.entryList({QStringLiteral("renderD*")}, QDir::System)) {
        const int file = open(devices.filePath(node).toLocal8Bit().constData(), O_RDWR | O_CLOEXEC);
        if (file < 0) {
            continue;
        }
        close(file);
        return true;
    }
    return false;
}

void setUnlessSet(const char* name, const char* value) {
    if (!qEnvironmentVariableIsSet(name)) {
        qputenv(name, value);
    }
}

// Makes both renderers draw text as designed. Without this, the hardware renderer adds coloured edges,
// whatever the font requests. The software renderer thickens the stems of glyphs with PostScript outlines, so
// that regular text looks semibold, most of all light text on a dark background. Both libraries can be
// configured only through the environment, and only before they draw the first text.
void drawTextAsDesigned() {
    setUnlessSet("QSG_DISTANCEFIELD_ANTIALIASING", "gray");
    // Pairs of a stem width and its thickening, which is 0 for every width.
    setUnlessSet("FREETYPE_PROPERTIES", "cff:darkening-parameters=500,0,1000,0,1667,0,2333,0");
}

// Reads the system's font configuration on a thread of its own, while this one connects to the display: it takes
// longer than all else that has to happen before the first text is measured. Where Qt uses the library, it has
// loaded it already.
std::thread readFontConfiguration() {
    void* const library = dlopen("libfontconfig.so.1", RTLD_LAZY | RTLD_NOLOAD);
    using Init = int (*)();
    const auto init = library != nullptr ? reinterpret_cast<Init>(dlsym(library, "FcInit")) : nullptr;
    return init != nullptr ? std::thread([init] { static_cast<void>(init()); }) : std::thread();
}

void setInterfaceFont() {
    const QString inter = QStringLiteral("Inter");
    QFont font = QGuiApplication::font();
    if (QFontDatabase::hasFamily(inter)) {
        font.setFamily(inter);
    }
    // Grey antialiasing without hinting: coloured fringes and uneven spacing do not suit text beside drawn
    // symbols.
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    font.setHintingPreference(QFont::PreferNoHinting);
    QGuiApplication::setFont(font);
}

// Session managers restart what was running when the user logged out, by default even a program that has an
// autostart entry. Fenwhirl starts with the session only if the user wants that, and then through its entry; a
// second start would open the window.
void neverRestart(QSessionManager& manager) {
    manager.setRestartHint(QSessionManager::RestartNever);
}

} // namespace

std::unique_ptr<QGuiApplication> makeDesktopApplication(int& argc, char** argv,
                                                        const std::function<void()>& meanwhile) {
    drawTextAsDesigned();
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !hasGraphicsProcessor()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    QGuiApplication::setDesktopFileName(QStringLiteral("com.fenwhirl.app"));
    std::thread fontConfiguration = readFontConfiguration();
    // A QApplication, because Qt has the classic tray icon only in its widgets library. Nothing else of it is
    // used.
    auto application = std::make_unique<QApplication>(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (meanwhile) {
        meanwhile();
    }
    for (const auto request : {&QGuiApplication::saveStateRequest, &QGuiApplication::commitDataRequest}) {
        // Direct, because the hint is read as soon as the signal has been delivered.
        QObject::connect(application.get(), request, application.get(), neverRestart, Qt::DirectConnection);
    }
    if (fontConfiguration.joinable()) {
        fontConfiguration.join(); // two threads that read it at once would both do so from the beginning
    }
    setInterfaceFont();
    return application;
}

} // namespace Fenwhirl
