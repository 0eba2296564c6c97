// Any text as the helper's index and speed, against parsers written another way.

#include "Fenwhirl/HelperArguments.h"
#include "FuzzInput.h"

#include <cmath>
#include <cstdlib>
#include <regex>
#include <string>

namespace {

// Digit by digit, in a type that cannot overflow on the way.
std::optional<std::int64_t> indexByHand(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    if (text.empty())
        return std::nullopt;
    constexpr long double limit = 9223372036854775808.0L;
    long double value = 0;
    std::uint64_t exact = 0;
    for (const char character : text) {
        if (character < '0' || character > '9')
            return std::nullopt;
        value = std::fmin(value * 10 + static_cast<long double>(character - '0'), limit * 4);
        exact = exact * 10 + static_cast<std::uint64_t>(character - '0');
    }
    if (value > limit || (value == limit && !isNegative))
        return std::nullopt;
    return static_cast<std::int64_t>(isNegative ? 0 - exact : exact);
}

// What the C locale's strtod calls a number, spelled out.
bool isNumber(const std::string& text) {
    static const std::regex number("[+-]?("
                                   "([0-9]+\\.?[0-9]*|\\.[0-9]+)(e[+-]?[0-9]+)?|"
                                   "0x([0-9a-f]+\\.?[0-9a-f]*|\\.[0-9a-f]+)(p[+-]?[0-9]+)?|"
                                   "inf(inity)?|nan(\\([0-9a-z_]*\\))?"
                                   ")",
                                   std::regex::ECMAScript | std::regex::icase | std::regex::optimize);
    return std::regex_match(text, number);
}

bool isSame(double one, double other) {
    return one == other || (std::isnan(one) && std::isnan(other));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size < 200 ? size : 200);
    fuzzExpect(HelperArguments::parseIndex(text) == indexByHand(text), "an index is what the digits say");

    // An argument ends at its first NUL.
    const std::string argument = text.c_str();
    const auto rpm = HelperArguments::parseRPM(argument.c_str());
    fuzzExpect(rpm.has_value() == isNumber(argument), "a speed is a whole number text and nothing else");
    // This program never leaves the C locale.
    fuzzExpect(!rpm || isSame(*rpm, std::strtod(argument.c_str(), nullptr)), "a speed is what strtod reads");
    return 0;
}
