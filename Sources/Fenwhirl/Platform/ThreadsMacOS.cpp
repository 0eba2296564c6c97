#include "Fenwhirl/Platform/Threads.h"

#include <pthread.h>

bool MainThread::isCurrent() {
    return pthread_main_np() != 0;
}
