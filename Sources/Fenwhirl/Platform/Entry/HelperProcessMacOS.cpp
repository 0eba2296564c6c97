#include "Fenwhirl/Platform/Entry/HelperProcessSystem.h"

#include <limits>
#include <unistd.h>

namespace HelperProcess {

void closeDescriptorsFrom(int first) {
    // The table never grows beyond this, whatever the limits say today.
    const int end = getdtablesize();
    for (int descriptor = first; descriptor < end; ++descriptor)
        close(descriptor);
}

std::uint64_t ignoredSignals() {
    return std::numeric_limits<std::uint64_t>::max();
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
