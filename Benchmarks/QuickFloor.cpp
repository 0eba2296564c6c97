// The least that a program of this kind can cost. DesktopBenchmark.py compares Fenwhirl with it.
//
//   QuickFloor window   a Qt Quick window with a text; "Activate" over the session bus hides it or shows it again
//   QuickFloor drag     a window with a handle, a line to it and its value as a text, all of which follow a pressed pointer
//   QuickFloor hidden   Qt Quick linked, an application object, no engine and no window

#include <QDBusConnection>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstring>

class FloorCommands : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit FloorCommands(QQuickWindow& window) : window_(window) {}

public Q_SLOTS:

    Q_SCRIPTABLE void Activate(const QVariantMap& /*platformData*/) {
        window_.setVisible(!window_.isVisible());
    }

private:
    QQuickWindow& window_;
};

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (argc > 1 && std::strcmp(argv[1], "hidden") == 0) {
        return QGuiApplication::exec();
    }

    QQmlApplicationEngine engine;
    const bool drags = argc > 1 && std::strcmp(argv[1], "drag") == 0;
    engine.loadData(
        drags ? "import QtQuick\n"
                "Window { width: 1040; height: 680; visible: true; title: \"Floor\"\n"
                "    Rectangle { width: handle.x; height: 2; y: 340; color: \"gray\" }\n"
                "    Rectangle { id: handle; x: area.mouseX; y: 332; width: 15; height: 15; radius: 7 }\n"
                "    Text { x: handle.x; y: 360; text: Math.round(area.mouseX) }\n"
                "    MouseArea { id: area; anchors.fill: parent } }"
              : "import QtQuick\n"
                "Window { width: 1040; height: 680; visible: true; title: \"Floor\"\n"
                "    Text { anchors.centerIn: parent; text: \"hello\" } }");
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    FloorCommands commands(*window);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QStringLiteral("/floor"), &commands, QDBusConnection::ExportScriptableSlots);
    bus.registerService(QStringLiteral("com.fenwhirl.floor"));
    return QGuiApplication::exec();
}

#include "QuickFloor.moc"
