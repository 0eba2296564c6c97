// Asking an application of the apps page to quit.

#pragma once

#include "Fenwhirl/Platform/ProcessTable.h"
#include "Fenwhirl/Processes/AppLoad.h"

#include <functional>
#include <optional>

// The system's side of quitting; the real one is in ProcessServices.
struct QuitServices {
    qint32 ownPid = 0;
    // When the process with this identifier started; absent when there is none now.
    std::function<std::optional<ProcessStart>(qint32 pid)> startOf;
    // Asks the running application with this identifier to terminate, without its consent when `force`;
    // false when the system knows no application by it.
    std::function<bool(qint32 pid, bool force)> askApplication;
    // Sends a signal to the process with this identifier and start, to no other. Refusals are silent.
    std::function<void(qint32 pid, ProcessStart start, int signal)> sendSignal;
};

// Asks each of the entry's processes that is an application to terminate; when none is one, sends all of them
// SIGTERM, or SIGKILL when `force`. What the requests come to is not looked at: the next sample shows it.
//
// Left out silently: a process that ended since it was listed, even if its identifier names another one now;
// this program itself; and what is no process but a whole group of them to the system (zero and below), as a
// forged listing may contain. Whether the entry may be quit at all is the page's question (`canQuit`).
void quitApp(const AppLoad& app, bool force, const QuitServices& services);
