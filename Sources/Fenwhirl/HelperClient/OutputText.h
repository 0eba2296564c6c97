// Turns the output of another program into text that can be shown and compared. Pure and thread-safe.

#pragma once

#include <string>
#include <string_view>

namespace Fenwhirl {

// The bytes as valid UTF-8. Each invalid sequence (including overlong forms, surrogates and values
// beyond U+10FFFF) becomes U+FFFD, one for each maximal subpart, as in browsers. Everything else is
// unchanged, including NULs.
[[nodiscard]] std::string repairedUTF8(std::string_view bytes);

// The text without blanks and line ends (including Unicode's) at either end; expects valid UTF-8.
[[nodiscard]] std::string trimmed(std::string_view text);

} // namespace Fenwhirl
