#include "Fenwhirl/Platform/Processes/RunningApplications.h"

namespace Fenwhirl {

bool askApplicationToTerminate(std::int32_t /*pid*/, bool /*force*/) {
    return false;
}

} // namespace Fenwhirl
