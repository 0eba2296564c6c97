// What another program printed, as text that can be shown and compared. Pure and thread-safe.

#pragma once

#include <string>
#include <string_view>

// The bytes as valid UTF-8: each sequence that is none (also an overlong, a surrogate, one beyond U+10FFFF)
// becomes U+FFFD, one for each maximal piece as in browsers. Everything else, NULs included, stays.
[[nodiscard]] std::string repairedUTF8(std::string_view bytes);

// Without the blanks and line ends (also Unicode's) at both ends; expects valid UTF-8.
[[nodiscard]] std::string trimmed(std::string_view text);
