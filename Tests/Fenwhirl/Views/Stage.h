// The real windows on the real models, over a controller, a helper and processes in memory; and the eyes and
// hands of a user: what is shown is read from the accessibility tree, and what is done is a mouse click or a
// key.
//
// The window is taller than any page, so that everything on it can be reached without scrolling. Nothing is
// looked up by an object's name: a control that a screen reader could not find, a test cannot find either. A
// warning of the engine fails the test.

#pragma once

#include "Fenwhirl/Localization/LocalizerTranslator.h"
#include "Fenwhirl/Monitoring/MonitorHarness.h"
#include "Fenwhirl/Processes/ProcessMonitor.h"
#include "Fenwhirl/Views/ViewModels.h"
#include "Fenwhirl/Views/Views.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStringList>
#include <QVariantMap>

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

// An application with one process, as the apps page gets it.
[[nodiscard]] AppLoad runningApp(const QString& name, double cpu, qint32 pid, bool canQuit = true,
                                 double memoryMB = 512);

class Stage {
public:
    MonitorHarness world;
    bool onboarded = true;
    QString computerName = QStringLiteral("MacBook de Camille");
    // The image address of every application's icon.
    QString applicationIcon;
    std::vector<std::pair<QString, QString>> notifications;
    std::vector<QString> reports;
    int timesOpenedMain = 0;
    int timesQuit = 0;
    // How often running processes were looked at.
    std::atomic<int> samples = 0;
    // What was asked of running applications: identifier and whether by force.
    std::vector<std::pair<qint32, bool>> quitRequests;
    QSize windowSize = {1040, 2400};

    Stage();
    ~Stage();

    // Makes models and views, and polls once.
    void start();
    // The same for a monitor that the test has made itself.
    void adopt();
    // Shows one of the windows and waits until it is there. Its initial properties are the models unless
    // given.
    void show(const QUrl& file = mainWindowFile(), QVariantMap properties = {});
    // Both, with the page selected.
    void showPage(Page page);
    // Nothing moves unless a test wants it to.
    void setReducedMotion(bool reduced);
    // Of a window that is shown.
    void setTextScale(double scale);
    void poll();
    // So many fans, until the next poll: the controller's keys can name ten.
    void showFans(int count);
    void setApps(const QList<AppLoad>& apps);

    [[nodiscard]] Monitor& monitor() { return world.monitor(); }

    [[nodiscard]] ViewModels& models() { return *models_; }

    [[nodiscard]] ProcessMonitor& processes() { return *processes_; }

    [[nodiscard]] QQuickWindow& window() { return *window_; }

    [[nodiscard]] QQmlEngine& engine() { return *engine_; }

    // --- Eyes ---
    // Names of everything that can be seen, in the order of the tree.
    [[nodiscard]] QStringList texts();

    // And what a screen reader adds to them.
    [[nodiscard]] QStringList descriptions();

    // What a screen reader was told of in the last moment, although the focus did not go there.
    [[nodiscard]] QStringList announced();

    [[nodiscard]] bool shows(const QString& text) { return texts().contains(text); }

    // The n-th visible thing of this name and role; null when there is none.
    [[nodiscard]] QAccessibleInterface* find(const QString& name, QAccessible::Role role, int n = 0);
    [[nodiscard]] QList<QAccessibleInterface*> all(QAccessible::Role role);
    [[nodiscard]] QAccessibleValueInterface* range(QAccessible::Role role, int n = 0);
    [[nodiscard]] QColor colorAt(QPoint point);
    // Of what stands that far left of a text, at the height of its middle.
    [[nodiscard]] QColor colorLeftOf(const QString& text, int distance);

    // --- Hands ---
    void click(QAccessibleInterface* target);
    void click(const QString& name, QAccessible::Role role = QAccessible::Button, int n = 0);
    void press(Qt::Key key);

private:
    std::mutex mutex_;
    ProcessSample sample_;
    LocalizerTranslator translator_;
    std::unique_ptr<ProcessMonitor> processes_;
    std::unique_ptr<ViewModels> models_;
    std::unique_ptr<QQmlEngine> engine_;
    std::unique_ptr<QQuickWindow> window_;
};
