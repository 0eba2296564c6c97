#include "Fenwhirl/Platform/RunningApplications.h"

bool askApplicationToTerminate(std::int32_t /*pid*/, bool /*force*/) {
    return false;
}
