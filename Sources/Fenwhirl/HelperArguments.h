// Parses the two numbers of the helper's command line.
//
// Any user who can log in can start the set-user-ID helper with arbitrary text. Both parsers
// therefore accept a text as a whole or not at all, and depend on nothing outside it: no locale, no
// environment. Pure and thread-safe.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Fenwhirl::HelperArguments {

// A base-10 signed 64-bit integer: one optional "+" or "-", then ASCII digits, and nothing else. Absent for
// any other text and for a value outside the range. Negative values are returned unchanged: the SMC decides
// what a fan of that index means.
[[nodiscard]] std::optional<std::int64_t> parseIndex(std::string_view text);

// A floating-point number as strtod reads it in the C locale; the whole text must be that number: sign,
// digits with an optional "." fraction, exponent, hexadecimal form, "inf" and "nan". Unlike strtod it accepts
// no leading blank. A value beyond the range of double becomes infinite. `text` is NUL-terminated.
[[nodiscard]] std::optional<double> parseRPM(const char* text);

} // namespace Fenwhirl::HelperArguments
