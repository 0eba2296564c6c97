// Numbers as text and as whole numbers, the same in every locale.
//
// The C library's formatting follows the process's locale, which the application's toolkit changes at start;
// what goes into the report must not. Thread-safe: no state.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace NumberText {

// What "%.2f" gives in the C locale: exact, ties to even, every digit of large values; "nan", "inf", "-inf".
[[nodiscard]] std::string twoDecimals(double value);

// Truncated toward zero and brought into the range of the result; absent for NaN and the infinities.
[[nodiscard]] std::optional<std::int64_t> saturatedWhole(double value);

// Truncated toward zero; absent when the result cannot hold it.
[[nodiscard]] std::optional<std::int64_t> exactWhole(double value);

// The truncated value in decimal digits, "?" where there is none.
[[nodiscard]] std::string wholeOrQuestionMark(std::optional<double> value);

} // namespace NumberText
