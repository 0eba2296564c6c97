#include "Fenwhirl/Platform/Entry/HelperProcessSystem.h"

#include <array>
#include <cstddef>
#include <libproc.h>
#include <limits>
#include <sys/resource.h>
#include <unistd.h>

namespace Fenwhirl::HelperProcess {

void closeDescriptorsFrom(int first) {
    // Lists the open descriptors instead of relying on the limits, and repeats until none could be closed.
    std::array<proc_fdinfo, 256> open = {};
    for (;;) {
        const int size =
            proc_pidinfo(getpid(), PROC_PIDLISTFDS, 0, open.data(), static_cast<int>(sizeof open));
        const std::size_t count = size > 0 ? static_cast<std::size_t>(size) / sizeof open[0] : 0;
        bool closed = false;
        for (std::size_t i = 0; i < count; ++i) {
            closed = (open[i].proc_fd >= first && close(open[i].proc_fd) == 0) || closed;
        }
        if (!closed) {
            return;
        }
    }
}

Inherited inheritedState() {
    return {.ignoredSignals = std::numeric_limits<std::uint64_t>::max(), .hasDefaultScheduling = false};
}

void resetScheduling() {
    setpriority(PRIO_PROCESS, 0, 0);
}

void resetTimerSlack() {
    // The system delays the timers of background processes; this ends that state.
    setpriority(PRIO_DARWIN_PROCESS, 0, 0);
}

void forbidTracing() {
    // Nothing to do: the kernel does not allow tracing or core files of a set-user-ID process.
}

void setAllUserIdsToRoot() {
    // For an effective root this sets the real and the saved user, too.
    if (setuid(0) != 0) {
        return;
    }
}

} // namespace Fenwhirl::HelperProcess
