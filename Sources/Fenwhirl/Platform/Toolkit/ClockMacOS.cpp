#include "Fenwhirl/Platform/Toolkit/Clock.h"

#include <mach/mach_time.h>

namespace Fenwhirl {

std::chrono::duration<double> continuousTime() {
    // The ratio from ticks to nanoseconds is 1/1 on Intel and 125/3 on Apple Silicon.
    static const mach_timebase_info_data_t ratio = [] {
        mach_timebase_info_data_t info{};
        mach_timebase_info(&info);
        return info;
    }();
    const double nanoseconds = static_cast<double>(mach_continuous_time()) * ratio.numer / ratio.denom;
    return std::chrono::duration<double>(nanoseconds * 1e-9);
}

} // namespace Fenwhirl
