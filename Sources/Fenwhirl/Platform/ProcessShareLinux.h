// How much processor time each process took between two looks at the process table.
//
// Values only, no clock and no system: what was read, and when, is handed in. One object belongs to one
// sequence of looks and is used by one thread at a time.

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <unordered_map>

class ProcessShare {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit ProcessShare(std::uint64_t ticksPerSecond) : ticksPerSecond_(ticksPerSecond) {}

    // Whether there is an earlier look, and a recent one: the share since a look of long ago would be an
    // average over that long time.
    [[nodiscard]] bool hasRecentLook(Time now) const;

    // Begins a look; the differences of the following `add` calls are taken against the one before.
    void beginLook(Time now);

    // One process of the look: hundredths of a percent of one core that it took since the last look, or since
    // its start if that was later. Zero in the first look. An identifier that now belongs to another process
    // counts as new.
    std::uint64_t add(std::int32_t pid, std::uint64_t startTicks, std::uint64_t ticks);

    // The start of a process of the last look; absent when it was not in it.
    [[nodiscard]] std::optional<std::uint64_t> startInLastLook(std::int32_t pid) const;

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
