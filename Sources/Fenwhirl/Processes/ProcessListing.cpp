#include "Fenwhirl/Processes/ProcessListing.h"

#include "Fenwhirl/Processes/FriendlyName.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Fenwhirl {

namespace {

// Takes the next field off the front of `rest`; empty when there is none.
QStringView takeField(QStringView& rest) {
    qsizetype begin = 0;
    while (begin < rest.size() && rest[begin] == u' ') {
        ++begin;
    }
    qsizetype end = begin;
    while (end < rest.size() && rest[end] != u' ') {
        ++end;
    }
    const QStringView field = rest.sliced(begin, end - begin);
    rest = rest.sliced(end);
    return field;
}

QStringView withoutLeadingSpaces(QStringView text) {
    qsizetype begin = 0;
    while (begin < text.size() && text[begin] == u' ') {
        ++begin;
    }
    return text.sliced(begin);
}

std::optional<qint32> parseInt32(QStringView text) {
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+')) {
        text = text.sliced(1);
    }
    if (text.isEmpty()) {
        return std::nullopt;
    }
    constexpr qint64 limit = qint64{std::numeric_limits<qint32>::max()} + 1;
    qint64 value = 0;
    for (const QChar digit : text) {
        if (digit < u'0' || digit > u'9') {
            return std::nullopt;
        }
        value = value * 10 + (digit.unicode() - u'0');
        if (value > limit) {
            return std::nullopt;
        }
    }
    if (!negative && value == limit) {
        return std::nullopt;
    }
    return static_cast<qint32>(negative ? -value : value);
}

// Qt's conversion would trim blanks and accept non-ASCII signs and digits, which must
// not occur in a number here.
std::optional<double> parseNumber(QStringView text) {
    const bool plain = std::all_of(text.begin(), text.end(), [](QChar c) { return c > u' ' && c <= u'~'; });
    if (!plain) {
        return std::nullopt;
    }
    bool valid = false;
    const double value = text.toDouble(&valid);
    return valid ? std::optional(value) : std::nullopt;
}

// The last component of a path; trailing slashes are ignored.
QStringView lastComponent(QStringView path) {
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    const qsizetype slash = path.lastIndexOf(u'/');
    return path.size() == 1 ? path : path.sliced(slash + 1);
}

// The entries of one listing under construction.
class Grouping {
public:
    explicit Grouping(const FoldContext& context) : context_(context) {}

    // The entry for a process with this path; created for the first process of its group. The path must
    // outlive the grouping.
    AppLoad& entryFor(qint32 pid, QStringView path) {
        constexpr QStringView suffix = u".app";
        const qsizetype inside = path.indexOf(u".app/");
        const bool inBundle = inside >= 0;
        if (!inBundle && context_.applicationOf) {
            if (const auto application = context_.applicationOf(pid, path)) {
                return apps_[indexOf(foundEntry(*application))];
            }
        }
        const QStringView group = inBundle ? path.first(inside + suffix.size()) : lastComponent(path);
        QHash<QStringView, qsizetype>& known = inBundle ? bundles_ : names_;
        auto found = known.constFind(group);
        if (found == known.constEnd()) {
            found = known.insert(group, indexOf(inBundle ? bundleEntry(group) : otherEntry(group)));
        }
        return apps_[*found];
    }

    [[nodiscard]] QList<AppLoad> take() { return std::move(apps_); }

private:
    // The index of the entry with this id; adds the given entry if there is none.
    // Several names can share an id.
    qsizetype indexOf(AppLoad entry) {
        const auto known = ids_.constFind(entry.id);
        if (known != ids_.constEnd()) {
            return *known;
        }
        ids_.insert(entry.id, apps_.size());
        apps_.append(std::move(entry));
        return apps_.size() - 1;
    }

    [[nodiscard]] AppLoad bundleEntry(QStringView bundlePath) const {
        AppLoad entry;
        entry.id = bundlePath.toString();
        entry.appPath = entry.id;
        entry.name = lastComponent(bundlePath).chopped(QStringView(u".app").size()).toString();
        // Neither a part of macOS nor Fenwhirl itself can be quit here.
        entry.canQuit = !entry.id.startsWith(QStringLiteral("/System/")) &&
                        !entry.id.toLower().contains(QStringLiteral("fenwhirl")) &&
                        entry.id != context_.ownBundlePath;
        return entry;
    }

    [[nodiscard]] static AppLoad foundEntry(const FoundApplication& application) {
        AppLoad entry;
        entry.name = application.name;
        if (application.file.isEmpty()) {
            entry.id = QStringLiteral("proc:") + entry.name;
        } else {
            entry.id = QStringLiteral("app:") + application.file;
            entry.appPath = application.file;
            entry.canQuit = application.canQuit && !entry.id.toLower().contains(QStringLiteral("fenwhirl"));
        }
        return entry;
    }

    [[nodiscard]] AppLoad otherEntry(QStringView processName) const {
        AppLoad entry;
        entry.name = friendlyName(processName, context_.localize);
        entry.id = QStringLiteral("proc:") + entry.name;
        return entry;
    }

    const FoldContext& context_;
    QList<AppLoad> apps_;
    QHash<QString, qsizetype> ids_;
    // Groups seen before, so that only the first process of a group costs more than a look-up.
    QHash<QStringView, qsizetype> bundles_;
    QHash<QStringView, qsizetype> names_;
};

QList<AppLoad> heaviest(QList<AppLoad> apps) {
    // Filtered before sorting, because NaN has no place in any order. An infinite load is
    // not a measurement either.
    apps.removeIf(
        [](const AppLoad& app) { return !(std::isfinite(app.cpu) && app.cpu >= shownFromPercent); });
    std::stable_sort(apps.begin(), apps.end(),
                     [](const AppLoad& a, const AppLoad& b) { return a.cpu > b.cpu; });
    apps.resize(std::min(apps.size(), shownAtMost));
    return apps;
}

} // namespace

std::optional<ProcessLine> parseProcessLine(QStringView line) {
    const std::optional<qint32> pid = parseInt32(takeField(line));
    if (!pid) {
        return std::nullopt;
    }
    const QStringView share = takeField(line);
    const std::optional<double> percentOfCore =
        share.contains(u',') ? parseNumber(share.toString().replace(u',', u'.')) : parseNumber(share);
    const std::optional<double> residentKiB = parseNumber(takeField(line));
    const QStringView path = withoutLeadingSpaces(line);
    if (!percentOfCore || !residentKiB || path.isEmpty()) {
        return std::nullopt;
    }
    return ProcessLine{*pid, *percentOfCore, *residentKiB, path};
}

ProcessSample groupProcesses(const QByteArray& listing, const FoldContext& context) {
    constexpr double kibPerMebi = 1024;
    const double processors = std::max(context.activeProcessors, 1);
    const QString text = QString::fromUtf8(listing);

    ProcessSample sample;
    Grouping groups(context);
    for (const QStringView line : QStringView(text).tokenize(u'\n', Qt::SkipEmptyParts)) {
        const std::optional<ProcessLine> process = parseProcessLine(line);
        if (!process) {
            continue;
        }
        const double cpu = process->percentOfCore / processors;
        sample.totalCPU += cpu;

        AppLoad& entry = groups.entryFor(process->pid, process->path);
        entry.cpu += cpu;
        entry.memoryMB += process->residentKiB / kibPerMebi;
        entry.pids.append(process->pid);
        entry.canQuit = entry.canQuit && process->pid != context.ownPid;
    }
    sample.apps = heaviest(groups.take());
    return sample;
}

} // namespace Fenwhirl
