// Hands the fans back from inside a fatal signal's handler: after an invalid access, a failed precondition,
// an illegal instruction or a trap. The process then dies of that same signal.
//
// Everything that allocates memory is done in advance: `prepare` builds complete argument lists and publishes
// them through one atomic pointer; the handler only starts the helper for each list and waits. The handler
// takes no lock; a second thread that crashes meanwhile waits. The handler first forbids new helper runs and
// waits for those of other threads, so that nothing follows the hand-back.
//
// Threads: `install` on the main thread, `prepare` on any. A thread that may overflow its stack needs an
// AlternateSignalStack of its own; `install` provides one for the main thread.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <string>

namespace Fenwhirl::CrashHandBack {

// Installs the handlers of fatal signals. To be called once in a process.
void install();

// Sets what the next fatal signal hands back, and with which helper.
void prepare(const std::string& helperPath, const HandBack& handBack);

} // namespace Fenwhirl::CrashHandBack
