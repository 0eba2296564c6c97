// What the program does at the turns of its life: after launch, when it is asked to show itself again, and
// before it ends.
//
// Threads: main thread only. Everything it works on must outlive it.

#pragma once

#include "Fenwhirl/Application/WindowControl.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Platform/Desktop/StatusItem.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

class AppDelegate : public QObject {
    Q_OBJECT

public:
    // How long a status item may look for its place before the main window is shown instead.
    static constexpr std::chrono::seconds statusItemPatience = std::chrono::seconds(10);

    // `startUpdateCheck` looks for a newer version, if it is time to.
    AppDelegate(Monitor& monitor, WindowControl& windows, StatusItem& statusItem,
                std::function<void()> startUpdateCheck,
                std::chrono::milliseconds patience = statusItemPatience, QObject* parent = nullptr);

    enum class Start { usual, hidden };

    // Begins: looks for updates, then shows the main window with the introduction at the first launch, and
    // only the status item at every later one. A status item that finds no place within ten seconds is not
    // enough: the main window is shown then. A `hidden` start is like a later one even if it is the first.
    void applicationDidFinishLaunching(Start start = Start::usual);

    // Chooses the preset: now, or as soon as the fans are known. The last one counts.
    void choosePreset(Preset preset);

    // The program is started or chosen again while it runs. `token` is the desktop's permission to take the
    // focus.
    void applicationShouldHandleReopen(const QString& token);

    // Hands the fans back; returns when that is done. Once, however many ways lead here.
    void applicationWillTerminate();

private:
    void updateStatusItem();
    void applyChosenPreset();
    void updateStatusMenu();

    Monitor& monitor_;
    WindowControl& windows_;
    StatusItem& statusItem_;
    std::function<void()> startUpdateCheck_;
    std::chrono::milliseconds patience_;
    QTimer patienceTimer_;
    std::optional<Preset> chosenPreset_; // until the fans are known
    bool terminated_ = false;
};
