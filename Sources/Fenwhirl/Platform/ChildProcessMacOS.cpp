#include "Fenwhirl/Platform/ChildProcessSystem.h"

#include <crt_externs.h>
#include <fcntl.h>
#include <unistd.h>

bool keepOnlyStandardDescriptors(posix_spawn_file_actions_t&, short& flags) {
    // Everything but what the file actions name is closed in the child; there is no pipe that is born
    // close-on-exec, so this is also what keeps a pipe of another thread out of our children.
    flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
    return true;
}

bool makeCloseOnExecPipe(int (&ends)[2]) {
    if (pipe(ends) != 0)
        return false;
    for (const int end : ends)
        if (fcntl(end, F_SETFD, FD_CLOEXEC) != 0) {
            close(ends[0]);
            close(ends[1]);
            return false;
        }
    return true;
}

char** currentEnvironment() {
    return *_NSGetEnviron();
}
