#include "Fenwhirl/Platform/ThreadName.h"

#include <pthread.h>

void nameCurrentThread(const std::string& name) {
    // The kernel keeps 15 bytes and the C library refuses, instead of cutting, what is longer.
    constexpr std::size_t room = 15;
    pthread_setname_np(pthread_self(), name.substr(0, room).c_str());
}
