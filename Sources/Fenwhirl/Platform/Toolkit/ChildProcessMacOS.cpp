#include "Fenwhirl/Platform/Toolkit/ChildProcessSystem.h"

#include <crt_externs.h>
#include <fcntl.h>
#include <unistd.h>

namespace Fenwhirl {

bool keepOnlyStandardDescriptors(posix_spawn_file_actions_t&, short& flags) {
    // The child closes everything that the file actions do not name. macOS cannot create a pipe that is
    // close-on-exec from the start, so this flag also keeps the half-made pipe of another thread out of our
    // children.
    flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
    return true;
}

bool makeCloseOnExecPipe(int (&ends)[2]) {
    if (pipe(ends) != 0) {
        return false;
    }
    for (const int end : ends) {
        if (fcntl(end, F_SETFD, FD_CLOEXEC) != 0) {
            close(ends[0]);
            close(ends[1]);
            return false;
        }
    }
    return true;
}

char** currentEnvironment() {
    return *_NSGetEnviron();
}

} // namespace Fenwhirl
