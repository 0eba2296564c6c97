// Conversion between SMC values and numbers, for every numeric type.
//
//   "flt "        IEEE-754 single precision, little-endian
//   "spXY"        signed fixed point in two bytes, big-endian: X integer and Y fraction bits (hexadecimal
//                 digits, together 15), for example "sp78"
//   "fpXY"        the same unsigned (together 16), for example "fpe2"
//   "ui8 " "ui16" "ui32" "ui64", "si8 " "si16" "si32"   integers, big-endian; "flag" is one byte
//
// The simulated Mac deliberately does not share the product's code for this: the same error on both sides
// would cancel out and go unnoticed.

#pragma once

#include "SimulatedMac/FourCC.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace simulated {

// The number in `bytes`; absent for a non-numeric type and when there are too few bytes.
[[nodiscard]] std::optional<double> decodeValue(FourCC type, std::span<const std::uint8_t> bytes);

// Writes `value` into the first bytes of `bytes`, rounded to the nearest step and clamped to the type's range
// (a NaN becomes 0 in an integer or fixed-point type). False, with nothing written, for a non-numeric type
// and when there is too little room.
[[nodiscard]] bool encodeValue(FourCC type, double value, std::span<std::uint8_t> bytes);

// The number of bytes that the type takes; 0 for a non-numeric type.
[[nodiscard]] std::size_t valueSize(FourCC type);

} // namespace simulated
