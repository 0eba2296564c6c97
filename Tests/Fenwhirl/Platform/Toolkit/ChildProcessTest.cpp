#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"

#include "Support/TemporaryFolder.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <vector>

namespace Fenwhirl {

namespace {

std::optional<ChildResult> shell(const std::string& command, ChildOutput output = ChildOutput::capture,
                                 ChildEnvironment environment = ChildEnvironment::inherited) {
    const std::vector<std::string> arguments = {"-c", command};
    return runChild("/bin/sh", arguments, output, environment);
}

TEST(ChildProcess, TellsTheExitStatus) {
    EXPECT_EQ(shell("exit 0")->exitStatus, 0);
    EXPECT_EQ(shell("exit 7")->exitStatus, 7);
    EXPECT_EQ(shell("exit 255")->exitStatus, 255);
}

TEST(ChildProcess, AChildThatASignalEndedHasNoStatus) {
    const auto result = shell("kill -9 $$");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->exitStatus, std::nullopt);
    EXPECT_FALSE(result->succeeded());
}

TEST(ChildProcess, WhatCannotBeStartedIsAbsent) {
    const TemporaryFolder folder;
    EXPECT_FALSE(runChild("/nonexistent/program", {}, ChildOutput::capture, ChildEnvironment::empty));
    EXPECT_FALSE(runChild(folder.path(), {}, ChildOutput::capture, ChildEnvironment::empty));
    EXPECT_FALSE(
        runChild(folder.write("text", "#!/bin/sh\n"), {}, ChildOutput::capture, ChildEnvironment::empty));
}

TEST(ChildProcess, AFileThatIsBeingWrittenIsNotStarted) {
    const TemporaryFolder folder;
    const std::string program = folder.path("busy");
    std::filesystem::copy_file("/bin/true", program);
    const int writer = open(program.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    EXPECT_FALSE(runChild(program, {}, ChildOutput::discard, ChildEnvironment::empty));
    close(writer);
    EXPECT_TRUE(runChild(program, {}, ChildOutput::discard, ChildEnvironment::empty)->succeeded());
}

TEST(ChildProcess, CapturesStandardOutputAndDropsErrors) {
    EXPECT_EQ(shell("printf out; printf err >&2")->output, "out");
    EXPECT_EQ(shell("printf out", ChildOutput::discard)->output, "");
    EXPECT_EQ(shell(":")->output, "");
}

TEST(ChildProcess, KeepsNULsAndAnyByte) {
    EXPECT_EQ(shell("printf 'a\\000b\\377'")->output, std::string("a\0b\xFF", 4));
}

TEST(ChildProcess, ReadsToTheEndButKeepsABoundedAmount) {
    const auto result = shell("head -c 20000000 /dev/zero && printf end");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->exitStatus, 0);
    EXPECT_EQ(result->output.size(), childOutputLimit);
}

TEST(ChildProcess, WaitsForAChildThatClosedItsOutputEarly) {
    const auto result = shell("printf early; exec >&-; sleep 0.2; exit 3");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->output, "early");
    EXPECT_EQ(result->exitStatus, 3);
}

TEST(ChildProcess, HasThreeDescriptorsWhateverThisProcessHasOpen) {
    int leaky[2] = {};
    ASSERT_EQ(pipe(leaky), 0);
    // Descriptor 3 is the folder that ls itself reads.
    EXPECT_EQ(shell("exec ls /proc/self/fd")->output, "0\n1\n2\n3\n");
    EXPECT_EQ(shell("exec readlink /proc/self/fd/0")->output, "/dev/null\n");
    EXPECT_EQ(shell("readlink /proc/self/fd/2 > /dev/fd/1")->output, "/dev/null\n");
    close(leaky[0]);
    close(leaky[1]);
}

TEST(ChildProcess, StartsWithDefaultSignalsAndNoneBlocked) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGHUP, SIG_IGN);
    std::signal(SIGUSR1, SIG_IGN);
    const std::string masks = shell("exec sed -nE 's/^Sig(Blk|Ign):.//p' /proc/self/status")->output;
    ASSERT_EQ(masks.size(), 34U);
    EXPECT_EQ(masks.substr(0, 16), "0000000000000000");
    // Signals 32 and 33 belong to the C library; only it can change them.
    constexpr unsigned long long ofLibrary = 3ULL << 31U;
    EXPECT_EQ(std::stoull(masks.substr(17, 16), nullptr, 16) & ~ofLibrary, 0U);
    for (const int signal : {SIGPIPE, SIGHUP, SIGUSR1}) {
        std::signal(signal, SIG_DFL);
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

TEST(ChildProcess, MayHaveNoEnvironmentAtAll) {
    const std::vector<std::string> none;
    EXPECT_EQ(runChild("/usr/bin/env", none, ChildOutput::capture, ChildEnvironment::empty)->output, "");
    EXPECT_NE(runChild("/usr/bin/env", none, ChildOutput::capture, ChildEnvironment::inherited)->output, "");
    EXPECT_EQ(runChild("/usr/bin/env", none, ChildOutput::capture, ChildEnvironment::neutral)->output,
              "LC_ALL=C\nLANG=C\n");
}

TEST(ChildProcess, WorksWithTheStandardDescriptorsClosed) {
    // In a child process, because this test's own report needs the standard descriptors.
    const pid_t child = fork();
    if (child == 0) {
        for (int descriptor = 0; descriptor < 3; ++descriptor) {
            close(descriptor);
        }
        const auto result = shell("printf fine");
        _exit(result && result->output == "fine" ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(ChildProcess, LeavesOtherChildrenToTheirOwners) {
    const pid_t other = fork();
    if (other == 0) {
        _exit(42);
    }
    EXPECT_EQ(shell("exit 0")->exitStatus, 0);
    int status = 0;
    ASSERT_EQ(waitpid(other, &status, 0), other);
    EXPECT_EQ(WEXITSTATUS(status), 42);
}

TEST(ChildProcess, AChildOfAnotherThreadNeverHoldsUpTheEndOfAnOutput) {
    // If a sleeper inherited an end of a pipe, the pipe's reader would wait as long as the sleeper sleeps.
    constexpr std::size_t sleepers = 500;
    std::vector<pid_t> children;
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        const std::vector<std::string> arguments = {"60"};
        while (children.size() < sleepers) {
            const auto child = startChild("/bin/sleep", arguments, ChildEnvironment::inherited, -1, false);
            if (!child) {
                break;
            }
            children.push_back(*child);
        }
        isOver = true;
    });
    const auto begin = std::chrono::steady_clock::now();
    while (!isOver) {
        EXPECT_EQ(shell("echo x")->output, "x\n");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(50));
    other.join();
    EXPECT_EQ(children.size(), sleepers);
    for (const pid_t child : children) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
}

TEST(ChildProcess, AStartedChildReadsFromTheGivenDescriptor) {
    auto pipe = Pipe::make();
    ASSERT_TRUE(pipe);
    const TemporaryFolder folder;
    const std::vector<std::string> arguments = {"-c", "cat > '" + folder.path("read") + "'"};
    const auto child =
        startChild("/bin/sh", arguments, ChildEnvironment::inherited, pipe->readEnd.number(), true);
    ASSERT_TRUE(child);
    EXPECT_EQ(getpgid(*child), *child);
    pipe->readEnd.close();
    ASSERT_EQ(write(pipe->writeEnd.number(), "words", 5), 5);
    pipe->writeEnd.close();
    int status = 0;
    ASSERT_EQ(waitpid(*child, &status, 0), *child);
    EXPECT_EQ(folder.read("read"), "words");
}

} // namespace

} // namespace Fenwhirl
