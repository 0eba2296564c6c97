// Carries one record to the System Management Controller and brings the answer back.
//
// `SMC` is built on this interface alone, so that the same code talks to the macOS kernel, to the Linux
// drivers of a real Mac, to the simulated Mac, and to the scripted controllers of the tests.
//
// Threads: a transport has no lock; its owner uses it from one thread at a time. Calls block that thread.
// Ownership: the connection is open from construction until destruction; it is never reopened.

#pragma once

#include "FenwhirlCore/SMCRecord.h"

#include <chrono>
#include <memory>
#include <optional>

namespace Fenwhirl {

class SMCTransport {
public:
    SMCTransport() = default;
    SMCTransport(const SMCTransport&) = delete;
    SMCTransport& operator=(const SMCTransport&) = delete;
    virtual ~SMCTransport() = default;

    // One round trip. Absent when the service refused or could not be reached. A record with a non-zero
    // `result` is still returned; the caller interprets it.
    [[nodiscard]] virtual std::optional<SMCParam> call(const SMCParam& input) = 0;

    // Whether every later call would fail, so that long enumerations end at once instead
    // of failing index by index.
    [[nodiscard]] virtual bool isDead() const { return false; }

    // Waits between two attempts. Virtual, so that tests need not really wait.
    virtual void wait(std::chrono::milliseconds duration);
};

// Opens the controller of this computer: on macOS the AppleSMC kernel service; on Linux the kernel's drivers
// if they are present, otherwise the simulated Mac's socket. Null when there is none, or when it cannot be
// opened. Reads no environment variable and takes no path: a user must not be able to point the privileged
// helper elsewhere.
[[nodiscard]] std::unique_ptr<SMCTransport> openSystemTransport();

} // namespace Fenwhirl
