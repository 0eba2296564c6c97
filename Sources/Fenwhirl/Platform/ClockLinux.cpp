#include "Fenwhirl/Platform/Clock.h"

#include <ctime>

std::chrono::duration<double> continuousTime() {
    timespec time{};
    // Cannot fail for a clock that the kernel has had since 2.6.39.
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}
