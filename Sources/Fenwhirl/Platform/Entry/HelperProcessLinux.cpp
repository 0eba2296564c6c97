#include "Fenwhirl/Platform/Entry/HelperProcessSystem.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <sched.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace Fenwhirl::HelperProcess {

namespace {

std::optional<std::uint64_t> parsedMask(std::string_view text) {
    std::uint64_t mask = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), mask);
    return error == std::errc() && stop != text.data() ? std::optional(mask) : std::nullopt;
}

} // namespace

void closeDescriptorsFrom(int first) {
    if (close_range(static_cast<unsigned>(first), std::numeric_limits<unsigned>::max(), 0) == 0) {
        return;
    }
    // For kernels before 5.9. A descriptor can be above the hard limit only if it was opened before the limit
    // was lowered.
    rlimit limit = {};
    const bool known = getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_max <= 1U << 20U;
    const int end = known ? static_cast<int>(limit.rlim_max) : 1 << 20;
    for (int descriptor = first; descriptor < end; ++descriptor) {
        close(descriptor);
    }
}

Inherited inheritedState() {
    // One read instead of a system call per signal, because start-up is most of the helper's life. The name
    // in parentheses is chosen by the caller and may contain anything; only numbers follow the last
    // parenthesis. See proc(5).
    constexpr std::uint64_t everySignal = std::numeric_limits<std::uint64_t>::max();
    constexpr Inherited worst = {.ignoredSignals = everySignal, .hasDefaultScheduling = false};
    constexpr int niceness = 19;
    constexpr int ignored = 33;
    constexpr int schedulingClass = 41;
    const int file = open("/proc/self/stat", O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return worst;
    }
    std::array<char, 2048> buffer = {};
    const ssize_t length = read(file, buffer.data(), buffer.size());
    close(file);
    if (length <= 0) {
        return worst;
    }
    std::string_view text(buffer.data(), static_cast<std::size_t>(length));
    const auto name = text.rfind(')');
    if (name == std::string_view::npos) {
        return worst;
    }
    text.remove_prefix(name + 1);
    bool isNice = true;
    std::uint64_t ignoredSignals = everySignal;
    for (int field = 3; field <= schedulingClass; ++field) { // the name is field 2
        const auto blank = text.find(' ');
        if (blank == std::string_view::npos) {
            return worst;
        }
        text.remove_prefix(blank + 1);
        const std::string_view value = text.substr(0, text.find(' '));
        if (field == niceness) {
            isNice = value != "0";
        } else if (field == ignored) {
            ignoredSignals = parsedMask(value).value_or(everySignal);
        } else if (field == schedulingClass) {
            return {.ignoredSignals = ignoredSignals, .hasDefaultScheduling = !isNice && value == "0"};
        }
    }
    return worst;
}

void resetScheduling() {
    const sched_param none = {};
    sched_setscheduler(0, SCHED_OTHER, &none);
    setpriority(PRIO_PROCESS, 0, 0);
}

void resetTimerSlack() {
    constexpr unsigned long usualSlackNanoseconds = 50'000;
    prctl(PR_SET_TIMERSLACK, usualSlackNanoseconds, 0, 0, 0);
}

void forbidTracing() {
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    // Checked, because the kernel has ignored this request without an error before. A root process whose
    // memory the caller can read is worse than none.
    if (prctl(PR_GET_DUMPABLE, 0, 0, 0, 0) != 0) {
        std::abort();
    }
}

void setAllUserIdsToRoot() {
    if (setresuid(0, 0, 0) != 0) {
        return;
    }
}

} // namespace Fenwhirl::HelperProcess
