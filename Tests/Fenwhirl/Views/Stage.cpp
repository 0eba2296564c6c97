#include "Stage.h"

#include "Fenwhirl/Views/Components/Theme.h"
#include "Support/WaitUntil.h"

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlError>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

void collect(QAccessibleInterface* from, QList<QAccessibleInterface*>& into) {
    if (from == nullptr || from->state().invisible) {
        return;
    }
    into.append(from);
    for (int i = 0; i < from->childCount(); ++i) {
        collect(from->child(i), into);
    }
}

Theme& themeOf(QQmlEngine& engine) {
    return *engine.singletonInstance<Theme*>(qmlTypeId("Fenwhirl.Components", 1, 0, "Theme"));
}

QList<QAccessibleInterface*> everything(QQuickWindow& window) {
    QList<QAccessibleInterface*> all;
    QAccessibleInterface* root = QAccessible::queryAccessibleInterface(&window);
    for (int i = 0; root != nullptr && i < root->childCount(); ++i) {
        collect(root->child(i), all);
    }
    return all;
}

QStringList textsOf(QQuickWindow& window, QAccessible::Text kind) {
    QStringList texts;
    for (const QAccessibleInterface* item : everything(window)) {
        const QString text = item->text(kind);
        // Announcements are heard but not shown; Stage::announced returns them.
        if (!text.isEmpty() && item->role() != QAccessible::Notification) {
            texts.append(text);
        }
    }
    return texts;
}

} // namespace

AppLoad runningApp(const QString& name, double cpu, qint32 pid, bool canQuit, double memoryMB) {
    AppLoad app;
    app.id = QStringLiteral("/Applications/") + name + QStringLiteral(".app");
    app.name = name;
    app.appPath = app.id;
    app.cpu = cpu;
    app.memoryMB = memoryMB;
    app.pids = {pid};
    app.canQuit = canQuit;
    app.starts = {ProcessStart{}};
    return app;
}

Stage::Stage() {
    QCoreApplication::installTranslator(&translator_);
    world.preferences.setText(QStringLiteral("language"), QStringLiteral("fr"));
}

Stage::~Stage() {
    // In this order, because each object uses the ones after it.
    window_.reset();
    engine_.reset();
    models_.reset();
    processes_.reset();
    QCoreApplication::removeTranslator(&translator_);
}

void Stage::start() {
    world.preferences.setBoolean(QStringLiteral("didOnboard"), onboarded);
    world.start();
    adopt();
}

void Stage::adopt() {
    ProcessServices processes;
    processes.sample = [this] {
        const std::lock_guard lock(mutex_);
        ++samples;
        return sample_;
    };
    processes.cancelSampling = [] {};
    processes.quit.startOf = [](qint32) { return ProcessStart{}; };
    processes.quit.askApplication = [this](qint32 pid, bool force) {
        quitRequests.emplace_back(pid, force);
        return true;
    };
    processes.quit.sendSignal = [](qint32, ProcessStart, int) {};
    processes.interval = std::chrono::hours(1); // longer than any test: none waits for a sample
    processes_ = std::make_unique<ProcessMonitor>(processes);
    models_ = std::make_unique<ViewModels>(
        monitor(), *processes_,
        ViewServices{.computerName = computerName,
                     .notify = [this](const QString& title,
                                      const QString& message) { notifications.emplace_back(title, message); },
                     .saveReport = [this](const QString& text) { reports.push_back(text); },
                     .applicationIcon = [this](const QString&) { return applicationIcon; },
                     .openMain = [this] { ++timesOpenedMain; },
                     .quit = [this] { ++timesQuit; }});
    // As the application does.
    QObject::connect(&monitor(), &Monitor::languageChanged, models_.get(), [this] {
        models_->retranslate();
        if (engine_) {
            engine_->retranslate();
        }
    });
}

void Stage::show(const QUrl& file, QVariantMap properties) {
    if (!models_) {
        start();
    }
    if (properties.isEmpty()) {
        properties.insert(QStringLiteral("models"), QVariant::fromValue(models_.get()));
    }
    registerViews();
    engine_ = std::make_unique<QQmlEngine>();
    engine_->addImportPath(QStringLiteral("qrc:/qt/qml"));
    QObject::connect(engine_.get(), &QQmlEngine::warnings, [](const QList<QQmlError>& warnings) {
        for (const QQmlError& warning : warnings) {
            ADD_FAILURE() << warning.toString().toStdString();
        }
    });
    models_->setAwake(true);
    QQmlComponent component(engine_.get(), file);
    ASSERT_TRUE(component.isReady()) << component.errorString().toStdString();
    // Without animations everything is in its place at once, so no test has to wait.
    setReducedMotion(true);
    window_.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(properties)));
    ASSERT_TRUE(window_);
    if (file == mainWindowFile()) {
        window_->resize(windowSize);
    }
    // The introduction appears with the first frame.
    QSignalSpy pictures(window_.get(), &QQuickWindow::frameSwapped);
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    ASSERT_TRUE(!pictures.isEmpty() || pictures.wait());
}

void Stage::setReducedMotion(bool reduced) {
    themeOf(*engine_).setReducedMotion(reduced);
}

void Stage::setTextScale(double scale) {
    themeOf(*engine_).setTextScale(scale);
}

void Stage::showPage(Page page) {
    if (!models_) {
        start();
    }
    monitor().setSelectedPage(page);
    show();
}

void Stage::setSensors(int count, double celsius) {
    for (int i = 1; i < count; ++i) {
        const std::string key = "T" + QString::number(i + 0x100, 16).toStdString();
        world.smc.setNumber(key.c_str(), "flt ", celsius + i % 40);
    }
}

void Stage::showFans(int count) {
    QList<FanState> fans;
    for (int id = 0; id < count; ++id) {
        fans.append({.id = id, .rpm = 2000, .minRPM = 1200, .maxRPM = 6000, .target = 2000});
    }
    models_->machine()->fans()->setFans(fans);
}

void Stage::poll() {
    world.poll();
}

void Stage::setApps(const QList<AppLoad>& apps) {
    {
        const std::lock_guard lock(mutex_);
        sample_.apps = apps;
    }
    // A refresh is dropped while a sample is in progress, so repeat it until the list has arrived.
    QSignalSpy changed(processes_.get(), &ProcessMonitor::appsChanged);
    ASSERT_TRUE(waitUntil([&] {
        processes_->refresh();
        return !changed.isEmpty() || processes_->apps() == apps;
    }));
}

QStringList Stage::texts() {
    return textsOf(*window_, QAccessible::Name);
}

QStringList Stage::descriptions() {
    return textsOf(*window_, QAccessible::Description);
}

QStringList Stage::values() {
    return textsOf(*window_, QAccessible::Value);
}

QStringList Stage::announced() {
    QStringList texts;
    for (const QAccessibleInterface* item : all(QAccessible::Notification)) {
        texts.append(item->text(QAccessible::Name));
    }
    return texts;
}

QList<QAccessibleInterface*> Stage::all(QAccessible::Role role) {
    QList<QAccessibleInterface*> found;
    for (QAccessibleInterface* item : everything(*window_)) {
        if (item->role() == role) {
            found.append(item);
        }
    }
    return found;
}

QAccessibleInterface* Stage::find(const QString& name, QAccessible::Role role, int n) {
    for (QAccessibleInterface* item : all(role)) {
        if (item->text(QAccessible::Name) == name && n-- == 0) {
            return item;
        }
    }
    return nullptr;
}

QAccessibleValueInterface* Stage::range(QAccessible::Role role, int n) {
    const QList<QAccessibleInterface*> ranges = all(role);
    return n < ranges.size() ? ranges.at(n)->valueInterface() : nullptr;
}

QColor Stage::colorAt(QPoint point) {
    return window_->grabWindow().pixelColor(point * window_->devicePixelRatio());
}

QColor Stage::colorLeftOf(const QString& text, int distance) {
    const QRect place = find(text, QAccessible::StaticText)->rect();
    return colorAt(QPoint(place.left() - distance, place.center().y()) - window_->position());
}

void Stage::click(QAccessibleInterface* target) {
    ASSERT_NE(target, nullptr);
    // Items that have just appeared or moved are laid out with the next frame.
    for (QRect before; before != target->rect();) {
        before = target->rect();
        static_cast<void>(window_->grabWindow());
    }
    const QPoint centre = target->rect().center() - window_->position();
    ASSERT_TRUE(QRect(QPoint(), window_->size()).contains(centre)) << "it lies outside the window";
    QTest::mouseClick(window_.get(), Qt::LeftButton, {}, centre);
}

void Stage::click(const QString& name, QAccessible::Role role, int n) {
    QAccessibleInterface* target = find(name, role, n);
    ASSERT_NE(target, nullptr) << "nothing is called " << name.toStdString();
    click(target);
}

void Stage::press(Qt::Key key) {
    QTest::keyClick(window_.get(), key);
}

} // namespace Fenwhirl
