// Formats numbers and converts them to whole numbers, independently of the locale.
//
// The C library formats according to the process's locale, which the application's toolkit changes at start.
// The report must not change with it. Thread-safe: no state.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Fenwhirl::NumberText {

// The text that "%.2f" gives in the C locale: exact, ties to even, every digit of large values, and "nan",
// "inf" or "-inf".
[[nodiscard]] std::string twoDecimals(double value);

// Truncated toward zero and clamped to the range of the result; absent for NaN and the infinities.
[[nodiscard]] std::optional<std::int64_t> saturatedWhole(double value);

// Truncated toward zero; absent when the result type cannot represent it.
[[nodiscard]] std::optional<std::int64_t> exactWhole(double value);

// The truncated value in decimal digits; "?" when there is none.
[[nodiscard]] std::string wholeOrQuestionMark(std::optional<double> value);

} // namespace Fenwhirl::NumberText
