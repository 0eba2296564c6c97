// Finds the application that a process of a Linux desktop belongs to.
//
// It tries, in this order: the systemd unit of the process's control group; the name of its flatpak or snap;
// the desktop entry of its program, or of the script that an interpreter runs. Processes of other users
// belong to no application here. Components of the desktop itself can never be quit.
//
// Threads: one at a time. Files are read, through `read`, when a process is new and occasionally afterwards,
// because programs are often moved into their unit just after their start.

#pragma once

#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Fenwhirl/Processes/DesktopEntries.h"
#include "Fenwhirl/Processes/ProcessListing.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <functional>
#include <optional>

namespace Fenwhirl {

// What the system says about one process of this user.
struct ProcessOrigin {
    QString controlGroup;                            // its path; empty when the process is in none
    std::function<QStringList()> arguments;          // the words of its command line
    std::function<QString()> workingFolder;          // empty when unknown
    std::function<std::optional<QString>()> flatpak; // the identifier, when it runs in a flatpak's sandbox
};

class ApplicationFinder {
public:
    // Returns nothing for a process that has ended or belongs to another user.
    using Read = std::function<std::optional<ProcessOrigin>(qint32 pid)>;

    ApplicationFinder(DesktopEntries entries, Read read);

    // To be called before each look at all processes. `locales` are those of the shown
    // names, most preferred first.
    void beginSample(const QStringList& locales);

    // `start` and `path` are those of the listing.
    [[nodiscard]] std::optional<FoundApplication> applicationOf(qint32 pid, std::optional<ProcessStart> start,
                                                                QStringView path);

private:
    struct Known {
        ProcessStart start;
        QString path;
        const DesktopEntry* entry = nullptr;
        QString label; // for anything but an application: a script's name; may be empty
        bool isDesktopComponent = false;
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

} // namespace Fenwhirl
