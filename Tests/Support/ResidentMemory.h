// How much memory this process holds, for tests that must not take more and more of it.

#pragma once

#include <cstddef>
#include <fstream>
#include <optional>
#include <unistd.h>

// Bytes in memory now; nothing where it says little: on a system without /proc, and with a sanitizer, which
// keeps memory of its own.
[[nodiscard]] inline std::optional<std::size_t> residentBytes() {
#ifdef FENWHIRL_SANITIZED
    return std::nullopt;
#else
    std::ifstream file("/proc/self/statm");
    std::size_t all = 0;
    std::size_t resident = 0;
    if (!(file >> all >> resident)) {
        return std::nullopt;
    }
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#endif
}
