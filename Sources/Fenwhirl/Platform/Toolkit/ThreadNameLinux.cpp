#include "Fenwhirl/Platform/Toolkit/ThreadName.h"

#include <pthread.h>

void nameCurrentThread(const std::string& name) {
    // The kernel keeps 15 bytes, and the C library rejects longer names instead of truncating them.
    constexpr std::size_t room = 15;
    pthread_setname_np(pthread_self(), name.substr(0, room).c_str());
}
