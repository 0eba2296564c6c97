// The steps of HelperProcess.h that differ between systems. Only HelperProcess.cpp includes this.

#pragma once

#include <cstdint>

namespace Fenwhirl::HelperProcess {

// Closes `first` and every descriptor above it, even those above the current limit.
void closeDescriptorsFrom(int first);

// What the process inherited from its caller, as far as the system reports it. Anything that it does not
// report is assumed to be the worst.
struct Inherited {
    std::uint64_t ignoredSignals; // bit n - 1 stands for signal n
    bool hasDefaultScheduling;    // see `resetScheduling`
};

[[nodiscard]] Inherited inheritedState();

// Sets the usual scheduling class and niceness where the process may. A process that runs only when nothing
// else does could be ended by its alarm between two writes.
void resetScheduling();

// Makes waits end on time. A caller may have let the system delay them by minutes.
void resetTimerSlack();

// Prevents the caller's other processes from reading or controlling this one.
void forbidTracing();

// Sets the real, effective and saved user to root, for a process whose effective user is root.
void setAllUserIdsToRoot();

} // namespace Fenwhirl::HelperProcess
