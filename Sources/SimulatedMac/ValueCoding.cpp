#include "SimulatedMac/ValueCoding.h"

#include <bit>
#include <cmath>

namespace simulated {

namespace {

// The layout of a number that is stored as an integer of `size` bytes, in units of 2^-fractionBits.
struct FixedPoint {
    std::size_t size;
    bool isSigned;
    int fractionBits;
};

std::optional<int> hexDigit(unsigned char character) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    if (character >= 'a' && character <= 'f') {
        return character - 'a' + 10;
    }
    return std::nullopt;
}

std::optional<FixedPoint> fixedPoint(FourCC type) {
    switch (type) {
    case fourCC("ui8 "):
    case fourCC("flag"):
        return FixedPoint{.size = 1, .isSigned = false, .fractionBits = 0};
    case fourCC("ui16"):
        return FixedPoint{.size = 2, .isSigned = false, .fractionBits = 0};
    case fourCC("ui32"):
        return FixedPoint{.size = 4, .isSigned = false, .fractionBits = 0};
    case fourCC("ui64"):
        return FixedPoint{.size = 8, .isSigned = false, .fractionBits = 0};
    case fourCC("si8 "):
        return FixedPoint{.size = 1, .isSigned = true, .fractionBits = 0};
    case fourCC("si16"):
        return FixedPoint{.size = 2, .isSigned = true, .fractionBits = 0};
    case fourCC("si32"):
        return FixedPoint{.size = 4, .isSigned = true, .fractionBits = 0};
    default:
        break;
    }
    const bool isSigned = (type >> 16) == (fourCC("sp  ") >> 16);
    if (!isSigned && (type >> 16) != (fourCC("fp  ") >> 16)) {
        return std::nullopt;
    }
    const auto integerBits = hexDigit(static_cast<unsigned char>(type >> 8));
    const auto fractionBits = hexDigit(static_cast<unsigned char>(type));
    if (!integerBits || !fractionBits || *integerBits + *fractionBits != (isSigned ? 15 : 16)) {
        return std::nullopt;
    }
    return FixedPoint{.size = 2, .isSigned = isSigned, .fractionBits = *fractionBits};
}

} // namespace

std::size_t valueSize(FourCC type) {
    if (type == fourCC("flt ")) {
        return 4;
    }
    const auto format = fixedPoint(type);
    return format ? format->size : 0;
}

std::optional<double> decodeValue(FourCC type, std::span<const std::uint8_t> bytes) {
    const std::size_t size = valueSize(type);
    if (size == 0 || bytes.size() < size) {
        return std::nullopt;
    }
    if (type == fourCC("flt ")) {
        std::uint32_t bits = 0;
        for (std::size_t i = 4; i > 0; --i) {
            bits = (bits << 8) | bytes[i - 1];
        }
        return static_cast<double>(std::bit_cast<float>(bits));
    }
    const FixedPoint format = *fixedPoint(type);
    std::uint64_t raw = 0;
    for (std::size_t i = 0; i < size; ++i) {
        raw = (raw << 8) | bytes[i];
    }
    if (!format.isSigned) {
        return std::ldexp(static_cast<double>(raw), -format.fractionBits);
    }
    const unsigned unusedBits = 64 - 8 * static_cast<unsigned>(size);
    const auto extended = static_cast<std::int64_t>(raw << unusedBits) >> unusedBits;
    return std::ldexp(static_cast<double>(extended), -format.fractionBits);
}

bool encodeValue(FourCC type, double value, std::span<std::uint8_t> bytes) {
    const std::size_t size = valueSize(type);
    if (size == 0 || bytes.size() < size) {
        return false;
    }
    if (type == fourCC("flt ")) {
        auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
        for (std::size_t i = 0; i < 4; ++i) {
            bytes[i] = static_cast<std::uint8_t>(bits);
            bits >>= 8;
        }
        return true;
    }
    const FixedPoint format = *fixedPoint(type);
    const int valueBits = 8 * static_cast<int>(size) - (format.isSigned ? 1 : 0);
    const double lowest = format.isSigned ? -std::ldexp(1.0, valueBits) : 0.0;
    const double beyond = std::ldexp(1.0, valueBits);
    const double steps = std::round(std::ldexp(value, format.fractionBits));
    std::uint64_t raw = 0; // also the result for a NaN
    if (steps >= beyond) {
        // Shifting by all 64 bits would be undefined behaviour.
        raw = (valueBits == 64 ? 0 : (std::uint64_t{1} << valueBits)) - 1;
    } else if (steps > lowest) {
        raw = format.isSigned ? static_cast<std::uint64_t>(static_cast<std::int64_t>(steps))
                              : static_cast<std::uint64_t>(steps);
    } else if (steps <= lowest) {
        raw = format.isSigned ? std::uint64_t{1} << valueBits : 0;
    }
    for (std::size_t i = size; i > 0; --i) {
        bytes[i - 1] = static_cast<std::uint8_t>(raw);
        raw >>= 8;
    }
    return true;
}

} // namespace simulated
