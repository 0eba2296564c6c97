// Every write that reached the simulated SMC, granted or refused: what, when and by whom.

#pragma once

#include "SimulatedMac/MachineTable.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <sys/types.h>

namespace simulated {

// The process at the other end of a connection, as it was when it connected.
struct Peer {
    pid_t process = 0;
    uid_t user = 0; // effective
};

// A moment on both clocks.
struct Instant {
    double steadySeconds = 0; // since some moment in the past, never set back
    double wallSeconds = 0;   // since 1970, UTC
};

struct WriteEntry {
    std::uint64_t number = 0; // from 1, without gaps
    double wallSeconds = 0;
    double simulatedSeconds = 0;
    Peer peer;
    FourCC code = 0;
    FourCC type = 0; // 0 when there is no such key
    std::uint32_t size = 0;
    ValueBytes bytes{};
    std::uint32_t kernelReturn = 0;
    std::uint8_t result = 0;

    [[nodiscard]] bool granted() const { return kernelReturn == 0 && result == 0; }
};

class WriteLog {
public:
    // Older entries make room for newer ones; their numbers are not used again.
    static constexpr std::size_t capacity = 100'000;

    // Fills in the entry's number.
    const WriteEntry& add(WriteEntry entry);

    // The number of the last entry; 0 when nothing was written yet.
    [[nodiscard]] std::uint64_t last() const { return last_; }

    [[nodiscard]] const std::deque<WriteEntry>& entries() const { return entries_; }

    // The first entry with a number greater than this one, as far as they are kept; entries().end() if none.
    [[nodiscard]] std::deque<WriteEntry>::const_iterator after(std::uint64_t number) const;

private:
    std::deque<WriteEntry> entries_;
    std::uint64_t last_ = 0;
};

// "write 17 time=2026-03-01T12:00:00.123Z at=12.345 pid=4711 uid=0 key=F0Tg type=fpe2 bytes=2EE0
// value=3000.00 kernel=0x00000000 result=0x00" in one line; trailing blanks of key and type are left out.
[[nodiscard]] std::string writeEntryText(const WriteEntry& entry);

} // namespace simulated
