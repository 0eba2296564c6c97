#include "Fenwhirl/Platform/Processes/ProcessListingTable.h"

#include <utility>

namespace Fenwhirl {

ProcessListingTable::ProcessListingTable(ProcessTableSettings settings) : settings_(std::move(settings)) {}

std::optional<QByteArray> ProcessListingTable::listing() {
    return runListingTool(settings_.tool, {"-A", "-o", "pid=,pcpu=,rss=,comm="}, settings_.limit, cancelled_);
}

std::optional<ProcessStart> ProcessListingTable::startWhenListed(std::int32_t pid) const {
    return startOfProcess(pid);
}

void ProcessListingTable::cancel() {
    cancelled_.cancel();
}

ProcessStart startInMicroseconds(std::int64_t seconds, std::int64_t microseconds) {
    constexpr ProcessStart microsecondsPerSecond = 1'000'000;
    return static_cast<ProcessStart>(seconds) * microsecondsPerSecond +
           static_cast<ProcessStart>(microseconds);
}

} // namespace Fenwhirl
