// How each system keeps file descriptors out of children. Only ChildProcess.cpp includes this.

#pragma once

#include <spawn.h>

namespace Fenwhirl {

// Lets the child inherit only descriptors 0, 1 and 2. Must be called after these are set up. False on
// failure.
[[nodiscard]] bool keepOnlyStandardDescriptors(posix_spawn_file_actions_t& actions, short& flags);

// Opens a pipe with both ends close-on-exec. False on failure.
[[nodiscard]] bool makeCloseOnExecPipe(int (&ends)[2]);

// The environment of this process, in the form that exec expects.
[[nodiscard]] char** currentEnvironment();

} // namespace Fenwhirl
