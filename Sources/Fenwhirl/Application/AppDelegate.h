// What the program does at the main points of its life: after launch, when it is asked to show itself again,
// and before it ends.
//
// Threads: main thread only. Every object passed to it must outlive it.

#pragma once

#include "Fenwhirl/Application/WindowControl.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Platform/Desktop/StatusItem.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

namespace Fenwhirl {

class AppDelegate : public QObject {
    Q_OBJECT

public:
    struct Patience {
        // For a place for the status item; then the main window is shown instead.
        std::chrono::milliseconds forPlace = std::chrono::seconds(10);
        // For the window's first picture; then what waits for it goes on without it.
        std::chrono::milliseconds forPicture = std::chrono::seconds(1);
    };

    // `startUpdateCheck` starts the check for a newer version, if one is due.
    AppDelegate(Monitor& monitor, WindowControl& windows, StatusItem& statusItem,
                std::function<void()> startUpdateCheck, Patience patience, QObject* parent = nullptr);

    enum class Start { usual, hidden };

    // Starts the update check. Then shows the main window with the introduction at the first launch, and only
    // the status item at every later one. With the main window, the status item appears after the window's first
    // picture, but at most a second later. If the status item finds no place within ten seconds, the main window is
    // shown after all. A `hidden` start is treated like a later launch even if it is the first.
    void applicationDidFinishLaunching(Start start = Start::usual);

    // Applies the preset: now, or as soon as the fans are known. The last one chosen wins.
    void choosePreset(Preset preset);

    // To be called when the program is started or selected again while it runs. `token` is the desktop's
    // permission to take the focus.
    void applicationShouldHandleReopen(const QString& token);

    // Hands the fans back and returns when that is done; further calls do nothing.
    void applicationWillTerminate();

Q_SIGNALS:
    // Emitted once: after the first picture of the main window, but at most a second after it was opened; at once
    // where no window opens.
    void launched();

private:
    void finishLaunch();
    void updateStatusItem();
    void updateStatusItemAfterPoll();
    void applyChosenPreset();
    void updateStatusMenu();

    Monitor& monitor_;
    WindowControl& windows_;
    StatusItem& statusItem_;
    std::function<void()> startUpdateCheck_;
    Patience patience_;
    QTimer patienceTimer_;
    double notedRPM_ = 0; // at the last notable change of the status item's text; 0 before there is one
    std::optional<Preset> chosenPreset_; // waits until the fans are known
    bool hasLaunched_ = false;
    bool terminated_ = false;
};

} // namespace Fenwhirl
