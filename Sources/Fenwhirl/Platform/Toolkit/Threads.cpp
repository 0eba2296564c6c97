#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <cstdlib>

namespace Fenwhirl {

void MainThread::assertIsCurrent() const {
    if (!isCurrent()) {
        std::abort();
    }
}

void ThreadAffinity::assertIsCurrent() const {
    const std::thread::id current = std::this_thread::get_id();
    std::thread::id owner;
    if (!owner_.compare_exchange_strong(owner, current) && owner != current) {
        std::abort();
    }
}

} // namespace Fenwhirl
