// How much memory this process occupies, for tests that check for unbounded growth.

#pragma once

#include <cstddef>
#include <fstream>
#include <optional>
#include <unistd.h>

namespace Fenwhirl {

// Resident bytes of this process. Empty where the figure is unavailable or means little: without /proc, and
// under a sanitizer, which keeps memory of its own.
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

} // namespace Fenwhirl
