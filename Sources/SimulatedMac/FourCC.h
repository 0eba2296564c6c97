// Four-character codes: the names of SMC keys and of their types, as 32-bit integers with the first character
// in the most significant byte.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulated {

using FourCC = std::uint32_t;

// The code of a literal of exactly four characters: fourCC("FNum"), fourCC("FS! ").
consteval FourCC fourCC(const char (&text)[5]) {
    FourCC code = 0;
    for (int i = 0; i < 4; ++i) {
        code = (code << 8) | static_cast<unsigned char>(text[i]);
    }
    return code;
}

// Parses a code that a person typed: one to four printable characters, padded with blanks on the right ("FS!"
// names the key "FS! "), or "0x" and eight hexadecimal digits for a code that cannot be typed.
[[nodiscard]] std::optional<FourCC> parseFourCC(std::string_view text);

// The four characters; a byte that is not printable ASCII is shown as "?".
[[nodiscard]] std::string fourCCText(FourCC code);

// The key of fan number `fan` with a two-letter suffix, for example fanKey(1, "Tg") for "F1Tg". `fan` is 0 to
// 9, because a key has room for one digit only.
constexpr FourCC fanKey(unsigned fan, const char (&suffix)[3]) {
    return (FourCC{'F'} << 24) | ((FourCC{'0'} + fan) << 16) |
           (FourCC{static_cast<unsigned char>(suffix[0])} << 8) | static_cast<unsigned char>(suffix[1]);
}

} // namespace simulated
