// The only way in which this library ends the process: a precondition of an operation is broken, no correct
// continuation exists, and a fan must not be driven by a guess.
//
// Defined alone in its source file, so that a program that links the static library (a fuzz target) can
// supply its own definition and examine what led there.

#pragma once

namespace Fenwhirl {

// Ends the process by abort().
[[noreturn]] void stopOnBrokenPrecondition();

} // namespace Fenwhirl
