// Asks an application of the apps page to quit.

#pragma once

#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Fenwhirl/Processes/AppLoad.h"

#include <functional>
#include <optional>

namespace Fenwhirl {

// The system calls that quitting needs; the real ones are in ProcessServices.
struct QuitServices {
    qint32 ownPid = 0;
    // When the process with this identifier started; absent when there is no such process now.
    std::function<std::optional<ProcessStart>(qint32 pid)> startOf;
    // Asks the running application with this identifier to terminate, or forces it to when `force`; false
    // when the system knows no application with that identifier.
    std::function<bool(qint32 pid, bool force)> askApplication;
    // Sends a signal to the process with this identifier and start time, and to no
    // other. Refusals are silent.
    std::function<void(qint32 pid, ProcessStart start, int signal)> sendSignal;
};

// Asks each of the entry's processes that is an application to terminate. When none of them is one, sends all
// of them SIGTERM, or SIGKILL when `force`. The outcome is not checked here: the next sample shows it.
//
// Skipped silently: a process that has ended since it was listed, even if its identifier now names another
// process; this program itself; and identifiers of zero and below, which a forged listing may contain and
// which the system takes for whole groups of processes. Whether the entry may be quit at all is decided by
// the page (`canQuit`).
void quitApp(const AppLoad& app, bool force, const QuitServices& services);

} // namespace Fenwhirl
