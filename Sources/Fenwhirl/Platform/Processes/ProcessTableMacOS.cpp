#include "Fenwhirl/Platform/Processes/ProcessListingTable.h"
#include "Fenwhirl/Platform/Processes/ProcessTable.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <sys/sysctl.h>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

std::unique_ptr<ProcessTable> openProcessTable(ProcessTableSettings settings) {
    return std::make_unique<ProcessListingTable>(std::move(settings));
}

std::optional<ProcessStart> startOfProcess(std::int32_t pid) {
    if (pid <= 0) {
        return std::nullopt;
    }
    std::array<int, 4> name = {CTL_KERN, KERN_PROC, KERN_PROC_PID, pid};
    kinfo_proc process = {};
    std::size_t size = sizeof process;
    // When there is no such process, the call succeeds and returns no data.
    if (sysctl(name.data(), static_cast<unsigned>(name.size()), &process, &size, nullptr, 0) != 0 ||
        size < sizeof process || process.kp_proc.p_pid != pid) {
        return std::nullopt;
    }
    const timeval& start = process.kp_proc.p_starttime;
    return startInMicroseconds(start.tv_sec, start.tv_usec);
}

void signalProcess(std::int32_t pid, ProcessStart start, int signal) {
    if (pid > 0 && pid != getpid() && startOfProcess(pid) == start) {
        (void)kill(pid, signal);
    }
}

int activeProcessorCount() {
    return static_cast<int>(std::clamp(sysconf(_SC_NPROCESSORS_ONLN), 1L, 1L << 20));
}

} // namespace Fenwhirl
