// The keys that the simulated SMC holds: their values, and the faults that a command put on them.
//
// A key has the value that the firmware works with and, while it is pinned, another one that readers are
// shown. Order and number of keys are the machine's; a key that was made to vanish keeps its place in the
// enumeration, but every operation on it fails.

#pragma once

#include "SimulatedMac/MachineTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace simulated {

// How a write is turned down: by the kernel (a return code, no record) or by the SMC (a result).
struct WriteRefusal {
    std::uint32_t kernelReturn = 0;
    std::uint8_t result = 0;
};

struct Key {
    KeyRecord record;                  // `bytes` is the firmware's value, `readResult` the answer to a read
    std::optional<ValueBytes> pinned;  // shown instead
    std::optional<std::uint8_t> fault; // answered to reads instead of a value
    std::optional<WriteRefusal> refusal;
    bool vanished = false;

    [[nodiscard]] const ValueBytes& shown() const { return pinned ? *pinned : record.bytes; }
};

class KeyStore {
public:
    explicit KeyStore(const MachineTable& table);

    [[nodiscard]] std::size_t count() const { return keys_.size(); }

    [[nodiscard]] Key& at(std::size_t index) { return keys_[index]; }

    [[nodiscard]] const Key& at(std::size_t index) const { return keys_[index]; }

    // The key of that name, vanished ones included; null when the machine has none.
    [[nodiscard]] Key* find(FourCC code);
    [[nodiscard]] const Key* find(FourCC code) const;

    // Replaces the key of the same name, or adds it at the end; "#KEY" follows the number of keys.
    void define(const KeyRecord& record);

    // The firmware's value as a number; absent for a missing key and for a type without numbers.
    [[nodiscard]] std::optional<double> number(FourCC code) const;

    // Sets the firmware's value. Without effect on a missing key and on a type without numbers.
    void setNumber(FourCC code, double value);

    // What is refused for keys without a refusal of their own.
    std::optional<WriteRefusal> refusalOfAll;

private:
    std::vector<Key> keys_;
    std::vector<std::pair<FourCC, std::size_t>> places_; // sorted by code
};

} // namespace simulated
