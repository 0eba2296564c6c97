// SMC values as numbers and back, for every type that carries a number.
//
//   "flt "        IEEE-754 single precision, little-endian
//   "spXY"        signed fixed point in two bytes, big-endian: X integer and Y fraction bits (hexadecimal
//                 digits, together 15), for example "sp78"
//   "fpXY"        the same unsigned (together 16), for example "fpe2"
//   "ui8 " "ui16" "ui32" "ui64", "si8 " "si16" "si32"   integers, big-endian; "flag" is one byte
//
// The simulated Mac has its own coding instead of the product's: an error made on both sides would otherwise
// cancel out and stay unseen.

#pragma once

#include "SimulatedMac/FourCC.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace simulated {

// The number in `bytes`; absent for a type without a numeric meaning and for too few bytes.
[[nodiscard]] std::optional<double> decodeValue(FourCC type, std::span<const std::uint8_t> bytes);

// Writes `value` into the first bytes of `bytes`, rounded to the nearest step and cut at the ends of the
// type's range (a NaN becomes 0 there). False, with nothing written, for a type without a numeric meaning and
// for too little room.
[[nodiscard]] bool encodeValue(FourCC type, double value, std::span<std::uint8_t> bytes);

// How many bytes the type's number takes; 0 for a type without a numeric meaning.
[[nodiscard]] std::size_t valueSize(FourCC type);

} // namespace simulated
