#include "Fenwhirl/Application/FenwhirlApp.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QUrl>

int fenwhirl_app_main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Fenwhirl/Views/MainWindow.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
