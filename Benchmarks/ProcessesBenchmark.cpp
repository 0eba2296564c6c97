// What a sample of all processes costs beside the system's own lister.
//
// The counts of processes are those of a bare system, of a desktop and of a crowded one. `Grouping` is the
// part that is this program's alone; it should stay below a twentieth of `BareTool`, and `Listing` within 15
// % of it on a machine with as many processes.

#include "Fenwhirl/Platform/ChildProcess.h"
#include "Fenwhirl/Platform/ProcessTable.h"
#include "Fenwhirl/Processes/ProcessListing.h"

#include <QByteArray>

#include <array>
#include <benchmark/benchmark.h>
#include <string>

namespace {

// As a listing of a desktop looks: a third of the processes in bundles, each with a few helpers.
QByteArray listingOf(int processes) {
    QByteArray listing;
    for (int i = 0; i < processes; ++i) {
        const QByteArray number = QByteArray::number(i % 3 == 0 ? i / 12 : i / 4);
        listing += QByteArray::number(i + 1).rightJustified(7) + "  " + QByteArray::number(i % 97) + ".25  " +
                   QByteArray::number(1024 * (i % 300)) + ' ';
        listing += i % 3 == 0 ? "/Applications/Application " + number +
                                    ".app/Contents/Frameworks/Helper.app/Contents/MacOS/Helper\n"
                              : "/usr/libexec/some.daemon." + number + '\n';
    }
    return listing;
}

void Grouping(benchmark::State& state) {
    const QByteArray listing = listingOf(static_cast<int>(state.range(0)));
    const FoldContext context{8, 77, QStringLiteral("/Applications/Fenwhirl.app"),
                              [](const QString& label) { return label; }};
    for (auto _ : state) {
        benchmark::DoNotOptimize(foldProcessListing(listing, context));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(Grouping)->Arg(100)->Arg(1000)->Arg(3000)->Unit(benchmark::kMicrosecond);

// The processes that there are: the two below compare with each other only.
void BareTool(benchmark::State& state) {
    const std::array<std::string, 3> arguments = {"-A", "-o", "pid=,pcpu=,rss=,comm="};
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            runChild("/bin/ps", arguments, ChildOutput::capture, ChildEnvironment::neutral));
    }
}

BENCHMARK(BareTool)->UseRealTime()->Unit(benchmark::kMillisecond);

void Listing(benchmark::State& state) {
    const auto table = openProcessTable({.firstInterval = std::chrono::milliseconds(0)});
    for (auto _ : state) {
        benchmark::DoNotOptimize(table->listing());
    }
}

BENCHMARK(Listing)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
