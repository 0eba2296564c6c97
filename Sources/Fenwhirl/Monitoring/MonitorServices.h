// Everything that the monitor asks of the world outside it, as values that the application fills with the
// real thing and tests with their own.
//
// Each function says on which thread it is called; none may throw.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"
#include "FenwhirlCore/SMC.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class PreferencesStore;

struct MonitorServices {
    // Opens a connection to the controller, or null. Called on "fenwhirl.smc", and on a background thread for
    // reports.
    std::function<std::unique_ptr<SMC>()> openSMC;

    // The helper, as in HelperClient. `isInstalled` on any thread; the rest never on the main thread but at
    // the end.
    struct Helper {
        std::function<bool()> isInstalled;
        std::function<std::optional<std::string>()> installedVersion;
        std::function<bool(const std::vector<std::string>&)> run;
        std::function<std::string(const std::vector<std::string>&)> output;
        std::function<bool(const std::string&)> runAsAdministrator;
        std::function<bool()> install;
        // Keeps the helper for commands after its file is removed; the function runs one of them. May be left
        // out.
        std::function<std::function<bool(const std::vector<std::string>&)>()> keep = {};
        // Changes whenever the helper's file does, so that the version need not be asked for at every poll.
        // Main thread, must not block; without it the version is asked for each time.
        std::function<std::optional<std::int64_t>()> fileStamp = {};
    } helper;

    // Seconds since an arbitrary origin on a clock that counts sleep and never jumps. Any thread.
    std::function<std::chrono::duration<double>()> now;

    // What a clock on the wall shows; it may be set at any moment, so nothing is decided by it. Any thread.
    std::function<std::chrono::system_clock::time_point()> wallClock = std::chrono::system_clock::now;

    // The user's preferences; owned by the caller, must outlive the monitor. Main thread.
    PreferencesStore* preferences = nullptr;

    // Shows a notification without waiting for it. Main thread.
    std::function<void(const QString& title, const QString& message)> notify;

    // The login item: whether it is there, and switching it; false means the switch failed. Main thread.
    struct LoginItem {
        std::function<bool()> isEnabled;
        std::function<bool(bool on)> setEnabled;
    } loginItem;

    // Told what would have to be handed back if the application ended now: by the constructor, at each change
    // and at each poll, whether it changed or not; of a fan that is going to be driven, before its first
    // command runs. Main thread and "fenwhirl.smc", one call at a time. Must not block. May be left out.
    std::function<void(const HandBack& handBack)> announceHandBack = {};
    // A poll has ended and its result is published: the program is alive. Main thread. May be left out.
    std::function<void()> pollFinished = {};
    // Told that every fan that must go back has gone back, for good; not told when one has not. Main thread.
    // May be left out.
    std::function<void()> handedBack = {};

    // Told whether the program must act in time even while it shows no window, that is while a fan is not
    // left to macOS or heat alerts are on: once by the constructor, then at each change. Main thread. May be
    // left out.
    std::function<void(bool actsInTime)> actsInTimeChanged = {};

    // How long the end waits for the poll that is under way. A helper ends itself after 30 seconds; what
    // takes longer than this will not end at all.
    std::chrono::milliseconds longestDrain = std::chrono::seconds(35);
    // How long the end tries again to hand a fan back that was refused, before it leaves that to the guard.
    std::chrono::milliseconds longestRetry = std::chrono::seconds(2);

    // Whether the monitor polls by its own timer; tests switch it off and call Monitor::tick.
    bool runsOwnTimer = true;
};
