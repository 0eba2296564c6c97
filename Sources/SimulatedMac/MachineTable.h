// The key table of one Mac: which keys its SMC has, in which order, and their types, sizes, attributes and
// recorded values.
//
// The tables are the CSV files in Machines/; Machines/README.md explains their columns and origin. The build
// embeds them into the program, so that it needs no file at run time.

#pragma once

#include "SimulatedMac/FourCC.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulated {

// The bytes of a value that fit into a record; longer values show only their first 32 bytes.
using ValueBytes = std::array<std::uint8_t, 32>;

// Bits of a key's attribute byte.
inline constexpr std::uint8_t attributeReadable = 0x80;
inline constexpr std::uint8_t attributeWritable = 0x40;

struct KeyRecord {
    FourCC code = 0;
    FourCC type = 0;
    std::uint32_t size = 0; // in bytes; may exceed 32
    std::uint8_t attributes = 0;
    std::uint8_t readResult = 0; // the machine's answer to a read: an SMCResult
    ValueBytes bytes{};          // the recorded value; zeros where none was kept
};

struct MachineTable {
    std::string name; // for example "MacBookPro11,4"
    std::vector<KeyRecord> keys;
};

// One embedded CSV file.
struct EmbeddedTable {
    std::string_view name;
    std::string_view csv;
};

// All embedded tables, sorted by name.
[[nodiscard]] std::span<const EmbeddedTable> embeddedTables();

// Parses a table. Absent when a line is malformed; `error` then says which line and why.
[[nodiscard]] std::optional<MachineTable> parseMachineTable(std::string_view name, std::string_view csv,
                                                            std::string& error);

// The embedded table of that name, ignoring case; absent when there is none.
[[nodiscard]] std::optional<MachineTable> findMachine(std::string_view name);

// One line for `--list`: the characteristics of the machine, derived from its table.
[[nodiscard]] std::string describeMachine(const MachineTable& table);

} // namespace simulated
