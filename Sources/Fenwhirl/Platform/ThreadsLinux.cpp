#include "Fenwhirl/Platform/Threads.h"

#include <unistd.h>

bool MainThread::isCurrent() {
    return gettid() == getpid();
}
