// The keys of the simulated SMC: their values, and the faults that commands have set on them.
//
// A key has the value that the firmware works with. While it is pinned it has a second one, which readers see
// instead. The number and order of the keys are the machine's. A vanished key keeps its index, but every
// operation on it fails.

#pragma once

#include "SimulatedMac/MachineTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace simulated {

// How a write is refused: by the kernel (a return code, no record) or by the SMC (a result).
struct WriteRefusal {
    std::uint32_t kernelReturn = 0;
    std::uint8_t result = 0;
};

struct Key {
    KeyRecord record;                  // `bytes` is the firmware's value, `readResult` the answer to a read
    std::optional<ValueBytes> pinned;  // what readers see instead
    std::optional<std::uint8_t> fault; // the result of every read, instead of a value
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

    // The key of that name, even if it has vanished; null when the machine has none.
    [[nodiscard]] Key* find(FourCC code);
    [[nodiscard]] const Key* find(FourCC code) const;

    // Replaces the key of the same name, or appends it; "#KEY" is updated to the number of keys.
    void define(const KeyRecord& record);

    // The firmware's value as a number; absent for a missing key and for a non-numeric type.
    [[nodiscard]] std::optional<double> number(FourCC code) const;

    // Sets the firmware's value. Has no effect on a missing key or a non-numeric type.
    void setNumber(FourCC code, double value);

    // How writes are refused to keys without a refusal of their own.
    std::optional<WriteRefusal> refusalOfAll;

private:
    std::vector<Key> keys_;
    std::vector<std::pair<FourCC, std::size_t>> places_; // sorted by code
};

} // namespace simulated
