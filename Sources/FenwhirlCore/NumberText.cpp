#include "FenwhirlCore/NumberText.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

namespace Fenwhirl::NumberText {

namespace {

constexpr double beyondInt64 = 9223372036854775808.0; // 2^63

// A finite double as sign, integer and binary exponent: value = significand * 2^exponent.
struct Parts {
    bool negative;
    std::uint64_t significand;
    int exponent;
};

Parts split(double value) {
    constexpr int storedBits = 52;
    constexpr int bias = 1075; // exponent bias for an integer significand: 1023 + 52
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto biased = static_cast<int>((bits >> storedBits) & 0x7FF);
    const std::uint64_t stored = bits & ((std::uint64_t{1} << storedBits) - 1);
    const bool subnormal = biased == 0;
    return {.negative = (bits >> 63) != 0,
            .significand = subnormal ? stored : stored | (std::uint64_t{1} << storedBits),
            .exponent = (subnormal ? 1 : biased) - bias};
}

// All decimal digits of significand * 2^exponent, by repeated doubling of a number stored in base 10^9 limbs.
std::string digitsOfLargeInteger(std::uint64_t significand, int exponent) {
    constexpr std::uint32_t base = 1'000'000'000;
    std::vector<std::uint32_t> limbs; // least significant first
    for (; significand != 0; significand /= base) {
        limbs.push_back(static_cast<std::uint32_t>(significand % base));
    }
    for (int step = 0; step < exponent; ++step) {
        std::uint32_t carry = 0;
        for (std::uint32_t& limb : limbs) {
            const std::uint32_t doubled = limb * 2 + carry;
            carry = doubled / base;
            limb = doubled % base;
        }
        if (carry != 0) {
            limbs.push_back(carry);
        }
    }
    std::string text = std::to_string(limbs.back());
    for (auto limb = limbs.rbegin() + 1; limb != limbs.rend(); ++limb) {
        const std::string digits = std::to_string(*limb);
        text.append(9 - digits.size(), '0').append(digits);
    }
    return text;
}

std::string twoDecimalsOfFraction(std::uint64_t significand, int fractionBits) {
    // With more bits the value is below 2^53 / 2^64, far below the half hundredth that would round up.
    if (fractionBits > 63) {
        return "0.00";
    }
    const std::uint64_t fractionMask = (std::uint64_t{1} << fractionBits) - 1;
    std::uint64_t whole = significand >> fractionBits;
    const std::uint64_t scaled = (significand & fractionMask) * 100; // below 2^53 * 100: no overflow
    std::uint64_t hundredths = scaled >> fractionBits;
    const std::uint64_t rest = scaled & fractionMask;
    const std::uint64_t half = std::uint64_t{1} << (fractionBits - 1);
    if (rest > half || (rest == half && hundredths % 2 == 1)) {
        ++hundredths;
    }
    if (hundredths == 100) {
        hundredths = 0;
        ++whole;
    }
    std::string text = std::to_string(whole);
    text += hundredths < 10 ? ".0" : ".";
    return text += std::to_string(hundredths);
}

} // namespace

std::string twoDecimals(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    const Parts parts = split(value);
    std::string text = parts.negative ? "-" : "";
    if (parts.exponent >= 0) {
        return text += digitsOfLargeInteger(parts.significand, parts.exponent) + ".00";
    }
    return text += twoDecimalsOfFraction(parts.significand, -parts.exponent);
}

std::optional<std::int64_t> exactWhole(double value) {
    if (value >= -beyondInt64 && value < beyondInt64) {
        return static_cast<std::int64_t>(value);
    }
    return std::nullopt;
}

std::optional<std::int64_t> saturatedWhole(double value) {
    if (!std::isfinite(value)) {
        return std::nullopt;
    }
    using Limits = std::numeric_limits<std::int64_t>;
    return exactWhole(value).value_or(value < 0 ? Limits::min() : Limits::max());
}

std::string wholeOrQuestionMark(std::optional<double> value) {
    const auto whole = value ? saturatedWhole(*value) : std::nullopt;
    return whole ? std::to_string(*whole) : "?";
}

} // namespace Fenwhirl::NumberText
