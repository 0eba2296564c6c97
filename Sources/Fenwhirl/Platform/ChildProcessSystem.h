// How each system keeps descriptors out of children. Only ChildProcess.cpp includes this.

#pragma once

#include <spawn.h>

// Lets the child have descriptors 0, 1 and 2 only; called after those are set up. False on failure.
[[nodiscard]] bool keepOnlyStandardDescriptors(posix_spawn_file_actions_t& actions, short& flags);

// Opens a pipe with both ends close-on-exec. False on failure.
[[nodiscard]] bool makeCloseOnExecPipe(int (&ends)[2]);

// The environment of this process, as exec takes it.
[[nodiscard]] char** currentEnvironment();
