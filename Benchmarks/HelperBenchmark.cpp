// What the privileged helper costs in comparison with the least possible, measured alternately in the same
// run. It measures the start, run and end of "version"; "set" and "auto" against a bare program with as many
// round trips; and launching from a process with much memory against launching from a small one.
//
// It must be root of a private namespace, because the controller's path is fixed:
//   Packaging/Linux/private-namespace build/bench/benchmarks/HelperBenchmark
// Exits with status 1 when a budget is exceeded.

#include "Budgets.h"
#include "Fenwhirl/HelperClient/HelperInstallation.h"
#include "Fenwhirl/Platform/Entry/ExecutablePath.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sched.h>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

namespace {

using Clock = std::chrono::steady_clock;
using Arguments = std::vector<std::string>;

constexpr int rounds = 40;
constexpr int startsPerRound = 10;
constexpr std::size_t muchMemory = std::size_t{256} << 20U;

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void require(bool condition, const char* what) {
    if (condition) {
        return;
    }
    (void)std::fprintf(stderr, "HelperBenchmark: %s\n", what);
    std::exit(2);
}

// Milliseconds from before the start of a program to after its end.
double lifetime(const std::string& program, const Arguments& arguments) {
    const auto begin = Clock::now();
    const auto result = runChild(program, arguments, ChildOutput::discard, ChildEnvironment::empty);
    const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
    require(result && result->succeeded(), program.c_str());
    return time.count();
}

void print(const char* what, double floor, double ours, double budget, const char* unit) {
    const double ratio = ours / floor;
    budgets.check(what, ratio, budget);
    (void)std::printf("%-48s %9.3f %9.3f %s  x %.2f  (at most %.2f)\n", what, floor, ours, unit, ratio,
                      budget);
}

void compare(const char* what, double budget, const std::string& floorProgram,
             const Arguments& floorArguments, const std::string& program, const Arguments& arguments) {
    std::vector<double> floor;
    std::vector<double> ours;
    for (int i = 0; i < rounds * startsPerRound; ++i) {
        floor.push_back(lifetime(floorProgram, floorArguments));
        ours.push_back(lifetime(program, arguments));
    }
    print(what, median(floor), median(ours), budget, "ms");
}

// Millions of instructions from the first one of the loader to the last one; absent without callgrind.
std::optional<double> instructions(const std::string& program, const Arguments& arguments) {
    const std::string log = "/run/helper-benchmark.log";
    Arguments all = {"--tool=callgrind", "--callgrind-out-file=/dev/null", "--log-file=" + log, program};
    all.insert(all.end(), arguments.begin(), arguments.end());
    if (!runChild("/usr/bin/valgrind", all, ChildOutput::discard, ChildEnvironment::inherited)) {
        return std::nullopt;
    }
    std::ifstream file(log);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    const auto at = text.find("Collected : ");
    if (at == std::string::npos) {
        return std::nullopt;
    }
    return std::strtod(text.c_str() + at + std::strlen("Collected : "), nullptr) / 1e6;
}

void countInstructions(const std::string& floor, const std::string& helper) {
    const auto least = instructions(floor, {"0"});
    const auto ours = instructions(helper, {"--helper", "version"});
    if (!least || !ours) {
        (void)std::printf("no instructions counted: callgrind is missing\n");
        return;
    }
    constexpr double budget = 0.30;
    print("the helper's version, instructions", *least, *ours, budget / *least, "M ");
}

// A simulated Mac whose time stands still. It counts the requests that it has answered.
class Controller {
public:
    explicit Controller(const std::string& program) {
        auto toIt = Pipe::make();
        require(toIt.has_value(), "no pipe");
        int fromIt[2] = {};
        require(pipe(fromIt) == 0, "no pipe");
        process_ = fork(); // the process is still small and single-threaded
        if (process_ == 0) {
            dup2(toIt->readEnd.number(), STDIN_FILENO);
            dup2(fromIt[1], STDOUT_FILENO);
            close(fromIt[0]);
            execl(program.c_str(), program.c_str(), "--speed", "0", "--heat", "20", nullptr);
            _exit(127);
        }
        close(fromIt[1]);
        commands_ = std::move(toIt->writeEnd);
        answers_ = fdopen(fromIt[0], "r");
        require(line().starts_with("ready"), "the simulated Mac does not start");
    }

    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    ~Controller() {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
        (void)std::fclose(answers_);
    }

    long requests() {
        constexpr std::string_view command = "state\n";
        require(write(commands_.number(), command.data(), command.size()) > 0, "the simulated Mac is gone");
        long count = 0;
        std::string answer;
        do {
            answer = line();
            if (const auto at = answer.find("requests="); at != std::string::npos) {
                count = std::atol(answer.c_str() + at + std::strlen("requests="));
            }
        } while (!answer.starts_with("ok"));
        return count;
    }

private:
    std::string line() {
        std::string text(4096, '\0');
        require(std::fgets(text.data(), static_cast<int>(text.size()), answers_) != nullptr, "no answer");
        return text.substr(0, text.find('\n'));
    }

    pid_t process_ = -1;
    FileDescriptor commands_;
    FILE* answers_ = nullptr;
};

void compareCommand(Controller& controller, const char* what, const std::string& floor,
                    const std::string& helper, const Arguments& arguments) {
    const long before = controller.requests();
    (void)lifetime(helper, arguments);
    const long trips = controller.requests() - before;
    require(trips > 0, "no request reached the simulated Mac");
    const std::string title = std::string(what) + ", " + std::to_string(trips) + " round trips";
    constexpr double budget = 1.15;
    compare(title.c_str(), budget, floor, {std::to_string(trips)}, helper, arguments);
}

// Launches the helper through the client, alternately with little and with much memory in use. For
// comparison, also launches it by fork from the large process.
void compareLaunches(const std::string& helper) {
    const HelperInstallation client({.helperPath = helper,
                                     .executablePath = {},
                                     .runAsAdministrator = {},
                                     .group = {},
                                     .mayRunAsRoot = true});
    const auto launch = [&](std::vector<double>& times) {
        for (int i = 0; i < startsPerRound; ++i) {
            const auto begin = Clock::now();
            require(client.run({"version"}), "the helper does not run");
            times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
        }
    };
    std::vector<double> small;
    std::vector<double> large;
    std::vector<double> forked;
    for (int round = 0; round < rounds; ++round) {
        launch(small);
        void* const memory =
            mmap(nullptr, muchMemory, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        require(memory != MAP_FAILED, "no memory");
        std::memset(memory, 1, muchMemory);
        launch(large);
        const auto begin = Clock::now();
        const pid_t child = fork();
        if (child == 0) {
            execl(helper.c_str(), helper.c_str(), "--helper", "bogus", nullptr);
            _exit(127);
        }
        waitpid(child, nullptr, 0);
        forked.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
        munmap(memory, muchMemory);
    }
    constexpr double budget = 1.3;
    print("a launch from 256 MB, not a small process", median(small), median(large), budget, "ms");
    (void)std::printf("%-48s %9s %9.3f ms  (what is avoided)\n", "the same by fork", "", median(forked));
}

} // namespace

} // namespace Fenwhirl

int main() {
    cpu_set_t first;
    CPU_ZERO(&first);
    CPU_SET(0, &first);
    sched_setaffinity(0, sizeof first,
                      &first); // on several processors, their idle states would be measured
    const auto own = Fenwhirl::executablePath();
    Fenwhirl::require(own.has_value(), "where am I?");
    const std::string folder = own->substr(0, own->rfind('/'));
    const std::string floor = folder + "/HelperFloor";
    const std::string helper = folder + "/../bin/Fenwhirl";

    (void)std::printf("%-48s %9s %9s\n", "median of each, by turns", "floor", "helper");
    Fenwhirl::Controller controller(folder + "/../bin/simulated-mac");
    constexpr double versionBudget = 1.25;
    Fenwhirl::compare("the helper's version", versionBudget, floor, {"0"}, helper, {"--helper", "version"});
    Fenwhirl::countInstructions(floor, helper);
    Fenwhirl::compareCommand(controller, "the helper's set", floor, helper, {"--helper", "set", "0", "2400"});
    Fenwhirl::compareCommand(controller, "the helper's auto", floor, helper, {"--helper", "auto"});
    Fenwhirl::compareLaunches(helper);
    return Fenwhirl::budgets.finish();
}
