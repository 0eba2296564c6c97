#include "Fenwhirl/Platform/Entry/HelperProcessSystem.h"

#include <array>
#include <cstddef>
#include <libproc.h>
#include <limits>
#include <sys/resource.h>
#include <unistd.h>

namespace HelperProcess {

void closeDescriptorsFrom(int first) {
    // What is open, whatever the limits say today; asked again until nothing of it could be closed.
    std::array<proc_fdinfo, 256> open = {};
    for (;;) {
        const int size =
            proc_pidinfo(getpid(), PROC_PIDLISTFDS, 0, open.data(), static_cast<int>(sizeof open));
        const std::size_t count = size > 0 ? static_cast<std::size_t>(size) / sizeof open[0] : 0;
        bool closed = false;
        for (std::size_t i = 0; i < count; ++i)
            closed = (open[i].proc_fd >= first && close(open[i].proc_fd) == 0) || closed;
        if (!closed)
            return;
    }
}

Inherited inheritedState() {
    return {.ignoredSignals = std::numeric_limits<std::uint64_t>::max(), .isScheduledAsUsual = false};
}

void scheduleAsUsual() {
    setpriority(PRIO_PROCESS, 0, 0);
}

void waitExactly() {
    // Background processes are those whose timers the system delays.
    setpriority(PRIO_DARWIN_PROCESS, 0, 0);
}

void forbidTracing() {
    // The kernel refuses tracing and core files of a set-user-ID process by itself.
}

void becomeRootEntirely() {
    // For an effective root this sets the real and the saved identity too.
    if (setuid(0) != 0)
        return;
}

} // namespace HelperProcess
