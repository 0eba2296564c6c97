// The processes of this computer: a listing of all of them, and safe access to a single one.
//
// The listing is made by the system's `ps`, with exactly the environment LC_ALL=C, LANG=C (for decimal
// points). It has one line per process: identifier, percent of one processor core, resident KiB, path of the
// executable. On macOS this is the tool's own output. On Linux the tool's percentages would be averages over
// each process's lifetime, which hardly show recent load. There the share is measured since the last listing,
// a process whose path is hidden appears under its name, and letters that are not ASCII are not replaced.
//
// Threads: one listing at a time, on any thread, which it blocks; `startWhenListed` on that same thread.
// Everything else from any thread at any time.

#pragma once

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace Fenwhirl {

// When a process started, in a unit that depends on the system. Together with the identifier it is unique,
// although the system reuses identifiers for later processes.
using ProcessStart = std::uint64_t;

class ProcessTable {
public:
    ProcessTable() = default;
    virtual ~ProcessTable() = default;
    ProcessTable(const ProcessTable&) = delete;
    ProcessTable& operator=(const ProcessTable&) = delete;
    ProcessTable(ProcessTable&&) = delete;
    ProcessTable& operator=(ProcessTable&&) = delete;

    // The current listing; absent when `ps` could not be run or did not end in time. On Linux the first
    // listing, and one long after the last, takes `firstInterval` longer, because the shares are measured in
    // that time.
    [[nodiscard]] virtual std::optional<QByteArray> listing() = 0;

    // When the process that has this identifier in the last listing started; absent when it ended before its
    // start could be determined.
    [[nodiscard]] virtual std::optional<ProcessStart> startWhenListed(std::int32_t pid) const = 0;

    // Makes the current listing end soon, without a result, and every later one at once.
    virtual void cancel() = 0;
};

struct ProcessTableSettings {
    std::string tool = "/bin/ps";
    // The time limit after which a `ps` counts as stuck and is killed. For 10 000 processes it needs half a
    // second.
    std::chrono::milliseconds limit = std::chrono::seconds(10);
    std::chrono::milliseconds firstInterval = std::chrono::milliseconds(500);
};

[[nodiscard]] std::unique_ptr<ProcessTable> openProcessTable(ProcessTableSettings settings = {});

// When the process with this identifier started; absent when there is no such process.
[[nodiscard]] std::optional<ProcessStart> startOfProcess(std::int32_t pid);

// Sends a signal to the process with this identifier and this start. Does nothing when that process has
// ended, when the identifier is the caller's own, or when it is not positive (the system would take it for a
// process group). A refusal by the system is ignored.
void signalProcess(std::int32_t pid, ProcessStart start, int signal);

// The number of processors in use by the system; at least 1.
[[nodiscard]] int activeProcessorCount();

} // namespace Fenwhirl
