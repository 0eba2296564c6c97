// The steps of HelperProcess.h that each system takes in its own way. Only HelperProcess.cpp includes this.

#pragma once

#include <cstdint>

namespace HelperProcess {

// Closes `first` and every descriptor above it, also those above today's limit.
void closeDescriptorsFrom(int first);

// The signals that this process ignores because its caller did: bit n - 1 stands for signal n. Where the
// system cannot tell, every bit is set.
[[nodiscard]] std::uint64_t ignoredSignals();

// No other process of the caller may read this one's memory or steer it.
void forbidTracing();

// Real, effective and saved user become root where the process is entitled to it; otherwise nothing changes.
void becomeRootEntirely();

} // namespace HelperProcess
