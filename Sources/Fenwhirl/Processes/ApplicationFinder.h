// Finds the application that a process of a Linux desktop belongs to.
//
// In this order: the unit that its control group is of, a flatpak's or a snap's name, the desktop entry of
// the program, or of the script that an interpreter runs. Processes of other users belong to none here. What
// the desktop itself consists of is never to be quit.
//
// Threads: one at a time. Asks files, through `read`, when a process is new and now and then later: programs
// are often moved into their unit just after their start.

#pragma once

#include "Fenwhirl/Platform/ProcessTable.h"
#include "Fenwhirl/Processes/DesktopEntries.h"
#include "Fenwhirl/Processes/ProcessListing.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <functional>
#include <optional>

// What the system says of one process of this user.
struct ProcessOrigin {
    QString controlGroup;                            // its path; empty when it is in none
    std::function<QStringList()> arguments;          // the words of its command line
    std::function<QString()> workingFolder;          // empty when nobody can tell
    std::function<std::optional<QString>()> flatpak; // the identifier, when it runs in a flatpak's sandbox
};

class ApplicationFinder {
public:
    // Nothing for a process that is gone or another user's.
    using Read = std::function<std::optional<ProcessOrigin>(qint32 pid)>;

    ApplicationFinder(DesktopEntries entries, Read read);

    // To be called before each look at all processes. `locales`: of the names, the best first.
    void beginLook(const QStringList& locales);

    // `start` and `path` as the listing has them.
    [[nodiscard]] std::optional<FoundApplication> applicationOf(qint32 pid, std::optional<ProcessStart> start,
                                                                QStringView path);

private:
    struct Known {
        ProcessStart start;
        QString path;
        const DesktopEntry* entry = nullptr;
        QString label; // of what is no application: a script's name; may be empty
        bool isOfDesktop = false;
        unsigned firstLook = 0;
        unsigned lastLook = 0;
    };

    [[nodiscard]] Known find(qint32 pid, const QString& path) const;
    [[nodiscard]] const DesktopEntry* byControlGroup(const QString& group) const;
    [[nodiscard]] std::optional<FoundApplication> shown(const Known& known) const;
    [[nodiscard]] bool isStale(qint32 pid, const Known& known) const;

    DesktopEntries entries_;
    Read read_;
    QStringList locales_;
    QHash<qint32, Known> known_;
    unsigned look_ = 0;
};
