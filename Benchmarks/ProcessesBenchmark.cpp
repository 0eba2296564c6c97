// What a sample of all processes costs.
//
// The first part measures the program's own parsing of a listing, with as many processes as a bare system, a
// desktop and a crowded machine have. The cost of a line must not depend on their number. The second part
// takes whole samples, alternately with bare runs of the system's own lister and with as many idle processes,
// and measures the processor time of this process and its children.
//
//   Packaging/Linux/private-namespace build/bench/benchmarks/ProcessesBenchmark
//
// The namespace excludes the computer's other processes. Exits with status 1 when a budget is exceeded.

#include "Budgets.h"
#include "Curves.h"
#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"
#include "Fenwhirl/Processes/ProcessListing.h"
#include "Fenwhirl/Processes/ProcessServices.h"

#include <QByteArray>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

namespace {

constexpr double lineCostBudget = 2; // cost of a line among 10 000, relative to a line among 100
constexpr double sampleBudget = 1.15;
constexpr double parsingBudget = 0.05;
constexpr int rounds = 25;

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double millisecondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
}

// Processor time of this process and of the children that it has waited for.
double processorMilliseconds() {
    timespec own = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &own);
    rusage children = {};
    getrusage(RUSAGE_CHILDREN, &children);
    return static_cast<double>(own.tv_sec) * 1e3 + static_cast<double>(own.tv_nsec) * 1e-6 +
           millisecondsOf(children.ru_utime) + millisecondsOf(children.ru_stime);
}

template <typename Work>
double cost(const Work& work) {
    const double before = processorMilliseconds();
    work();
    return processorMilliseconds() - before;
}

// A listing like a desktop's: a third of the processes are in bundles, each with a few helpers.
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

FoldContext context() {
    return {8, 77, QStringLiteral("/Applications/Fenwhirl.app"), [](const QString& label) { return label; }};
}

double parsingMilliseconds(const QByteArray& listing, int times) {
    std::vector<double> costs;
    for (int round = 0; round < rounds; ++round) {
        costs.push_back(cost([&] {
                            for (int i = 0; i < times; ++i) {
                                if (groupProcesses(listing, context()).totalCPU < 0) {
                                    std::abort();
                                }
                            }
                        }) /
                        times);
    }
    return median(costs);
}

void measureParsing() {
    double first = 0;
    for (const int processes : {100, 1'000, 10'000}) {
        const double milliseconds = parsingMilliseconds(listingOf(processes), 20'000 / processes);
        const double perLine = milliseconds * 1e3 / processes;
        first = processes == 100 ? perLine : first;
        (void)std::printf("parsing of %6d processes %26.3f ms  %.2f us a line  (at most %.2f)\n", processes,
                          milliseconds, perLine, first * lineCostBudget);
        budgets.check("a parsed line among " + std::to_string(processes) + " processes", perLine / first,
                      lineCostBudget);
    }
}

// Processes that do nothing, for as long as this object lives.
class IdleProcesses {
public:
    explicit IdleProcesses(int count) {
        for (int i = 0; i < count; ++i) {
            const pid_t pid = fork();
            if (pid == 0) {
                for (;;) {
                    pause();
                }
            }
            if (pid > 0) {
                pids_.push_back(pid);
            }
        }
    }

    ~IdleProcesses() {
        for (const pid_t pid : pids_) {
            kill(pid, SIGKILL);
        }
        for (const pid_t pid : pids_) {
            waitpid(pid, nullptr, 0);
        }
    }

    IdleProcesses(const IdleProcesses&) = delete;
    IdleProcesses& operator=(const IdleProcesses&) = delete;
    IdleProcesses(IdleProcesses&&) = delete;
    IdleProcesses& operator=(IdleProcesses&&) = delete;

private:
    std::vector<pid_t> pids_;
};

void measureSamples(int idle) {
    const IdleProcesses crowd(idle);
    const std::array<std::string, 3> arguments = {"-A", "-o", "pid=,pcpu=,rss=,comm="};
    const ProcessServices services = systemProcessServices();
    (void)services.sample(); // the first one measures an interval of its own
    std::vector<double> bare;
    std::vector<double> sample;
    std::vector<double> parsing;
    for (int round = 0; round < rounds; ++round) {
        QByteArray listing;
        bare.push_back(cost([&] {
            const auto result =
                runChild("/bin/ps", arguments, ChildOutput::capture, ChildEnvironment::neutral);
            listing = QByteArray::fromStdString(result ? result->output : std::string());
        }));
        sample.push_back(cost([&] { (void)services.sample(); }));
        parsing.push_back(cost([&] { (void)groupProcesses(listing, context()); }));
    }
    const double floor = median(bare);
    const double ratio = median(sample) / floor;
    const double share = median(parsing) / floor;
    (void)std::printf("sample with %5d idle processes: bare ps %8.3f ms, ours %8.3f ms  x %.2f  (at most "
                      "%.2f)\n",
                      idle, floor, median(sample), ratio, sampleBudget);
    (void)std::printf("%33sour parsing of it %.3f ms, %.1f %%  (at most %.0f %%)\n", "", median(parsing),
                      share * 100, parsingBudget * 100);
    curves.point("processes", idle, median(sample), floor);
    const std::string among = " among " + std::to_string(idle) + " processes";
    budgets.check("a sample" + among, ratio, sampleBudget);
    budgets.check("the parsing of a sample" + among, share, parsingBudget);
}

} // namespace

} // namespace Fenwhirl

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Fenwhirl::measureParsing();
    for (const int idle : {100, 500, 1'000, 2'000, 3'000}) {
        Fenwhirl::measureSamples(idle);
    }
    return Fenwhirl::curves.save() ? Fenwhirl::budgets.finish() : EXIT_FAILURE;
}
