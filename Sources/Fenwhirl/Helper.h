// The helper's command line: one command, one exit status, no state between runs.
//
// Runs as root, with arguments that any user may choose. Prints nothing but the answers of "version" and
// "test"; for the other commands the exit status is the whole answer. An answer that cannot be printed, or
// that nobody reads for three seconds, does not change the exit status.
//
//   version        prints "3"; the only command that does not need the controller
//   set INDEX RPM  drives one fan at a speed
//   auto [INDEX]   hands one fan back to automatic control; without an index, or with one that is not a
//                  number, all of them
//   test           drives the first fan for some seconds, hands all fans back, and prints what happened
//
// HelperProcess.h must have prepared the process. Main thread.

#pragma once

#include "FenwhirlCore/SMC.h"

#include <functional>
#include <memory>
#include <span>

namespace Fenwhirl::HelperMode {

// What `run` returns, and thus the exit status of the process.
inline constexpr int success = 0;
inline constexpr int smcFailure = 1;     // a write was refused or a key is missing
inline constexpr int smcUnavailable = 2; // the controller could not be found or opened
inline constexpr int usageError = 64;

using OpenSMC = std::function<std::unique_ptr<SMC>()>;

// Carries out one command. `arguments` is what followed "--helper", the command itself first. The connection
// that `openSMC` returns is closed on return. Null means that there is no controller; this is checked before
// the command is recognised.
[[nodiscard]] int run(std::span<char* const> arguments, const OpenSMC& openSMC = SMC::open);

} // namespace Fenwhirl::HelperMode
