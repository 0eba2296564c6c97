#include "Fenwhirl/Platform/Toolkit/SignalSafeStart.h"

#include <spawn.h>

namespace Fenwhirl {

pid_t startInSignalHandler(char* const* arguments) {
    // On macOS vfork is fork, which waits for the locks of the heap; after an abort inside the heap it would
    // wait for ever. posix_spawn without attributes and actions is a single system call.
    char* const noEnvironment[] = {nullptr};
    pid_t child = 0;
    return posix_spawn(&child, arguments[0], nullptr, nullptr, arguments, noEnvironment) == 0 ? child : -1;
}

} // namespace Fenwhirl
