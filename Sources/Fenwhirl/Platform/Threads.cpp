#include "Fenwhirl/Platform/Threads.h"

#include <cstdlib>

void MainThread::assertIsCurrent() const {
    if (!isCurrent()) {
        std::abort();
    }
}
