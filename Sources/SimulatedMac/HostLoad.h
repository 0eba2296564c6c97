// The processor load of this computer, from the counters in /proc/stat.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace simulated {

// The counters of all processors together, in ticks since boot.
struct ProcessorTicks {
    std::uint64_t busy = 0;
    std::uint64_t idle = 0;
};

// Parses the first line of /proc/stat ("cpu  1 2 3 …"); absent when the text has another form.
[[nodiscard]] std::optional<ProcessorTicks> parseProcessorTicks(std::string_view text);

// The share of busy time between two readings, 0…1; 0 when no time has passed.
[[nodiscard]] double busyShare(const ProcessorTicks& before, const ProcessorTicks& after);

// Keeps the file open and remembers the last counters. Not copyable.
class HostLoad {
public:
    HostLoad();
    HostLoad(const HostLoad&) = delete;
    HostLoad& operator=(const HostLoad&) = delete;
    HostLoad(HostLoad&&) = delete;
    HostLoad& operator=(HostLoad&&) = delete;
    ~HostLoad();

    // The share of busy time since the last call; 0 at the first call, and when the file cannot be read.
    [[nodiscard]] double sample();

private:
    int file_;
    std::optional<ProcessorTicks> last_;
};

} // namespace simulated
