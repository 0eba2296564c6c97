#include "Fenwhirl/Platform/Toolkit/ThreadName.h"

#include <pthread.h>

void nameCurrentThread(const std::string& name) {
    pthread_setname_np(name.c_str());
}
