// The helper's command line: one command, one exit status, nothing remembered.
//
// Runs as root with arguments that anybody may choose. Prints nothing but the answers of "version" and
// "test"; the exit status is the whole answer otherwise, and an answer that cannot be printed, or that nobody
// reads for three seconds, does not change it.
//
//   version        prints "3"; the only command that does not need the controller
//   set INDEX RPM  drives one fan at a speed
//   auto [INDEX]   hands one fan back to automatic control; all of them without an index or with one that is
//                  no number
//   test           drives the first fan for some seconds, hands all back, prints what happened
//
// The process is expected to have been prepared by HelperProcess.h. Main thread.

#pragma once

#include "FenwhirlCore/SMC.h"

#include <functional>
#include <memory>
#include <span>

namespace HelperMode {

// What `run` returns, and with it the process.
inline constexpr int success = 0;
inline constexpr int smcFailure = 1;     // a write was refused or a key is missing
inline constexpr int smcUnavailable = 2; // the controller could not be found or opened
inline constexpr int usageError = 64;

using OpenSMC = std::function<std::unique_ptr<SMC>()>;

// Carries out one command; `arguments` is what followed "--helper", the command word first. The connection
// that `openSMC` yields is closed on return; null means that there is no controller, which is found out
// before the command word is judged.
[[nodiscard]] int run(std::span<char* const> arguments, const OpenSMC& openSMC = SMC::open);

} // namespace HelperMode
