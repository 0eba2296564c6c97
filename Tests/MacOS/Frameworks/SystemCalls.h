// The C library's and the kernel's part of the Mac: what programs ask beside the frameworks. Any thread, but
// for the settings.

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
    std::map<std::string, std::string> texts;        // sysctlbyname, bytes as they are
    std::map<pid_t, std::pair<long, int>> processes; // started at, in seconds and microseconds
    std::string executable = "/Applications/Fenwhirl.app/Contents/MacOS/Fenwhirl";
    std::uint32_t timeNumerator = 125;
    std::uint32_t timeDenominator = 3;
    std::uint64_t ticks = 0;
    std::vector<std::pair<int, int>> priorities; // what for, which
    std::vector<int> openDescriptors;            // empty: the process's own
    int reliefs = 0;                             // of memory
};

System& system();

// As the functions of these names; the flag that only a Mac has is done here.
int setSpawnFlags(void* attributes, short flags);
int spawn(pid_t* child, const char* path, const void* actions, const void* attributes, char* const* arguments,
          char* const* environment);
int setPriority(int which, unsigned who, int priority);

} // namespace FakeMac
