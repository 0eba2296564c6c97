// The applications among the processes, as the system's application framework knows them.
//
// macOS has an object for every application with an interface, through which it can be asked to quit as its
// own menu would. Linux has no such thing: there no process is one, and quitting is a matter of signals.

#pragma once

#include <cstdint>

// Asks the running application with this process identifier to terminate, or terminates it without its
// consent when `force`. True when there is such an application, whatever it answers; false when there is
// none. Main thread.
[[nodiscard]] bool askApplicationToTerminate(std::int32_t pid, bool force);
