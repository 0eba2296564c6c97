// Compares the time that a subject takes over many runs with the time of the least work that could replace
// it.
//
// The two run alternately, so that both see the machine in the same state, and their medians are compared.

#pragma once

#include "Budgets.h"
#include "Curves.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <string>
#include <vector>

namespace Fenwhirl {

// Wall-clock and processor time of the runs of one subject, in seconds.
class Course {
public:
    // Runs the subject once and returns its wall-clock time.
    template <typename Subject>
    double run(const Subject& subject) {
        const double processorStart = secondsOn(CLOCK_PROCESS_CPUTIME_ID);
        const double wallStart = secondsOn(CLOCK_MONOTONIC);
        subject();
        wall_.push_back(secondsOn(CLOCK_MONOTONIC) - wallStart);
        processor_.push_back(secondsOn(CLOCK_PROCESS_CPUTIME_ID) - processorStart);
        return wall_.back();
    }

    [[nodiscard]] double wall() const { return median(wall_); }

    [[nodiscard]] double processor() const { return median(processor_); }

private:
    static double secondsOn(clockid_t clock) {
        timespec time{};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    static double median(std::vector<double> values) {
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

    std::vector<double> wall_;
    std::vector<double> processor_;
};

// Reports both times and their ratios, which may not exceed `allowed`.
inline void report(benchmark::State& state, const std::string& what, double allowed, const Course& subject,
                   const Course& bare) {
    budgets.check(what + ", wall-clock time", subject.wall() / bare.wall(), allowed);
    budgets.check(what + ", processor time", subject.processor() / bare.processor(), allowed);
    state.counters["bare_us"] = bare.wall() * 1e6;
    state.counters["ours_us"] = subject.wall() * 1e6;
    state.counters["wall_ratio"] = subject.wall() / bare.wall();
    state.counters["cpu_ratio"] = subject.processor() / bare.processor();
}

// Runs the benchmarks. Returns the program's exit status: failure when a budget is exceeded.
inline int runBenchmarks(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return curves.save() ? budgets.finish() : EXIT_FAILURE;
}

} // namespace Fenwhirl
