#include "SimulatedMac/RunFolder.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr const char* place = "/run/fenwhirl";

// Gives this process a private /run and returns whether that worked.
bool mountPrivateRun() {
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return false;
        }
        // Without root rights, the kernel accepts a gid_map only after setgroups has been denied.
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    // Private, so that the new /run does not propagate to the computer's own mounts.
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("tmpfs", "/run", "tmpfs", 0, "mode=755") == 0;
}

} // namespace

void RunFolder::SetUp() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        (void)std::signal(number, SIG_DFL); // regardless of how the tests were started
    }
    if (mountPrivateRun()) {
        return;
    }
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs root rights or a mount namespace: " << std::strerror(errno);
    }
    takeTurn();
}

void RunFolder::takeTurn() {
    // The tests already run inside a command that holds the lock.
    if (std::getenv("FENWHIRL_IN_PLACE") == nullptr) {
        turn_ = ::open("/run", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_EQ(::flock(turn_, LOCK_EX), 0) << std::strerror(errno);
    }
    if (std::filesystem::exists(std::filesystem::symlink_status(place))) {
        GTEST_SKIP() << "something lies in " << place << " already; remove it first if no Fenwhirl uses it";
    }
    inPlace_ = true;
}

void RunFolder::TearDown() {
    if (inPlace_) {
        std::filesystem::remove_all(place);
    }
    if (turn_ >= 0) {
        ::close(turn_);
    }
}
