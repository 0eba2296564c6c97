#include "Fenwhirl/Platform/Toolkit/ChildProcessSystem.h"

#include <fcntl.h>
#include <unistd.h>

namespace Fenwhirl {

bool keepOnlyStandardDescriptors(posix_spawn_file_actions_t& actions, short&) {
    // Our own descriptors are close-on-exec anyway. This is for libraries that forget to set the flag.
    return posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1) == 0;
}

bool makeCloseOnExecPipe(int (&ends)[2]) {
    return pipe2(ends, O_CLOEXEC) == 0;
}

char** currentEnvironment() {
    return environ;
}

} // namespace Fenwhirl
