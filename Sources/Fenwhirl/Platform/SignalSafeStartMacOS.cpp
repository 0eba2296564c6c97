#include "Fenwhirl/Platform/SignalSafeStart.h"

#include <spawn.h>

pid_t startInSignalHandler(char* const* arguments) {
    // Here vfork is a fork, which waits for the locks of the heap; after an abort of the heap itself that is
    // for ever. posix_spawn without attributes and actions is one system call.
    char* const noEnvironment[] = {nullptr};
    pid_t child = 0;
    return posix_spawn(&child, arguments[0], nullptr, nullptr, arguments, noEnvironment) == 0 ? child : -1;
}
