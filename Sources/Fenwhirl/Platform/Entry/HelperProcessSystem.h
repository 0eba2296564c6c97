// The steps of HelperProcess.h that each system takes in its own way. Only HelperProcess.cpp includes this.

#pragma once

#include <cstdint>

namespace HelperProcess {

// Closes `first` and every descriptor above it, also those above today's limit.
void closeDescriptorsFrom(int first);

// What the caller has passed on, as far as the system tells; what it does not tell is taken for the worst.
struct Inherited {
    std::uint64_t ignoredSignals; // bit n - 1 stands for signal n
    bool isScheduledAsUsual;      // see `scheduleAsUsual`
};

[[nodiscard]] Inherited inheritedState();

// The usual scheduling class and niceness where the process may set them: one that only runs when nothing
// else does would meet its alarm between two writes.
void scheduleAsUsual();

// Waits end when they should: a caller may have let the system delay them by minutes.
void waitExactly();

// No other process of the caller may read this one's memory or steer it.
void forbidTracing();

// Real, effective and saved user become root, for a process whose effective user is root.
void becomeRootEntirely();

} // namespace HelperProcess
