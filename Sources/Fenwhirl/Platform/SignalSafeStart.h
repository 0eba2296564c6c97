// Starting a program from the handler of a fatal signal, where the heap may be locked or broken: no memory is
// asked for, no lock is taken, and no fork handler runs.
//
// Threads: any. Async-signal-safe.

#pragma once

#include <sys/types.h>

// Starts `arguments[0]`, an absolute path, with these arguments (a null pointer behind the last one) and an
// empty environment; the caller waits for it. -1 when it cannot be started, or a process that ends with 127.
[[nodiscard]] pid_t startInSignalHandler(char* const* arguments);
