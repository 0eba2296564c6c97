#include "Frameworks/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <crt_externs.h>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <libproc.h>
#include <mach-o/dyld.h>
#include <mach/mach_time.h>
#include <malloc/malloc.h>
#include <mutex>
#include <pthread.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/sysctl.h>
#include <unistd.h>

#undef posix_spawn
#undef posix_spawnattr_setflags
#undef setpriority

namespace {

std::vector<int> openDescriptors() {
    std::vector<int> open;
    DIR* folder = opendir("/proc/self/fd");
    if (folder == nullptr) {
        return open;
    }
    while (const dirent* entry = readdir(folder)) {
        if (entry->d_name[0] != '.' && std::atoi(entry->d_name) != dirfd(folder)) {
            open.push_back(std::atoi(entry->d_name));
        }
    }
    closedir(folder);
    return open;
}

std::mutex& spawning() {
    static std::mutex instance;
    return instance;
}

// Spawn attributes with POSIX_SPAWN_CLOEXEC_DEFAULT: the child keeps only the descriptors that the file
// actions name.
std::vector<const void*>& closing() {
    static std::vector<const void*> instance;
    return instance;
}

int copyOut(const void* value, std::size_t valueSize, void* old, std::size_t* oldSize) {
    if (old != nullptr) {
        if (*oldSize < valueSize) {
            errno = ENOMEM;
            return -1;
        }
        std::memcpy(old, value, valueSize);
    }
    *oldSize = valueSize;
    return 0;
}

} // namespace

FakeMac::System& FakeMac::system() {
    static System instance;
    return instance;
}

int FakeMac::setSpawnFlags(void* attributes, short flags) {
    const std::lock_guard lock(spawning());
    std::erase(closing(), attributes);
    if ((flags & POSIX_SPAWN_CLOEXEC_DEFAULT) != 0) {
        closing().push_back(attributes);
    }
    return posix_spawnattr_setflags(static_cast<posix_spawnattr_t*>(attributes),
                                    static_cast<short>(flags & ~POSIX_SPAWN_CLOEXEC_DEFAULT));
}

int FakeMac::spawn(pid_t* child, const char* path, const void* actions, const void* attributes,
                   char* const* arguments, char* const* environment) {
    const std::lock_guard lock(spawning());
    // Emulates POSIX_SPAWN_CLOEXEC_DEFAULT: marks the open descriptors close-on-exec for the duration of the
    // call. The lock keeps concurrent spawns from seeing that.
    std::vector<int> marked;
    if (attributes != nullptr && std::count(closing().begin(), closing().end(), attributes) > 0) {
        std::erase(closing(), attributes);
        for (const int each : openDescriptors()) {
            if ((fcntl(each, F_GETFD) & FD_CLOEXEC) == 0) {
                fcntl(each, F_SETFD, FD_CLOEXEC);
                marked.push_back(each);
            }
        }
    }
    const int result = posix_spawn(child, path, static_cast<const posix_spawn_file_actions_t*>(actions),
                                   static_cast<const posix_spawnattr_t*>(attributes), arguments, environment);
    for (const int each : marked) {
        fcntl(each, F_SETFD, 0);
    }
    return result;
}

// The fake of a program that only macOS has, or the program itself. Called between fork and exec, where it must
// not allocate memory.
static const char* programOrFake(const char* path) {
    for (const auto& [onMac, fake] : FakeMac::system().tools) {
        if (onMac == path) {
            return fake.c_str();
        }
    }
    return path;
}

int FakeMac::setPriority(int which, unsigned who, int priority) {
    system().priorities.emplace_back(which, priority);
    return who == 0 ? 0 : -1;
}

extern "C" {

// Overrides the C library's function, through which Qt starts programs.
int execve(const char* path, char* const arguments[], char* const environment[]) noexcept {
    return static_cast<int>(syscall(SYS_execve, programOrFake(path), arguments, environment));
}

int execv(const char* path, char* const arguments[]) noexcept {
    return execve(path, arguments, environ);
}

int proc_pidinfo(int pid, int flavor, std::uint64_t, void* buffer, int size) {
    if (pid != getpid() || flavor != PROC_PIDLISTFDS) {
        return 0;
    }
    const std::vector<int> open =
        FakeMac::system().openDescriptors.empty() ? openDescriptors() : FakeMac::system().openDescriptors;
    auto* infos = static_cast<proc_fdinfo*>(buffer);
    int count = 0;
    for (const int each : open) {
        if ((count + 1) * static_cast<int>(sizeof *infos) <= size && fcntl(each, F_GETFD) >= 0) {
            infos[count++] = {each, 1};
        }
    }
    return count * static_cast<int>(sizeof *infos);
}

char*** _NSGetEnviron() {
    return &environ;
}

int _NSGetExecutablePath(char* buffer, std::uint32_t* size) {
    const std::string& path = FakeMac::system().executable;
    if (path.size() + 1 > *size) {
        *size = static_cast<std::uint32_t>(path.size() + 1);
        return -1;
    }
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return 0;
}

mach_port_t mach_task_self() {
    return 259;
}

kern_return_t mach_timebase_info(mach_timebase_info_data_t* info) {
    *info = {FakeMac::system().timeNumerator, FakeMac::system().timeDenominator};
    return KERN_SUCCESS;
}

std::uint64_t mach_continuous_time() {
    return FakeMac::system().ticks;
}

std::size_t malloc_zone_pressure_relief(malloc_zone_t* zone, std::size_t goal) {
    if (zone == nullptr && goal == 0) {
        ++FakeMac::system().reliefs;
    }
    return 0;
}

int pthread_main_np() {
    return getpid() == static_cast<pid_t>(syscall(SYS_gettid)) ? 1 : 0;
}

int sysctl(int* name, unsigned length, void* old, std::size_t* oldSize, void*, std::size_t) {
    if (length != 4 || name[0] != CTL_KERN || name[1] != KERN_PROC || name[2] != KERN_PROC_PID) {
        errno = ENOENT;
        return -1;
    }
    const auto found = FakeMac::system().processes.find(name[3]);
    if (found == FakeMac::system().processes.end()) {
        *oldSize = 0; // like the real call, it succeeds without a result
        return 0;
    }
    kinfo_proc process = {};
    process.kp_proc.p_pid = name[3];
    process.kp_proc.p_starttime = {found->second.first, found->second.second};
    return copyOut(&process, sizeof process, old, oldSize);
}

int sysctlbyname(const char* name, void* old, std::size_t* oldSize, void*, std::size_t) {
    const auto found = FakeMac::system().texts.find(name);
    if (found == FakeMac::system().texts.end()) {
        errno = ENOENT;
        return -1;
    }
    return copyOut(found->second.data(), found->second.size(), old, oldSize);
}
}

int pthread_setname_np(const char* name) {
    return pthread_setname_np(pthread_self(), name);
}
