// Parsing of numbers and words in text from people and programs: command line, commands, tables.
//
// All functions ignore the locale and parse the whole text or nothing: "12x", " 12" and "" are not numbers.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulated {

// A finite decimal number, for example "93.5" or "-4".
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

// A whole number without a sign.
[[nodiscard]] std::optional<std::uint64_t> parseWhole(std::string_view text);

// A number in hexadecimal digits, with or without "0x", of at most 32 bits.
[[nodiscard]] std::optional<std::uint32_t> parseHex(std::string_view text);

// An even number of hexadecimal digits as bytes; absent when there are more than `capacity` bytes.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> parseHexBytes(std::string_view text,
                                                                     std::size_t capacity);

// The bytes as upper-case hexadecimal digits without separators.
[[nodiscard]] std::string hexText(std::span<const std::uint8_t> bytes);

// The parts of `line` between blanks and tabs, without empty ones.
[[nodiscard]] std::vector<std::string_view> splitWords(std::string_view line);

// The parts of `text` between separators, empty ones included.
[[nodiscard]] std::vector<std::string_view> splitFields(std::string_view text, char separator);

// `value` with a fixed number of decimals ("12.50"), with a decimal point in every locale.
[[nodiscard]] std::string fixedText(double value, int decimals);

} // namespace simulated
