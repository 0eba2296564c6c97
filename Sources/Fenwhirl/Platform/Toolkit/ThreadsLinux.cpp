#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <pthread.h>
#include <unistd.h>

namespace Fenwhirl {

bool MainThread::isCurrent() {
    // On Linux the main thread's id is the process id.
    return gettid() == getpid();
}

void nameCurrentThread(const std::string& name) {
    // The kernel keeps 15 bytes, and the C library rejects longer names instead of truncating them.
    constexpr std::size_t room = 15;
    pthread_setname_np(pthread_self(), name.substr(0, room).c_str());
}

} // namespace Fenwhirl
