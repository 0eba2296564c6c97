#include "Fenwhirl/Platform/Toolkit/SignalSafeStart.h"

#include <unistd.h>

namespace Fenwhirl {

pid_t startInSignalHandler(char* const* arguments) {
    char* const noEnvironment[] = {nullptr};
    // The child only calls exec, which is what vfork is for. posix_spawn would map a stack for the child.
    const pid_t child = vfork(); // NOLINT(clang-analyzer-security.insecureAPI.vfork)
    if (child == 0) {
        execve(arguments[0], arguments, noEnvironment);
        _exit(127);
    }
    return child;
}

} // namespace Fenwhirl
