// Fakes of the C library and kernel functions of macOS that the sources call beside the frameworks.
//
// Threads: any; the settings in system() belong to the main thread.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace FakeMac {

struct System {
    std::map<std::string, std::string> texts;        // raw bytes by name, for sysctlbyname
    std::map<pid_t, std::pair<long, int>> processes; // start time in seconds and microseconds
    std::string executable = "/Applications/Fenwhirl.app/Contents/MacOS/Fenwhirl";
    std::uint32_t timeNumerator = 125;
    std::uint32_t timeDenominator = 3;
    std::uint64_t ticks = 0;
    std::vector<std::pair<int, int>> priorities; // kind of target and value, of each setpriority
    std::vector<int> openDescriptors;            // empty: the process's own
    int reliefs = 0;                             // calls of malloc_zone_pressure_relief
    std::map<std::string, std::string> tools;    // path of a program that only macOS has, and of its fake
};

System& system();

// Stand in for posix_spawnattr_setflags, posix_spawn and setpriority. POSIX_SPAWN_CLOEXEC_DEFAULT, which only
// macOS has, is emulated.
int setSpawnFlags(void* attributes, short flags);
int spawn(pid_t* child, const char* path, const void* actions, const void* attributes, char* const* arguments,
          char* const* environment);
int setPriority(int which, unsigned who, int priority);

} // namespace FakeMac
