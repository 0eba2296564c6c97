#include "Fenwhirl/Platform/Desktop/SystemChecks.h"

#include <QGuiApplication>
#include <QQuickWindow>

namespace Fenwhirl::SystemChecks {

void prepareScreen() {
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable)) {
            return;
        }
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

CheckResult signature(const std::string& /*tool*/) {
    return CheckResult::skip(QStringLiteral("programs are not signed on Linux"));
}

CheckResult quarantine(const std::string& /*tool*/) {
    return CheckResult::skip(QStringLiteral("nothing is held back on Linux"));
}

CheckResult translocation() {
    return CheckResult::skip(QStringLiteral("programs run where they lie on Linux"));
}

CheckResult activationPolicy() {
    return CheckResult::skip(QStringLiteral("there is no Dock on Linux"));
}

CheckResult graphicsDevice() {
    const bool isSoftware = QQuickWindow::graphicsApi() == QSGRendererInterface::Software;
    return CheckResult::skip(
        QStringLiteral("Metal is not on Linux; drawn with %1, on %2")
            .arg(isSoftware ? QStringLiteral("Qt's software renderer") : QStringLiteral("OpenGL"),
                 QGuiApplication::platformName()));
}

CheckResult menuBar(const QList<Menu>& /*menus*/) {
    return CheckResult::skip(QStringLiteral("there is no menu bar on Linux"));
}

CheckResult unplacedStatusItem() {
    return CheckResult::skip(QStringLiteral("this desktop has no place for status items"));
}

} // namespace Fenwhirl::SystemChecks
