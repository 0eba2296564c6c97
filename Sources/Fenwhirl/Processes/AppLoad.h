// One row of the apps page: the load that one application, with all its helper
// processes, puts on the machine.

#pragma once

#include "Fenwhirl/Platform/Processes/ProcessTable.h"

#include <QList>
#include <QString>

#include <optional>

namespace Fenwhirl {

struct AppLoad {
    // What the processes are grouped by: the bundle's path, "app:" and the path of the desktop entry, or
    // "proc:" and the displayed label.
    QString id;
    // The bundle's file name without ".app", the desktop entry's name, or the process's label. It may come
    // from a file that anyone can write, so it must be shown as plain text only, through displayText.
    QString name;
    // The path of the bundle or of the desktop entry; absent for anything that is not an application.
    std::optional<QString> appPath;
    // Percent of the whole machine's processor capacity; all processors together are 100.
    double cpu = 0;
    // Resident memory in mebibytes.
    double memoryMB = 0;
    // The identifiers of all its processes, in the order of the listing.
    QList<qint32> pids;
    // Whether the page offers to quit it; otherwise it is shown as protected.
    bool canQuit = false;

    // When each of `pids` started, in the same order; absent for a process that had ended before this was
    // read. An identifier alone is not a lasting name for a process: the system reuses it later.
    QList<std::optional<ProcessStart>> starts;

    bool operator==(const AppLoad&) const = default;
};

} // namespace Fenwhirl

Q_DECLARE_TYPEINFO(Fenwhirl::AppLoad, Q_RELOCATABLE_TYPE);

namespace Fenwhirl {

// The result of one look at all processes.
struct ProcessSample {
    QList<AppLoad> apps; // heaviest first, at most 14
    double totalCPU = 0; // percent of the machine, over all processes, listed or not

    bool operator==(const ProcessSample&) const = default;
};

} // namespace Fenwhirl
