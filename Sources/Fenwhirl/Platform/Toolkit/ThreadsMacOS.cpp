#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <pthread.h>

namespace Fenwhirl {

bool MainThread::isCurrent() {
    return pthread_main_np() != 0;
}

void nameCurrentThread(const std::string& name) {
    pthread_setname_np(name.c_str());
}

} // namespace Fenwhirl
