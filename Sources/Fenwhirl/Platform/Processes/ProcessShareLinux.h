// How much processor time each process used between two samples ("looks") of the process table.
//
// Works on values only, without a clock or system calls: the caller passes in what was read, and when. One
// object belongs to one sequence of samples and is used by one thread at a time.

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <unordered_map>

namespace Fenwhirl {

class ProcessShare {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit ProcessShare(std::uint64_t ticksPerSecond) : ticksPerSecond_(ticksPerSecond) {}

    // Whether there is an earlier sample, and a recent one. Shares since a much older sample would be
    // averages over all that time.
    [[nodiscard]] bool hasRecentSample(Time now) const;

    // Begins a sample. The `add` calls that follow compare it with the one before.
    void beginSample(Time now);

    // Adds one process to the sample. Returns the share of one core that it used since the last sample, or
    // since its start if that was later, in hundredths of a percent. Zero in the first sample. An identifier
    // that now belongs to another process counts as a new process.
    std::uint64_t add(std::int32_t pid, std::uint64_t startTicks, std::uint64_t ticks);

    // The start of a process in the last sample; absent when the process was not in it.
    [[nodiscard]] std::optional<std::uint64_t> startInLastSample(std::int32_t pid) const;

private:
    struct Known {
        std::uint64_t startTicks;
        std::uint64_t ticks;
    };

    std::uint64_t ticksPerSecond_;
    std::unordered_map<std::int32_t, Known> before_;
    std::unordered_map<std::int32_t, Known> now_;
    Time beforeTime_;
    Time nowTime_;
    bool hasBefore_ = false;
    bool hasNow_ = false;
};

} // namespace Fenwhirl
