#include "SimulatedMac/TextParsing.h"

#include "SimulatedMac/FourCC.h"

#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace simulated {

namespace {

// The program never calls setlocale; this guards against a library that does.
locale_t plainLocale() {
    static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

} // namespace

std::optional<double> parseNumber(std::string_view text) {
    if (text.empty() || text.size() > 64 ||
        text.find_first_not_of("+-.0123456789eE") != std::string_view::npos) {
        return std::nullopt;
    }
    const std::string copy(text);
    char* end = nullptr;
    const double value = ::strtod_l(copy.c_str(), &end, plainLocale());
    if (end != copy.c_str() + copy.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::uint64_t> parseWhole(std::string_view text) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::uint32_t> parseHex(std::string_view text) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
    }
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::vector<std::uint8_t>> parseHexBytes(std::string_view text, std::size_t capacity) {
    if (text.size() % 2 != 0 || text.size() / 2 > capacity) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* digits = text.data() + 2 * i;
        const auto [end, error] = std::from_chars(digits, digits + 2, bytes[i], 16);
        if (error != std::errc{} || end != digits + 2) {
            return std::nullopt;
        }
    }
    return bytes;
}

std::string hexText(std::span<const std::uint8_t> bytes) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

std::vector<std::string_view> splitWords(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t at = 0;
    while (at < line.size()) {
        if (isBlank(line[at])) {
            ++at;
            continue;
        }
        const std::size_t begin = at;
        while (at < line.size() && !isBlank(line[at])) {
            ++at;
        }
        words.push_back(line.substr(begin, at - begin));
    }
    return words;
}

std::vector<std::string_view> splitFields(std::string_view text, char separator) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t end = text.find(separator);
        fields.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return fields;
        }
        text.remove_prefix(end + 1);
    }
}

std::string fixedText(double value, int decimals) {
    std::array<char, 400> buffer{}; // the longest finite double has 309 digits before the decimal point
    const locale_t before = ::uselocale(plainLocale());
    const int length = std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    ::uselocale(before);
    return length > 0 ? std::string(buffer.data(), static_cast<std::size_t>(length)) : std::string();
}

std::optional<FourCC> parseFourCC(std::string_view text) {
    if (text.size() == 10 && text.starts_with("0x")) {
        return parseHex(text);
    }
    if (text.empty() || text.size() > 4) {
        return std::nullopt;
    }
    FourCC code = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const char character = i < text.size() ? text[i] : ' ';
        if (character < ' ' || character > '~') {
            return std::nullopt;
        }
        code = (code << 8) | static_cast<unsigned char>(character);
    }
    return code;
}

std::string fourCCText(FourCC code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto character = static_cast<unsigned char>(code >> shift);
        text += character >= ' ' && character <= '~' ? static_cast<char>(character) : '?';
    }
    return text;
}

} // namespace simulated
