// The helper's command line: one command, one exit status, nothing remembered.
//
// Runs as root with arguments that anybody may choose. Prints nothing but the answers of "version" and
// "test"; the exit status is the whole answer otherwise.

#pragma once

#include <span>

namespace HelperMode {

// What `run` returns, and with it the process.
inline constexpr int success = 0;
inline constexpr int smcFailure = 1;     // a write was refused or a key is missing
inline constexpr int smcUnavailable = 2; // the controller could not be found or opened
inline constexpr int usageError = 64;

// Carries out one command; `arguments` is what followed "--helper", the command word first.
[[nodiscard]] int run(std::span<char* const> arguments);

} // namespace HelperMode
