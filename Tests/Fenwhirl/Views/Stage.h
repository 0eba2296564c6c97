// The real windows and models over a controller, a helper and processes in memory, with the means of a user:
// tests read what is shown from the accessibility tree, and act by mouse clicks and keys.
//
// The window is taller than any page, so everything can be reached without scrolling. Nothing is looked up by
// an object's name: a test cannot find a control that a screen reader could not find. A warning of the QML
// engine fails the test.

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

namespace Fenwhirl {

// An application with one process, as the apps page receives it.
[[nodiscard]] AppLoad runningApp(const QString& name, double cpu, qint32 pid, bool canQuit = true,
                                 double memoryMB = 512);

class Stage {
public:
    MonitorHarness world;
    bool onboarded = true;
    QString computerName = QStringLiteral("MacBook de Camille");
    // The image URL of every application's icon.
    QString applicationIcon;
    std::vector<std::pair<QString, QString>> notifications;
    std::vector<QString> reports;
    int timesOpenedMain = 0;
    int timesQuit = 0;
    // How often the running processes were sampled.
    std::atomic<int> samples = 0;
    // The requests to quit applications: process identifier, and whether by force.
    std::vector<std::pair<qint32, bool>> quitRequests;
    QSize windowSize = {1040, 2400};

    Stage();
    ~Stage();

    // Creates models and views, and polls once.
    void start();
    // The same for a monitor that the test has created itself.
    void adopt();
    // Shows one of the windows and waits until it is visible. By default its initial properties are the
    // models.
    void show(const QUrl& file = mainWindowFile(), QVariantMap properties = {});
    // Shows the main window with this page selected.
    void showPage(Page page);
    // Switches animations off or on. They are off unless a test needs them.
    void setReducedMotion(bool reduced);
    // Sets the text scale of a window that is shown.
    void setTextScale(double scale);
    void poll();
    // Gives the controller this many sensors. Beside TC0P, whose temperature stays, they have temperatures from `celsius` on.
    void setSensors(int count, double celsius = 30);
    // Shows this many fans until the next poll. The controller itself can only name ten.
    void showFans(int count);
    void setApps(const QList<AppLoad>& apps);

    [[nodiscard]] Monitor& monitor() { return world.monitor(); }

    [[nodiscard]] ViewModels& models() { return *models_; }

    [[nodiscard]] ProcessMonitor& processes() { return *processes_; }

    [[nodiscard]] QQuickWindow& window() { return *window_; }

    [[nodiscard]] QQmlEngine& engine() { return *engine_; }

    // --- What the user sees ---
    // The names of everything visible, in the order of the accessibility tree.
    [[nodiscard]] QStringList texts();

    // The descriptions that a screen reader adds to them.
    [[nodiscard]] QStringList descriptions();
    // The values of controls as texts.
    [[nodiscard]] QStringList values();

    // What a screen reader has just announced without a change of focus.
    [[nodiscard]] QStringList announced();

    [[nodiscard]] bool shows(const QString& text) { return texts().contains(text); }

    // The n-th visible element with this name and role; null when there is none.
    [[nodiscard]] QAccessibleInterface* find(const QString& name, QAccessible::Role role, int n = 0);
    [[nodiscard]] QList<QAccessibleInterface*> all(QAccessible::Role role);
    [[nodiscard]] QAccessibleValueInterface* range(QAccessible::Role role, int n = 0);
    [[nodiscard]] QColor colorAt(QPoint point);
    // The colour at this distance left of a text, at its vertical centre.
    [[nodiscard]] QColor colorLeftOf(const QString& text, int distance);

    // --- What the user does ---
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

} // namespace Fenwhirl
