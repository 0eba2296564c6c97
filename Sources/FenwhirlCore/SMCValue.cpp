#include "FenwhirlCore/SMCValue.h"

#include "FenwhirlCore/Precondition.h"

#include <bit>
#include <cmath>

namespace Fenwhirl::SMCValue {

namespace {

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes) {
        number = number << 8U | byte;
    }
    return number;
}

double littleEndianFloat(std::span<const std::uint8_t, 4> bytes) {
    std::uint32_t bits = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) {
        bits = bits << 8U | bytes[i];
    }
    return static_cast<double>(std::bit_cast<float>(bits));
}

std::vector<std::uint8_t> littleEndianFloatBytes(double value) {
    const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
    return {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8U),
            static_cast<std::uint8_t>(bits >> 16U), static_cast<std::uint8_t>(bits >> 24U)};
}

std::uint32_t truncatedWithin(double value, double highest) {
    if (value <= 0) {
        return 0;
    }
    return static_cast<std::uint32_t>(value > highest ? highest : value);
}

std::vector<std::uint8_t> bigEndian16(std::uint32_t number) {
    return {static_cast<std::uint8_t>(number >> 8U), static_cast<std::uint8_t>(number)};
}

constexpr double highestFanTargetRPM = 16000; // for "fpe2", whatever the fan's own maximum is

} // namespace

std::optional<double> decode(std::string_view type, std::span<const std::uint8_t> bytes) {
    if (type == "flt " && bytes.size() >= 4) {
        return littleEndianFloat(bytes.first<4>());
    }
    if (type == "sp78" && bytes.size() >= 2) {
        return static_cast<std::int16_t>(bigEndian(bytes.first(2))) / 256.0;
    }
    if (type == "fpe2" && bytes.size() >= 2) {
        return bigEndian(bytes.first(2)) >> 2U;
    }
    if (type == "ui8 " && !bytes.empty()) {
        return bytes[0];
    }
    if (type == "ui16" && bytes.size() >= 2) {
        return bigEndian(bytes.first(2));
    }
    if (type == "ui32" && bytes.size() >= 4) {
        return bigEndian(bytes.first(4));
    }
    return std::nullopt;
}

std::optional<std::vector<std::uint8_t>> encode(std::string_view type, double value) {
    const bool isFloat = type == "flt ";
    const bool isFanSpeed = type == "fpe2";
    const bool isByte = type == "ui8 ";
    if (!isFloat && !isFanSpeed && !isByte && type != "ui16") {
        return std::nullopt;
    }
    if (!std::isfinite(value)) {
        stopOnBrokenPrecondition();
    }

    if (isFloat) {
        return littleEndianFloatBytes(value);
    }
    if (isFanSpeed) {
        return bigEndian16(truncatedWithin(value, highestFanTargetRPM) << 2U);
    }
    if (isByte) {
        return std::vector{static_cast<std::uint8_t>(truncatedWithin(value, 255))};
    }
    return bigEndian16(truncatedWithin(value, 65535));
}

} // namespace Fenwhirl::SMCValue
