// The monitor's dependencies on the system, as functions and values: the application supplies the real ones,
// tests supply their own.
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

namespace Fenwhirl {

class PreferencesStore;

struct MonitorServices {
    // Opens a connection to the controller; null on failure. Called on "fenwhirl.smc", and on a background
    // thread for reports.
    std::function<std::unique_ptr<SMC>()> openSMC;

    // The helper, as in HelperClient. `isInstalled` on any thread; the rest never on the main
    // thread, except at the end.
    struct Helper {
        std::function<bool()> isInstalled;
        std::function<std::optional<std::string>()> installedVersion;
        std::function<bool(const std::vector<std::string>&)> run;
        std::function<std::string(const std::vector<std::string>&)> output;
        std::function<bool(const std::string&)> runAsAdministrator;
        std::function<bool()> install;
        // Keeps the helper usable after its file is removed; the returned function runs
        // one command. May be empty.
        std::function<std::function<bool(const std::vector<std::string>&)>()> keep = {};
        // Changes whenever the helper's file does, so that the version need not be read at every poll. Any
        // thread, must not block. If empty, the version is read each time.
        std::function<std::optional<std::int64_t>()> fileStamp = {};
    } helper;

    // Seconds since an arbitrary origin, on a clock that includes sleep and never jumps. Any thread.
    std::function<std::chrono::duration<double>()> now;

    // The time of day. It may be set at any moment, so no decision depends on it. Any thread.
    std::function<std::chrono::system_clock::time_point()> wallClock = std::chrono::system_clock::now;

    // The user's preferences; owned by the caller, must outlive the monitor. Main thread.
    PreferencesStore* preferences = nullptr;

    // Shows a notification without waiting for it. Main thread.
    std::function<void(const QString& title, const QString& message)> notify;

    // The login item: whether it exists, and switching it; false means that switching failed. Main thread.
    struct LoginItem {
        std::function<bool()> isEnabled;
        std::function<bool(bool on)> setEnabled;
    } loginItem;

    // Called with what would have to be handed back if the application ended now: by the constructor, at
    // each change and at each poll, whether it changed or not. For a fan that is going to be driven, it
    // is called before the first command runs. Main thread and "fenwhirl.smc", one call at a time. Must
    // not block. May be empty.
    std::function<void(const HandBack& handBack)> announceHandBack = {};
    // Called when a poll has ended and its result is published: the program is alive.
    // Main thread. May be empty.
    std::function<void()> pollFinished = {};
    // Called when every fan that must go back has gone back for good; not called if one has not.
    // Main thread. May be empty.
    std::function<void()> handedBack = {};

    // Called with whether the program must act in time even while it shows no window, that is while a
    // fan is not left to macOS, or heat alerts are on: once by the constructor, then at each change.
    // Main thread. May be empty.
    std::function<void(bool needsTimelyScheduling)> needsTimelySchedulingChanged = {};

    // How long the final hand-back waits for the poll in progress. A helper ends itself after 30 seconds;
    // anything that takes longer than this limit will not end at all.
    std::chrono::milliseconds drainTimeout = std::chrono::seconds(35);
    // How long the final hand-back retries a fan that was refused before it leaves the fan to the guard.
    std::chrono::milliseconds longestRetry = std::chrono::seconds(2);

    // Whether the monitor polls by itself; tests switch it off and call Monitor::tick.
    bool runsOwnTimer = true;
    // The time from one poll to the next.
    std::chrono::milliseconds pollInterval = std::chrono::seconds(2);
};

} // namespace Fenwhirl
