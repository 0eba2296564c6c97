// The code of a key or a type: its four characters as one number, the first in the highest byte.

#pragma once

#include <cstdint>
#include <string_view>

namespace Fenwhirl {

// Uses the first four characters; a shorter text fills the low bytes only. Characters are taken as bytes.
[[nodiscard]] constexpr std::uint32_t fourCharacterCode(std::string_view text) {
    std::uint32_t code = 0;
    for (const char character : text.substr(0, 4)) {
        code = code << 8U | static_cast<std::uint8_t>(character);
    }
    return code;
}

} // namespace Fenwhirl
