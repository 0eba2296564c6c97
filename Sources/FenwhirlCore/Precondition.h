// The one way in which this library ends the process: a precondition of an operation does not hold, so there
// is no right way to go on, and a fan must not be driven by a guess.
//
// Defined alone in its source file, so that a program which links the static library (a fuzz target) can put
// its own definition in its place and look at what led there.

#pragma once

// Ends the process by abort().
[[noreturn]] void stopOnBrokenPrecondition();
