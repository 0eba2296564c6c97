// Converts a real number to a whole one, without the undefined behaviour of a plain cast.

#pragma once

#include <cstdint>
#include <optional>

// The number truncated toward zero; absent for NaN, infinities and values that 64 bits cannot represent.
[[nodiscard]] constexpr std::optional<std::int64_t> wholeNumber(double value) {
    constexpr double limit = 9223372036854775808.0; // 2^63, exactly representable
    if (value >= -limit && value < limit) {
        return static_cast<std::int64_t>(value);
    }
    return std::nullopt;
}
