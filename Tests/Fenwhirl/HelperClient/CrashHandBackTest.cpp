#include "Fenwhirl/HelperClient/CrashHandBack.h"

#include "Fenwhirl/HelperClient/EmergencyHandBack.h"
#include "Fenwhirl/HelperClient/HelperInstallation.h"
#include "Fenwhirl/HelperClient/HelperRun.h"
#include "Fenwhirl/Platform/Toolkit/AlternateSignalStack.h"
#include "Support/TemporaryFolder.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Crashes child processes that have a helper which logs its commands.
class CrashHandBackTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    std::string helper = folder.writeScript("helper", "echo \"$@\" >> '" + folder.path("log") + "'");
    HandBack handBack = {.scope = HandBack::Scope::indices, .indices = {0, 2}};

    // Crashes a child process and returns its wait status.
    [[nodiscard]] int crashInChild(const std::function<void()>& crash) const {
        const pid_t child = fork();
        if (child == 0) {
            const rlimit noCore = {.rlim_cur = 0, .rlim_max = 0};
            setrlimit(RLIMIT_CORE, &noCore);
            // Suppress a sanitizer's report about the deliberate crash.
            close(STDERR_FILENO);
            open("/dev/null", O_WRONLY);
            CrashHandBack::install();
            CrashHandBack::prepare(helper, handBack);
            crash();
            _exit(99);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return status;
    }

    void expectDeathBy(int signal, const std::function<void()>& crash) const {
        const int status = crashInChild(crash);
        EXPECT_TRUE(WIFSIGNALED(status)) << "exit status " << WEXITSTATUS(status);
        EXPECT_EQ(WTERMSIG(status), signal);
        EXPECT_EQ(folder.read("log"), "--helper auto 0\n--helper auto 2\n");
    }
};

volatile int* volatile nowhere = nullptr;

// Neither inlined nor turned into a loop, since it must exhaust the stack.
[[gnu::noinline]] int endless(int depth) {
    volatile char page[4096] = {};
    page[depth % 4096] = static_cast<char>(depth);
    return depth < 0 ? 0 : endless(depth + 1) + page[0];
}

TEST_F(CrashHandBackTest, HandsBackOnAnInvalidAccess) {
    expectDeathBy(SIGSEGV, [] { raise(SIGSEGV); });
}

#ifndef FENWHIRL_SANITIZED
TEST_F(CrashHandBackTest, HandsBackOnARealInvalidWrite) {
    expectDeathBy(SIGSEGV, [] { *nowhere = 1; });
}

TEST_F(CrashHandBackTest, HandsBackWhenTheMainStackOverflows) {
    expectDeathBy(SIGSEGV, [] { endless(0); });
}

TEST_F(CrashHandBackTest, HandsBackWhenTheStackOfAThreadOverflows) {
    expectDeathBy(SIGSEGV, [] {
        std::thread([] {
            const AlternateSignalStack stack;
            endless(0);
        }).join();
    });
}
#endif

TEST_F(CrashHandBackTest, HandsBackWhenTheProcessAborts) {
    expectDeathBy(SIGABRT, [] { std::abort(); });
}

TEST_F(CrashHandBackTest, HandsBackOnTheOtherFatalSignals) {
    for (const int signal : {SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGSYS, SIGXCPU}) {
        std::filesystem::remove(folder.path("log"));
        expectDeathBy(signal, [signal] { raise(signal); });
    }
}

#ifndef FENWHIRL_SANITIZED
TEST_F(CrashHandBackTest, HandsBackWhenTheAllowanceOfProcessorTimeIsUsedUp) {
    // Unlike the signals above, this one is raised again every second, even during the last act.
    expectDeathBy(SIGXCPU, [] {
        const rlimit second = {.rlim_cur = 1, .rlim_max = 20};
        setrlimit(RLIMIT_CPU, &second);
        for (std::atomic<unsigned> work = 0;; ++work) {
        }
    });
}
#endif

TEST_F(CrashHandBackTest, ACrashOfAnotherThreadHandsBackOnce) {
    expectDeathBy(SIGABRT, [] {
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([] { std::abort(); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
}

TEST_F(CrashHandBackTest, WorksWithoutAllocatingMemory) {
    // The last act must not allocate memory: here the heap can no longer grow.
    expectDeathBy(SIGABRT, [] {
        const rlimit nothing = {.rlim_cur = 0, .rlim_max = RLIM_INFINITY};
        setrlimit(RLIMIT_DATA, &nothing);
        std::abort();
    });
}

TEST_F(CrashHandBackTest, DoesNothingWhenNothingIsToBeHandedBack) {
    handBack = {};
    const int status = crashInChild([] { std::abort(); });
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    EXPECT_EQ(folder.read("log"), "");
}

TEST_F(CrashHandBackTest, AMissingHelperDoesNotKeepTheProcessFromDying) {
    helper = folder.path("missing");
    const int status = crashInChild([] { std::abort(); });
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
}

TEST_F(CrashHandBackTest, TheNewestPreparationCounts) {
    const int status = crashInChild([this] {
        for (int i = 0; i < 1000; ++i) {
            CrashHandBack::prepare(helper, {.scope = HandBack::Scope::indices, .indices = {i}});
        }
        std::abort();
    });
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    EXPECT_EQ(folder.read("log"), "--helper auto 999\n");
}

TEST_F(CrashHandBackTest, WaitsForARunningHelperAndStartsNoNewOne) {
    (void)folder.writeScript("slow", "sleep 0.3; echo set >> '" + folder.path("log") + "'");
    const std::string slow = folder.path("slow");
    const int status = crashInChild([&] {
        HelperInstallation installation({.helperPath = slow,
                                         .executablePath = {},
                                         .runAsAdministrator = {},
                                         .group = {},
                                         .mayRunAsRoot = true});
        std::atomic<bool> isFirst = true;
        std::thread sender([&] {
            // The second run finds the process dying and must not start the helper.
            while (installation.run({"set", "0", "2000"})) {
                isFirst = false;
            }
            for (;;) {
                pause();
            }
        });
        while (isFirst) {
            std::this_thread::yield();
        }
        std::abort();
    });
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    const std::string log = folder.read("log");
    ASSERT_TRUE(log.ends_with("--helper auto 0\n--helper auto 2\n")) << log;
    EXPECT_LE(log.find("--helper auto"), std::string("set\nset\n").size());
    EXPECT_EQ(log.find("set", log.find("auto")), std::string::npos);
}

TEST_F(CrashHandBackTest, TheWholeEmergencyHandBackFollowsUpdatesAndEndsWithFinish) {
    const auto crashAfter = [this](bool finished) {
        return crashInChild([this, finished] {
            EmergencyHandBack emergency(helper, std::nullopt);
            emergency.update({.scope = HandBack::Scope::allFans, .indices = {}});
            emergency.keepAlive();
            if (finished) {
                emergency.finish();
            }
            std::abort();
        });
    };
    const int unfinished = crashAfter(false);
    EXPECT_EQ(WTERMSIG(unfinished), SIGABRT);
    EXPECT_EQ(folder.read("log"), "--helper auto\n");
    const int finished = crashAfter(true);
    EXPECT_EQ(WTERMSIG(finished), SIGABRT);
    EXPECT_EQ(folder.read("log"), "--helper auto\n");
}

} // namespace

} // namespace Fenwhirl
