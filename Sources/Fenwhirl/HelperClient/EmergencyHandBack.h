// Hands the fans back when the application cannot do it in the normal way: from inside a fatal signal's
// handler, and by the guard process when the application was killed, is stopped or hangs.
//
// The owner of the fans tells this object, at the start and at each change, what would have to be handed back
// at that moment (HandBackRule.h). When an emergency comes, nothing more needs to be computed.
//
// Threads: `update` from any thread, everything else on the main thread. No call waits for the guard. One
// object for the life of the process.
// Ownership: the guard process belongs to this object and ends on its own after it.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>

namespace Fenwhirl {

class EmergencyHandBack {
public:
    // Called on the main thread with the process ID of each guard that was started.
    using GuardStarted = std::function<void(pid_t)>;

    // Installs the signal handlers (CrashHandBack.h) and starts the guard at `guardPath`, if there is one.
    EmergencyHandBack(std::string helperPath, const std::optional<std::string>& guardPath,
                      GuardStarted guardStarted = {});
    EmergencyHandBack(const EmergencyHandBack&) = delete;
    EmergencyHandBack& operator=(const EmergencyHandBack&) = delete;
    // Without a preceding `finish`, the guard takes this for a crash.
    ~EmergencyHandBack();

    // Uses the product's own helper and the guard of this installation.
    [[nodiscard]] static std::unique_ptr<EmergencyHandBack>
    forThisInstallation(GuardStarted guardStarted = {});

    // Sets what is to be handed back from now on; cheap when nothing changed. When the call
    // returns, the guard knows, or will know as soon as it reads again. To be called before the
    // first command for a fan runs.
    void update(const HandBack& handBack);

    // To be called every few seconds, whenever the application has proved that it works. Sends the guard a
    // sign of life (the guard acts after ten seconds without one) and replaces a guard that was lost.
    void keepAlive();

    // To be called after the fans have been handed back normally: neither the guard nor the signal handler
    // has anything left to do, and further updates are ignored.
    void finish();

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

} // namespace Fenwhirl
