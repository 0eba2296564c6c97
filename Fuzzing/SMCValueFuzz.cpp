// Fuzzes decoding and encoding with any type, bytes and number, against independently written rules.

#include "FenwhirlCore/SMCValue.h"
#include "FuzzInput.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <string>

namespace Fenwhirl {

namespace {

constexpr const char* knownTypes[] = {"flt ", "sp78", "fpe2", "ui8 ", "ui16", "ui32"};

// Decodes byte by byte, without shifts, as a reader of the format would do by hand.
std::optional<double> decodedByHand(const std::string& type, std::span<const std::uint8_t> bytes) {
    const std::size_t needed = type == "ui8 " ? 1 : type == "flt " || type == "ui32" ? 4 : 2;
    if (bytes.size() < needed) {
        return std::nullopt;
    }
    if (type == "flt ") {
        float number = 0;
        static_assert(std::endian::native == std::endian::little);
        std::memcpy(&number, bytes.data(), sizeof(number));
        return number;
    }
    double number = 0;
    for (const std::uint8_t byte : bytes.first(needed)) {
        number = number * 256 + byte;
    }
    if (type == "sp78") {
        return (number >= 32768 ? number - 65536 : number) / 256;
    }
    return type == "fpe2" ? std::floor(number / 4) : number;
}

double clampedByHand(const std::string& type, double value) {
    const double highest = type == "fpe2" ? 16000 : type == "ui8 " ? 255 : 65535;
    return std::trunc(std::fmin(std::fmax(value, 0), highest));
}

bool isSame(const std::optional<double>& one, const std::optional<double>& other) {
    return one == other || (one && other && std::isnan(*one) && std::isnan(*other));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::uint8_t choice = input.byte();
    const bool isKnown = choice % 8 < 6;
    const auto taken = input.bytes(isKnown ? 0 : choice / 8 % 6);
    const std::string type = isKnown ? knownTypes[choice % 8] : std::string(taken.begin(), taken.end());
    const auto value = std::bit_cast<double>(input.integer<std::uint64_t>());
    const auto bytes = input.bytes(40);

    const auto decoded = SMCValue::decode(type, bytes);
    if (isKnown) {
        fuzzExpect(isSame(decoded, decodedByHand(type, bytes)), "decoding follows the format");
    }

    const bool isWritable = type == "flt " || type == "fpe2" || type == "ui8 " || type == "ui16";
    if (isWritable && !std::isfinite(value)) {
        return 0; // encoding it ends the process, as it should
    }
    const auto encoded = SMCValue::encode(type, value);
    fuzzExpect(encoded.has_value() == isWritable, "exactly four types can be written");
    if (isWritable) {
        const auto back = SMCValue::decode(type, *encoded);
        const double expected =
            type == "flt " ? static_cast<double>(static_cast<float>(value)) : clampedByHand(type, value);
        fuzzExpect(back == expected, "what is written reads as the clamped value");
    }
    return 0;
}

} // namespace Fenwhirl
