// Turns the text of a process listing into the rows of the apps page.
//
// A listing has one line per process: identifier, percent of one processor core, resident KiB, path of the
// executable. The fields are separated by spaces; the path comes last because it may contain spaces itself.
// Malformed lines are skipped one by one, whatever they contain: a file name can contain a line break and
// thus forge lines.
//
// Processes inside an application bundle are attributed to the outermost bundle, others to the application
// that the system finds for them; the rest are grouped by label (FriendlyName.h). Only entries that load the
// machine noticeably are kept.
//
// Pure functions: any thread.

#pragma once

#include "Fenwhirl/Processes/AppLoad.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <functional>
#include <optional>

namespace Fenwhirl {

// The fields of one line.
struct ProcessLine {
    qint32 pid;
    double percentOfCore; // 100 is one core; NaN or infinite if the listing says so
    double residentKiB;
    QStringView path;
};

// The line's fields; absent when there are fewer than four, or when one of the numbers is not a number. A
// decimal comma is accepted, too. The path is a view of `line`.
[[nodiscard]] std::optional<ProcessLine> parseProcessLine(QStringView line);

// The application of a process that is not inside a bundle.
struct FoundApplication {
    QString name; // in the interface language
    QString file; // its desktop entry; empty for something that has a name but is not an application
    bool canQuit = false;
};

// What the grouping needs to know about the machine and this program.
struct FoldContext {
    int activeProcessors = 1; // values below 1 are taken as 1
    qint32 ownPid = 0;
    QString ownBundlePath; // empty when the program runs outside a bundle
    // Translates the French label of a system process into the interface language.
    std::function<QString(const QString& frenchLabel)> localize;
    // Called for each process outside a bundle; may be empty.
    using ApplicationOf = std::function<std::optional<FoundApplication>(qint32 pid, QStringView path)>;
    ApplicationOf applicationOf = {};
};

// The entries with a load of at least `shownFromPercent` of the machine, heaviest first, at most
// `shownAtMost`. Entries of equal load stay in the order of the listing. Their `starts` are left empty. Bytes
// that are not UTF-8 are replaced.
[[nodiscard]] ProcessSample groupProcesses(const QByteArray& listing, const FoldContext& context);

inline constexpr double shownFromPercent = 0.2;
inline constexpr qsizetype shownAtMost = 14;

} // namespace Fenwhirl
