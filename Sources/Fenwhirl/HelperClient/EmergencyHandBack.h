// Hands the fans back when the application cannot do it itself: from inside a fatal signal, and by the guard
// process after it was killed, or while it is stopped or hangs.
//
// Whoever owns the fans tells this object, at the start and at each change, what would have to be handed back
// at that moment (HandBackRule.h); from then on nothing more needs to be computed when it comes to it.
//
// Threads: `update` from any thread, everything else on the main thread. No call waits for the guard. One
// object for the life of the process.
// Ownership: the guard process belongs to this object and ends by itself after it.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>

class EmergencyHandBack {
public:
    // Told of each guard process that was started, on the main thread.
    using GuardStarted = std::function<void(pid_t)>;

    // Installs the last act and starts the guard of `guardPath`, if there is one.
    EmergencyHandBack(std::string helperPath, const std::optional<std::string>& guardPath,
                      GuardStarted guardStarted = {});
    EmergencyHandBack(const EmergencyHandBack&) = delete;
    EmergencyHandBack& operator=(const EmergencyHandBack&) = delete;
    // Without `finish` before, the guard takes this end for a crash.
    ~EmergencyHandBack();

    // For the product's own helper and the guard of this installation.
    [[nodiscard]] static std::unique_ptr<EmergencyHandBack>
    forThisInstallation(GuardStarted guardStarted = {});

    // What is to be handed back from now on; cheap when nothing changed. When it returns the guard knows, or
    // will as soon as it reads again: to be called before the first command for a fan runs.
    void update(const HandBack& handBack);

    // To be called whenever the application has proved that it works, every few seconds: tells the guard so,
    // which acts after ten seconds without, and replaces one that was lost.
    void keepAlive();

    // The fans have been handed back in order: neither guard nor last act has anything left to do, and no
    // update counts any more.
    void finish();

private:
    struct Private;
    std::unique_ptr<Private> d_;
};
