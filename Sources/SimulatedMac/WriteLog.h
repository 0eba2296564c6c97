// A log of every write that reached the simulated SMC, granted or refused: what, when and by whom.

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
    double steadySeconds = 0; // since an arbitrary moment; never set back
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
    // The oldest entries are dropped to make room for new ones. Their numbers are not used again.
    static constexpr std::size_t capacity = 100'000;

    // Assigns the entry's number.
    const WriteEntry& add(WriteEntry entry);

    // The number of the last entry; 0 when nothing has been written yet.
    [[nodiscard]] std::uint64_t last() const { return last_; }

    [[nodiscard]] const std::deque<WriteEntry>& entries() const { return entries_; }

    // The first remaining entry with a number greater than this one; entries().end() if there is none.
    [[nodiscard]] std::deque<WriteEntry>::const_iterator after(std::uint64_t number) const;

private:
    std::deque<WriteEntry> entries_;
    std::uint64_t last_ = 0;
};

// The entry in one line, without trailing blanks in key and type, such as
// "write 17 time=2026-03-01T12:00:00.123Z at=12.345 pid=4711 uid=0 key=F0Tg type=fpe2 bytes=2EE0
// value=3000.00 kernel=0x00000000 result=0x00".
[[nodiscard]] std::string writeEntryText(const WriteEntry& entry);

} // namespace simulated
