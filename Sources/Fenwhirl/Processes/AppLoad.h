// One row of the apps page: what one application, with all its helper processes, costs the machine.

#pragma once

#include "Fenwhirl/Platform/ProcessTable.h"

#include <QList>
#include <QString>

#include <optional>

struct AppLoad {
    // What the processes were grouped by: the bundle's path, "app:" and the path of the desktop entry, or
    // "proc:" and the display label.
    QString id;
    // The bundle's file name without ".app", the desktop entry's name, or the process's label. It comes from
    // a file that anyone may write: to be shown as plain text only, through displayText.
    QString name;
    // The path of the bundle or of the desktop entry; absent for what is no application.
    std::optional<QString> appPath;
    // Percent of the whole machine's processor capacity, all processors together being 100.
    double cpu = 0;
    // Resident memory in mebibytes.
    double memoryMB = 0;
    // Every process of the entry, in the order of the listing.
    QList<qint32> pids;
    // Whether the page offers to quit it; otherwise it is shown as protected.
    bool canQuit = false;

    // When each of `pids` started, in their order; absent for one that had ended by the time of asking.
    // An identifier alone does not name a process for long: the system gives it to another one later.
    QList<std::optional<ProcessStart>> starts;

    bool operator==(const AppLoad&) const = default;
};

// What one look at all processes yields.
struct ProcessSample {
    QList<AppLoad> apps; // heaviest first, at most 14
    double totalCPU = 0; // percent of the machine, over all processes, listed or not

    bool operator==(const ProcessSample&) const = default;
};
