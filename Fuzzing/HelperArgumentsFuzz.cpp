// Fuzzes the parsing of the helper's index and speed with any text, and compares it with independently
// written parsers.

#include "Fenwhirl/HelperArguments.h"
#include "FuzzInput.h"

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

namespace Fenwhirl {

namespace {

// Reads digit by digit, in a type that cannot overflow meanwhile.
std::optional<std::int64_t> indexByHand(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    constexpr long double limit = 9223372036854775808.0L;
    long double value = 0;
    std::uint64_t exact = 0;
    for (const char character : text) {
        if (character < '0' || character > '9') {
            return std::nullopt;
        }
        value = std::fmin(value * 10 + static_cast<long double>(character - '0'), limit * 4);
        exact = exact * 10 + static_cast<std::uint64_t>(character - '0');
    }
    if (value > limit || (value == limit && !isNegative)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(isNegative ? 0 - exact : exact);
}

// Reads expected parts from the front of a text.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

    // Reads a word, given in lower case, ignoring case.
    bool take(std::string_view word) {
        if (rest_.size() < word.size()) {
            return false;
        }
        for (std::size_t i = 0; i < word.size(); ++i) {
            if (lowered(rest_[i]) != word[i]) {
                return false;
            }
        }
        rest_.remove_prefix(word.size());
        return true;
    }

    // Reads as many of these characters as there are, and counts them.
    std::size_t takeAll(std::string_view characters) {
        std::size_t count = 0;
        while (count < rest_.size() && characters.find(lowered(rest_[count])) != std::string_view::npos) {
            ++count;
        }
        rest_.remove_prefix(count);
        return count;
    }

private:
    static char lowered(char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    }

    std::string_view rest_;
};

constexpr std::string_view decimal = "0123456789";
constexpr std::string_view hexadecimal = "0123456789abcdef";

bool isDigitsAndExponent(Reader reader, std::string_view digits, std::string_view exponent) {
    std::size_t count = reader.takeAll(digits);
    if (reader.take(".")) {
        count += reader.takeAll(digits);
    }
    if (count == 0) {
        return false;
    }
    if (reader.take(exponent)) {
        if (!reader.take("+")) {
            reader.take("-");
        }
        if (reader.takeAll(decimal) == 0) {
            return false;
        }
    }
    return reader.isAtEnd();
}

// Whether strtod in the C locale accepts the text as a number, spelled out.
bool isNumber(std::string_view text) {
    Reader reader(text);
    if (!reader.take("+")) {
        reader.take("-");
    }
    if (Reader word = reader; word.take("inf")) {
        word.take("inity");
        return word.isAtEnd();
    }
    if (Reader word = reader; word.take("nan")) {
        if (word.isAtEnd()) {
            return true;
        }
        return word.take("(") && (word.takeAll("0123456789abcdefghijklmnopqrstuvwxyz_"), word.take(")")) &&
               word.isAtEnd();
    }
    if (Reader digits = reader; digits.take("0x")) {
        return isDigitsAndExponent(digits, hexadecimal, "p");
    }
    return isDigitsAndExponent(reader, decimal, "e");
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

} // namespace Fenwhirl
