#include "Fenwhirl/Views/Components/Components.h"
#include "Support/QtWarnings.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QLocale>
#include <QQuickWindow>

#include <gmock/gmock.h>

// Draws into memory: the pictures are the same everywhere, and neither a display nor the focus is needed.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QCoreApplication::setApplicationName(QStringLiteral("Fenwhirl"));
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1"));
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setFont(Fenwhirl::interfaceFont(QStringLiteral("Inter")));
    QAccessible::setActive(true);
    Fenwhirl::QtWarnings::fail();
    return RUN_ALL_TESTS();
}
