#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QQuickWindow>

#include <fcntl.h>
#include <unistd.h>

namespace {

// A render node that this user may open means a graphics processor with a driver of its own.
bool hasGraphicsProcessor() {
    const QDir devices(QStringLiteral("/dev/dri"));
    for (const QString& node : devices.entryList({QStringLiteral("renderD*")}, QDir::System)) {
        const int file = open(devices.filePath(node).toLocal8Bit().constData(), O_RDWR | O_CLOEXEC);
        if (file < 0)
            continue;
        close(file);
        return true;
    }
    return false;
}

void setUnlessSet(const char* name, const char* value) {
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

// Both renderers are to draw text as it was designed: without coloured edges, which the graphics processor's
// gives it whatever the font asks for, and without thickened stems, which the software renderer gives to
// glyphs of PostScript outlines and which make regular text look semibold, most of all light text on a dark
// ground. The libraries can be told only through the environment, and only before the first text.
void drawTextAsDesigned() {
    setUnlessSet("QSG_DISTANCEFIELD_ANTIALIASING", "gray");
    // Pairs of a stem's width and how much it is thickened: by nothing, whatever its width.
    setUnlessSet("FREETYPE_PROPERTIES", "cff:darkening-parameters=500,0,1000,0,1667,0,2333,0");
}

void setInterfaceFont() {
    const QString inter = QStringLiteral("Inter");
    QFont font = QGuiApplication::font();
    if (QFontDatabase::hasFamily(inter))
        font.setFamily(inter);
    // Grey edges without hinting: coloured fringes and uneven spacing do not suit text beside drawn symbols.
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    font.setHintingPreference(QFont::PreferNoHinting);
    QGuiApplication::setFont(font);
}

} // namespace

std::unique_ptr<QGuiApplication> makeDesktopApplication(int& argc, char** argv) {
    drawTextAsDesigned();
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !hasGraphicsProcessor())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication::setDesktopFileName(QStringLiteral("com.fenwhirl.app"));
    // The classic tray exists for widgets only; nothing else of theirs is used.
    auto application = std::make_unique<QApplication>(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    setInterfaceFont();
    return application;
}
