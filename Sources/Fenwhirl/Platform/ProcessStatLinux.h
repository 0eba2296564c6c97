// What /proc/PID/stat says about one process.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct ProcessStat {
    std::string name;         // at most 15 bytes, chosen by the process itself: may hold anything
    std::uint64_t ticks;      // processor time in user and kernel mode, all threads, in clock ticks
    std::uint64_t startTicks; // clock ticks from the system's start to the process's
};

// The fields of such a file, or nothing when it is not like that.
[[nodiscard]] std::optional<ProcessStat> parseProcessStat(std::string_view text);

// Reads the file of one process; absent when there is none.
[[nodiscard]] std::optional<ProcessStat> readProcessStat(std::int32_t pid);
