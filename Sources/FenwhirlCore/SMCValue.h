// Converts between the binary data types of SMC values and their single numeric representation, a double.
//
// Integers are big-endian. The exception is "flt ", which is stored little-endian by the machines that have
// it. A type code is compared as exactly four characters, trailing blank included ("flt ", "ui8 "). The
// meanings of the types are those of the firmware, as its key tables show them. Which types can be written,
// and 16000 rpm as the highest fixed-point fan target, are this program's own choice. Pure functions:
// thread-safe, no state.

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace Fenwhirl::SMCValue {

// The number that the bytes represent. Absent when the type is unknown or there are too few bytes;
// extra bytes are ignored. Types: "flt ", "sp78" (signed, 8 fraction bits), "fpe2" (unsigned; its 2
// fraction bits are dropped, so fan speeds are whole), "ui8 ", "ui16", "ui32". Infinities and NaN of
// "flt " are passed through.
[[nodiscard]] std::optional<double> decode(std::string_view type, std::span<const std::uint8_t> bytes);

// The bytes for a value. Absent when the type cannot be written. Writable: "flt " (rounded to single
// precision), "fpe2" (0…16000), "ui8 " (0…255), "ui16" (0…65535). The value is first clamped to the range,
// then truncated toward zero. Precondition: the value is finite; anything else is a programming error and
// ends the process.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encode(std::string_view type, double value);

} // namespace Fenwhirl::SMCValue
