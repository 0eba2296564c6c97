#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <pthread.h>

bool MainThread::isCurrent() {
    return pthread_main_np() != 0;
}
