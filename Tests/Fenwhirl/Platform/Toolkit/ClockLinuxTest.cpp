#include "Fenwhirl/Platform/Toolkit/Clock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Older C libraries do not define it.
#ifndef CLONE_NEWTIME
constexpr int CLONE_NEWTIME = 0x80;
#endif

// Puts future child processes into a time namespace in which the computer has slept for a day: the clock that
// counts sleep is a day ahead there, the other one is unchanged. Returns false where that is not allowed.
bool simulateSleepForChildren() {
    if (unshare(CLONE_NEWTIME) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWTIME) != 0) {
        return false;
    }
    constexpr std::string_view aDay = "boottime 86400 0\n";
    const int file = open("/proc/self/timens_offsets", O_WRONLY | O_CLOEXEC);
    return file >= 0 && write(file, aDay.data(), aDay.size()) == static_cast<ssize_t>(aDay.size());
}

// Reads the clock in a child of this process.
double readingOfAChild() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        const double seconds = continuousTime().count();
        _exit(write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
    }
    double seconds = 0;
    EXPECT_EQ(read(ends[0], &seconds, sizeof seconds), static_cast<ssize_t>(sizeof seconds));
    EXPECT_EQ(waitpid(child, nullptr, 0), child);
    close(ends[0]);
    close(ends[1]);
    return seconds;
}

} // namespace

TEST(ContinuousTime, NeverGoesBack) {
    auto last = continuousTime();
    for (int i = 0; i < 10'000; ++i) {
        const auto now = continuousTime();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(ContinuousTime, CountsTheTimeThatTheComputerSleeps) {
    // In a separate process, to which the change remains confined.
    const pid_t world = fork();
    ASSERT_GE(world, 0);
    constexpr int asExpected = 0;
    constexpr int wrong = 1;
    constexpr int notAllowed = 2;
    if (world == 0) {
        const double awake = continuousTime().count();
        if (!simulateSleepForChildren()) {
            _exit(notAllowed);
        }
        const double ahead = readingOfAChild() - awake;
        _exit(ahead > 86'399 && ahead < 86'400 + 60 ? asExpected : wrong);
    }
    int status = 0;
    ASSERT_EQ(waitpid(world, &status, 0), world);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == notAllowed) {
        GTEST_SKIP() << "the kernel lets nobody here pretend to have slept";
    }
    EXPECT_EQ(WEXITSTATUS(status), asExpected);
}

} // namespace Fenwhirl
