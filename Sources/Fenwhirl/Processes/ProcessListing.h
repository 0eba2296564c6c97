// From the text of a process listing to the rows of the apps page.
//
// A listing has one line per process: identifier, percent of one processor core, resident KiB, path of the
// executable; separated by spaces, the path last because it may hold spaces itself. Lines that are not like
// that are skipped one by one, whatever they hold: a file name can contain a line break and so forge lines.
//
// Processes inside an application bundle are charged to the outermost bundle, others to the application that
// the system finds for them; the rest is grouped by label (FriendlyName.h). Only what loads the machine
// noticeably is kept.
//
// Pure functions: any thread.

#pragma once

#include "Fenwhirl/Processes/AppLoad.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <functional>
#include <optional>

// The fields of one line.
struct ProcessLine {
    qint32 pid;
    double percentOfCore; // 100 is one core; may be NaN or infinite when the listing says so
    double residentKiB;
    QStringView path;
};

// The line's fields, or nothing when it has fewer than four or one of the numbers is none. A comma counts as
// decimal mark too. The path is a view of `line`.
[[nodiscard]] std::optional<ProcessLine> parseProcessLine(QStringView line);

// The application of a process that lies in no bundle.
struct FoundApplication {
    QString name; // in the interface language
    QString file; // its desktop entry; empty for what is no application but has a name
    bool canQuit = false;
};

// What the grouping has to know of the machine and of this program.
struct FoldContext {
    int activeProcessors = 1; // taken as 1 when less
    qint32 ownPid = 0;
    QString ownBundlePath; // empty when the program runs outside a bundle
    // The label of a system process in the interface language.
    std::function<QString(const QString& frenchLabel)> localize;
    // Asked about each process outside of a bundle; may be left out.
    using ApplicationOf = std::function<std::optional<FoundApplication>(qint32 pid, QStringView path)>;
    ApplicationOf applicationOf = {};
};

// The entries of at least `shownFromPercent` of the machine, heaviest first, at most `shownAtMost`; entries
// of equal load stay in the order of the listing. Their `starts` are left empty. Bytes that are not UTF-8 are
// replaced.
[[nodiscard]] ProcessSample foldProcessListing(const QByteArray& listing, const FoldContext& context);

inline constexpr double shownFromPercent = 0.2;
inline constexpr qsizetype shownAtMost = 14;
