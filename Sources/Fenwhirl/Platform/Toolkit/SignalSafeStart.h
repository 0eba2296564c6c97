// Starts a program from the handler of a fatal signal, where the heap may be locked or corrupt. It allocates
// no memory, takes no lock and runs no fork handlers.
//
// Threads: any. Async-signal-safe.

#pragma once

#include <sys/types.h>

namespace Fenwhirl {

// Starts `arguments[0]`, an absolute path, with these arguments (terminated by a null pointer) and an empty
// environment; the caller must wait for it. When it cannot be started, the result is -1, or a process that
// exits with status 127.
[[nodiscard]] pid_t startInSignalHandler(char* const* arguments);

} // namespace Fenwhirl
