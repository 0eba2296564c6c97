#include "Fenwhirl/Platform/ChildProcessSystem.h"

#include <fcntl.h>
#include <unistd.h>

bool keepOnlyStandardDescriptors(posix_spawn_file_actions_t& actions, short&) {
    // Ours are close-on-exec anyway; this is for those of libraries that forget it.
    return posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1) == 0;
}

bool makeCloseOnExecPipe(int (&ends)[2]) {
    return pipe2(ends, O_CLOEXEC) == 0;
}

char** currentEnvironment() {
    return environ;
}
