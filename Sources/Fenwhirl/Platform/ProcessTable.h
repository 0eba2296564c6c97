// The processes of this machine: the listing of them all, and one of them for sure.
//
// A listing is made by the system's `ps`, with the exact environment LC_ALL=C, LANG=C (decimal points), and
// holds one line per process: identifier, percent of one processor core, resident KiB, path of the
// executable. On macOS that is the tool's own output. On Linux its percentages would be averages over each
// process's life, of which the lately busy ones are the least part; there the share is that of the time since
// the last listing, and processes whose path is hidden appear by their name.
//
// Threads: one listing at a time, on any thread, which it blocks, and questions about it on that thread;
// everything else from any thread at any time.

#pragma once

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

// When a process started, in a unit of the system's own. Together with the identifier it names one process
// for good: identifiers are given again to later processes.
using ProcessStart = std::uint64_t;

class ProcessTable {
public:
    ProcessTable() = default;
    virtual ~ProcessTable() = default;
    ProcessTable(const ProcessTable&) = delete;
    ProcessTable& operator=(const ProcessTable&) = delete;
    ProcessTable(ProcessTable&&) = delete;
    ProcessTable& operator=(ProcessTable&&) = delete;

    // The listing as of now; absent when `ps` could not be run or did not end in time. The first one on
    // Linux, and one long after the last, takes `firstInterval` longer, in which the shares are measured.
    [[nodiscard]] virtual std::optional<QByteArray> listing() = 0;

    // When the process that the last listing shows with this identifier started; absent when it has ended
    // before that could be told.
    [[nodiscard]] virtual std::optional<ProcessStart> startWhenListed(std::int32_t pid) const = 0;

    // Makes the listing under way end soon, without result, and every later one at once.
    virtual void cancel() = 0;
};

struct ProcessTableSettings {
    std::string tool = "/bin/ps";
    // A `ps` that runs longer is stuck and is killed: 10 000 processes take it half a second.
    std::chrono::milliseconds limit = std::chrono::seconds(10);
    std::chrono::milliseconds firstInterval = std::chrono::milliseconds(500);
};

[[nodiscard]] std::unique_ptr<ProcessTable> openProcessTable(ProcessTableSettings settings = {});

// When the process with this identifier started; absent when there is none.
[[nodiscard]] std::optional<ProcessStart> startOfProcess(std::int32_t pid);

// Sends a signal to the process with this identifier and this start. Nothing is sent when it has ended, when
// the identifier is not positive (the system would take it for a group of processes) or the caller's own.
// What the system refuses is ignored.
void signalProcess(std::int32_t pid, ProcessStart start, int signal);

// The processors that the system uses now; at least 1.
[[nodiscard]] int activeProcessorCount();
