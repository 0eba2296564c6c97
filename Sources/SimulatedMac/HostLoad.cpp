#include "SimulatedMac/HostLoad.h"

#include "SimulatedMac/TextParsing.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace simulated {

std::optional<ProcessorTicks> parseProcessorTicks(std::string_view text) {
    // user nice system idle iowait irq softirq steal; the columns after these are already included in user
    // and nice.
    constexpr std::size_t counters = 8;
    constexpr std::size_t idleColumn = 3;
    constexpr std::size_t waitColumn = 4;
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto words = splitWords(text.substr(0, end));
    if (words.size() < 5 || words[0] != "cpu") {
        return std::nullopt;
    }
    ProcessorTicks ticks;
    for (std::size_t i = 0; i < std::min(counters, words.size() - 1); ++i) {
        const auto count = parseWhole(words[i + 1]);
        if (!count) {
            return std::nullopt;
        }
        (i == idleColumn || i == waitColumn ? ticks.idle : ticks.busy) += *count;
    }
    return ticks;
}

double busyShare(const ProcessorTicks& before, const ProcessorTicks& after) {
    // A counter may step back a little; the kernel documents this for iowait.
    const double busy = after.busy > before.busy ? static_cast<double>(after.busy - before.busy) : 0;
    const double idle = after.idle > before.idle ? static_cast<double>(after.idle - before.idle) : 0;
    return busy + idle > 0 ? busy / (busy + idle) : 0;
}

HostLoad::HostLoad() : file_(::open("/proc/stat", O_RDONLY | O_CLOEXEC)) {}

HostLoad::~HostLoad() {
    if (file_ >= 0) {
        ::close(file_);
    }
}

double HostLoad::sample() {
    // Long enough for the first line, the only one that is needed.
    std::array<char, 512> buffer{};
    const ssize_t length = file_ < 0 ? -1 : ::pread(file_, buffer.data(), buffer.size(), 0);
    if (length <= 0) {
        return 0;
    }
    const auto ticks = parseProcessorTicks({buffer.data(), static_cast<std::size_t>(length)});
    const double share = last_ && ticks ? busyShare(*last_, *ticks) : 0;
    if (ticks) {
        last_ = ticks;
    }
    return share;
}

} // namespace simulated
