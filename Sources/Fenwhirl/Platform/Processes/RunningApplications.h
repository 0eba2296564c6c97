// Applications as the system's application framework knows them.
//
// macOS has an object for every application with a user interface; through it the application can be asked to
// quit as from its own menu. Linux has no equivalent: there no process counts as an application, and quitting
// uses signals.

#pragma once

#include <cstdint>

namespace Fenwhirl {

// Asks the running application with this process identifier to terminate or, with `force`, terminates it
// without its consent. True when there is such an application, whatever it answers; otherwise false. Main
// thread.
[[nodiscard]] bool askApplicationToTerminate(std::int32_t pid, bool force);

} // namespace Fenwhirl
