#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <unistd.h>

bool MainThread::isCurrent() {
    // On Linux the main thread's id is the process id.
    return gettid() == getpid();
}
