// The road of one record to the System Management Controller and back.
//
// `SMC` builds everything it knows on this interface, so that the same code talks to the macOS kernel, to the
// Linux drivers of a real Mac, to the simulated Mac, and to the scripted controllers of the tests.
//
// Threads: a transport has no lock; its owner uses it from one thread at a time. Calls block that thread.
// Ownership: the connection is open from construction and closed by the destructor; there is no reopening.

#pragma once

#include "FenwhirlCore/SMCRecord.h"

#include <chrono>
#include <memory>
#include <optional>

class SMCTransport {
public:
    SMCTransport() = default;
    SMCTransport(const SMCTransport&) = delete;
    SMCTransport& operator=(const SMCTransport&) = delete;
    virtual ~SMCTransport() = default;

    // One round trip. Absent when the service refused or could not be reached; a record whose `result` is not
    // zero is still returned, its meaning is the caller's affair.
    [[nodiscard]] virtual std::optional<SMCParam> call(const SMCParam& input) = 0;

    // Whether no later call can succeed, so that long enumerations end at once instead of failing index by
    // index.
    [[nodiscard]] virtual bool isDead() const { return false; }

    // Lets time pass between two attempts. Part of the transport so that tests wait in no time.
    virtual void wait(std::chrono::milliseconds duration);
};

// Opens the controller of this computer: on macOS the AppleSMC kernel service; on Linux the kernel's drivers
// when they are present, else the simulated Mac's socket. Null when there is none or it cannot be opened.
// Reads no environment variable and takes no path: a user must not be able to point the privileged helper
// elsewhere.
[[nodiscard]] std::unique_ptr<SMCTransport> openSystemTransport();
