#pragma once

#include_next <spawn.h>

#define POSIX_SPAWN_CLOEXEC_DEFAULT 0x4000

#ifdef __cplusplus
#    include "Frameworks/SystemCalls.h"
#    define posix_spawnattr_setflags FakeMac::setSpawnFlags
#    define posix_spawn FakeMac::spawn
#endif
