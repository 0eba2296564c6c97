#include "Fenwhirl/Platform/Processes/ProcessShareLinux.h"

#include <algorithm>
#include <utility>

namespace Fenwhirl {

bool ProcessShare::hasRecentSample(Time now) const {
    // More than twice the interval between samples while the page is shown.
    constexpr auto recent = std::chrono::seconds(10);
    return hasNow_ && now - nowTime_ <= recent;
}

void ProcessShare::beginSample(Time now) {
    std::swap(before_, now_);
    now_.clear();
    hasBefore_ = std::exchange(hasNow_, true);
    beforeTime_ = std::exchange(nowTime_, now);
}

std::uint64_t ProcessShare::add(std::int32_t pid, std::uint64_t startTicks, std::uint64_t ticks) {
    now_[pid] = {startTicks, ticks};
    if (!hasBefore_ || nowTime_ <= beforeTime_) {
        return 0;
    }
    const auto known = before_.find(pid);
    const bool same = known != before_.end() && known->second.startTicks == startTicks;
    const std::uint64_t ticksBefore = same ? std::min(known->second.ticks, ticks) : 0;
    const std::chrono::duration<double> interval = nowTime_ - beforeTime_;
    const double seconds = static_cast<double>(ticks - ticksBefore) / static_cast<double>(ticksPerSecond_);
    constexpr double hundredthsOfPercent = 10'000;
    // A process cannot use more than all cores. A larger value comes from a broken clock. The limit is far
    // below 2^64.
    constexpr double most = 1e12;
    return static_cast<std::uint64_t>(std::min(seconds / interval.count() * hundredthsOfPercent + 0.5, most));
}

std::optional<std::uint64_t> ProcessShare::startInLastSample(std::int32_t pid) const {
    const auto known = now_.find(pid);
    return known == now_.end() ? std::nullopt : std::optional(known->second.startTicks);
}

} // namespace Fenwhirl
