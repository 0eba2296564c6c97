// The contents of /proc/PID/stat for one process.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Fenwhirl {

struct ProcessStat {
    std::string name;         // at most 15 bytes; chosen by the process itself, so it may contain anything
    std::uint64_t ticks;      // processor time in user and kernel mode, all threads, in clock ticks
    std::uint64_t startTicks; // clock ticks between the system's start and the process's start
};

// The fields of such a file; absent when the text does not have its format.
[[nodiscard]] std::optional<ProcessStat> parseProcessStat(std::string_view text);

// Reads the file of one process; absent when there is no such process.
[[nodiscard]] std::optional<ProcessStat> readProcessStat(std::int32_t pid);

} // namespace Fenwhirl
