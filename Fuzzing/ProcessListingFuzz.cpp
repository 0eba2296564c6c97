// Fuzzes the parsing of a process listing with any text.
//
// Input: the text. The expected results are derived from it independently, line by line.

#include "Fenwhirl/Processes/ProcessListing.h"
#include "FuzzInput.h"

#include <QSet>
#include <QStringList>

#include <cmath>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr qint32 ownPid = 77;
constexpr int processors = 4;

// The number in a field of digits with at most one sign; absent when it is out of range.
std::optional<qint32> wholeNumber(const QString& field) {
    for (qsizetype i = 0; i < field.size(); ++i) {
        const bool sign = i == 0 && field.size() > 1 && (field[i] == u'-' || field[i] == u'+');
        if (!sign && (field[i] < u'0' || field[i] > u'9')) {
            return std::nullopt;
        }
    }
    bool valid = false;
    const qint32 number = field.toInt(&valid);
    return valid ? std::optional(number) : std::nullopt;
}

// Checks a line against the fields that splitting the whole line gives.
void checkLine(const QString& line) {
    const QStringList fields = line.split(u' ', Qt::SkipEmptyParts);
    const std::optional<ProcessLine> process = parseProcessLine(line);
    if (fields.size() < 4 || !wholeNumber(fields[0])) {
        fuzzExpect(!process, "a line with too few fields or without an identifier is skipped");
        return;
    }
    if (!process) {
        bool share = false;
        bool size = false;
        (void)QString(fields[1]).replace(u',', u'.').toDouble(&share);
        (void)fields[2].toDouble(&size);
        const bool plain = (fields[1] + fields[2]).toLatin1() == (fields[1] + fields[2]).toUtf8() &&
                           fields[1] == fields[1].trimmed() && fields[2] == fields[2].trimmed();
        fuzzExpect(!share || !size || !plain, "a line of four good fields is read");
        return;
    }
    fuzzExpect(process->pid == *wholeNumber(fields[0]), "the identifier is the first field");
    fuzzExpect(line.endsWith(process->path) && process->path.startsWith(fields[3]), "the path is the rest");
    fuzzExpect(process->path.count(u' ') + fields.size() >= 4, "with its spaces");
}

void checkEntry(const AppLoad& app) {
    fuzzExpect(std::isfinite(app.cpu) && app.cpu >= shownFromPercent, "what is listed loads the machine");
    fuzzExpect(!app.pids.isEmpty(), "an entry has processes");
    if (app.appPath) {
        fuzzExpect(*app.appPath == app.id && app.id.endsWith(u".app"), "a bundle is its own key");
        fuzzExpect(app.id.indexOf(QStringLiteral(".app/")) < 0, "and the outermost one");
        fuzzExpect(app.id.endsWith(app.name + QStringLiteral(".app")), "and gives the name");
    } else {
        fuzzExpect(app.id == QStringLiteral("proc:") + app.name, "the others are named by their label");
    }
    if (app.canQuit) {
        fuzzExpect(app.appPath.has_value(), "only applications can be quit");
        fuzzExpect(!app.id.startsWith(QStringLiteral("/System/")), "not the system's");
        fuzzExpect(!app.id.contains(QStringLiteral("fenwhirl"), Qt::CaseInsensitive), "nor this one");
        fuzzExpect(!app.pids.contains(ownPid), "in whatever bundle it runs");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray listing(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const FoldContext context{processors, ownPid, QStringLiteral("/Own.app"),
                              [](const QString& label) { return label; }};
    const ProcessSample sample = groupProcesses(listing, context);

    double total = 0;
    qsizetype processes = 0;
    const QStringList lines = QString::fromUtf8(listing).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        checkLine(line);
        if (const std::optional<ProcessLine> process = parseProcessLine(line)) {
            total += process->percentOfCore / processors;
            ++processes;
        }
    }
    fuzzExpect(sample.totalCPU == total || (std::isnan(sample.totalCPU) && std::isnan(total)),
               "every process counts towards the total");

    fuzzExpect(sample.apps.size() <= shownAtMost, "the list is short");
    QSet<QString> ids;
    double before = std::numeric_limits<double>::infinity();
    for (const AppLoad& app : sample.apps) {
        checkEntry(app);
        fuzzExpect(app.cpu <= before, "the heaviest comes first");
        before = app.cpu;
        ids.insert(app.id);
        processes -= app.pids.size();
    }
    fuzzExpect(ids.size() == sample.apps.size(), "keys are unique");
    fuzzExpect(processes >= 0, "no process is in two entries");
    return 0;
}

} // namespace Fenwhirl
