// The two numbers of the helper's command line.
//
// Whoever can log in can start the set-user-ID helper with any text, so both parsers take a text whole or not
// at all and depend on nothing outside it: no locale, no environment. Pure and thread-safe.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace HelperArguments {

// A base-10 signed 64-bit integer: one optional "+" or "-", then ASCII digits, nothing else. Absent for
// anything else and for a value outside the range. Negative values are returned as they are: what a fan of
// that index means is for the SMC to say.
[[nodiscard]] std::optional<std::int64_t> parseIndex(std::string_view text);

// A floating-point number as the C locale's strtod reads it, the whole text being that number: sign, digits
// with an optional "." fraction, exponent, hexadecimal form, "inf" and "nan". Unlike strtod it takes no
// leading blank. Beyond the range of double it is infinite. `text` ends with a NUL of its own.
[[nodiscard]] std::optional<double> parseRPM(const char* text);

} // namespace HelperArguments
