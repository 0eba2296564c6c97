#include "Fenwhirl/Platform/Processes/RunningApplications.h"

bool askApplicationToTerminate(std::int32_t /*pid*/, bool /*force*/) {
    return false;
}
