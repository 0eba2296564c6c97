#include "Fenwhirl/Platform/Toolkit/Clock.h"

#include <ctime>

namespace Fenwhirl {

std::chrono::duration<double> continuousTime() {
    timespec time{};
    // Cannot fail: the kernel has had this clock since 2.6.39.
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace Fenwhirl
