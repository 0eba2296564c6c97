// Hands the fans back from inside a fatal signal: an invalid access, a failed precondition, an illegal
// instruction, a trap. The process then dies by that very signal.
//
// Everything that needs memory is done beforehand: `prepare` makes complete argument lists and publishes them
// by one atomic pointer; the handler only starts the helper for each of them and waits. It takes no lock, and
// a second thread that crashes meanwhile waits. Helpers of other threads are waited for first, new ones
// refused, so that the hand-back is the last word.
//
// Threads: `install` on the main thread, `prepare` on any. A thread that may overflow its stack needs an
// AlternateSignalStack of its own; `install` gives the main thread one.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <string>

namespace LastAct {

// From now on fatal signals are acted on. Once in a process.
void install();

// What the next fatal signal hands back, and the helper that does it.
void prepare(const std::string& helperPath, const HandBack& handBack);

} // namespace LastAct
