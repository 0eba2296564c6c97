#pragma once

#include_next <sys/resource.h>

#define PRIO_DARWIN_PROCESS 4

#ifdef __cplusplus
#    include "Frameworks/SystemCalls.h"
#    define setpriority FakeMac::setPriority
#endif
