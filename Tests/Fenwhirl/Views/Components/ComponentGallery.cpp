// ComponentGallery PICTURE [dark|light] [SCENE]: draws a scene of this folder (Gallery, Shapes) into a PNG
// file. Size and backend follow Qt's environment variables (QT_SCALE_FACTOR, QT_QUICK_BACKEND,
// QT_QPA_PLATFORM).

#include "Fenwhirl/Views/Components/Components.h"

#include <QGuiApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTimer>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        qWarning("usage: ComponentGallery PICTURE [dark|light] [SCENE]");
        return 2;
    }
    Fenwhirl::registerComponents();
    QGuiApplication::setFont(Fenwhirl::interfaceFont(QStringLiteral("Inter")));

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.setInitialProperties({{QStringLiteral("dark"), arguments.value(2) != QLatin1String("light")}});
    const QString scene = arguments.value(3, QStringLiteral("Gallery"));
    engine.load(QUrl::fromLocalFile(QStringLiteral(FENWHIRL_SCENES "/%1.qml").arg(scene)));
    auto* window =
        engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (window == nullptr) {
        return 1;
    }

    bool saved = false;
    // The popups open with a transition. This delay is longer than any animation of the interface.
    QTimer::singleShot(800, window, [&] {
        saved = window->grabWindow().save(arguments[1]);
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return saved ? 0 : 1;
}
