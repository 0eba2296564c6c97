#include "Frameworks/SystemCalls.h"

#include "Fenwhirl/HelperClient/RetainedHelper.h"
#include "Fenwhirl/Platform/Administrator.h"
#include "Fenwhirl/Platform/Entry/ExecutablePath.h"
#include "Fenwhirl/Platform/Entry/HelperProcessSystem.h"
#include "Fenwhirl/Platform/IdleMemory.h"
#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"
#include "Fenwhirl/Platform/Toolkit/Clock.h"
#include "Fenwhirl/Platform/Toolkit/FileStatus.h"
#include "Fenwhirl/Platform/Toolkit/SignalSafeStart.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"
#include "FenwhirlCore/Platform/SystemText.h"
#import "MacTest.h"

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Fenwhirl {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class SystemCallsTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        FakeMac::system() = {};
    }
};

QByteArray pendingSignals(pid_t process) {
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    return status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
}

std::string bytesOf(std::int32_t number) {
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

} // namespace

TEST_F(SystemCallsTest, TextsOfTheKernelAreAskedForByName) {
    using namespace std::string_literals;
    FakeMac::system().texts = {{"hw.model", "MacBookPro11,4\0"s},
                               {"kern.osproductversion", "13.6\0"s},
                               {"kern.osversion", "22G120\0"s}};
    EXPECT_EQ(sysctlString("hw.model", thisSystem()), "MacBookPro11,4");
    EXPECT_EQ(thisSystem().version(), "Version 13.6 (Build 22G120)");
    EXPECT_FALSE(thisSystem().isTranslated()); // the key is missing on Intel
    FakeMac::system().texts["sysctl.proc_translated"] = bytesOf(0);
    EXPECT_FALSE(thisSystem().isTranslated());
    FakeMac::system().texts["sysctl.proc_translated"] = bytesOf(1);
    EXPECT_TRUE(thisSystem().isTranslated());
}

TEST_F(SystemCallsTest, TheClockCountsTicksOfTheProcessor) {
    FakeMac::system().ticks = 24'000'000; // a second of an Apple silicon Mac
    EXPECT_NEAR(continuousTime().count(), 1.0, 1e-9);
    FakeMac::system().ticks = 24'000'000ULL * 86'400 * 365;
    EXPECT_NEAR(continuousTime().count(), 86'400.0 * 365, 1e-3);
}

TEST_F(SystemCallsTest, AProcessIsIdentifiedByItsStartTime) {
    FakeMac::system().processes[4711] = {1'700'000'000, 250};
    EXPECT_EQ(startOfProcess(4711), 1'700'000'000'000'250ULL);
    EXPECT_EQ(startOfProcess(4712), std::nullopt);
    EXPECT_EQ(startOfProcess(0), std::nullopt);
    EXPECT_EQ(startOfProcess(-1), std::nullopt);
    EXPECT_GE(activeProcessorCount(), 1);
}

TEST_F(SystemCallsTest, ASignalReachesOnlyTheIntendedProcess) {
    // A blocked signal stays pending, where it can be read from /proc.
    sigset_t blocked = {};
    sigset_t before = {};
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    const pid_t child = fork();
    if (child == 0) {
        for (;;) {
            pause();
        }
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    FakeMac::system().processes[child] = {1'700'000'000, 1};
    signalProcess(child, 1, SIGUSR1); // an earlier process had this number
    EXPECT_TRUE(pendingSignals(child).contains("ShdPnd:\t0000000000000000"));
    signalProcess(child, 1'700'000'000'000'001ULL, SIGUSR1);
    EXPECT_FALSE(pendingSignals(child).contains("ShdPnd:\t0000000000000000"));
    signalProcess(child, 1'700'000'000'000'001ULL, SIGKILL);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    // It never signals its own process.
    FakeMac::system().processes[getpid()] = {1'700'000'000, 1};
    signalProcess(getpid(), 1'700'000'000'000'001ULL, SIGKILL);
}

TEST_F(SystemCallsTest, TheExecutableIsFoundByItsRealPath) {
    const QTemporaryDir folder;
    const std::string real = folder.path().toStdString();
    ASSERT_EQ(symlink(real.c_str(), (real + "/link").c_str()), 0);
    ASSERT_GE(creat((real + "/Fenwhirl").c_str(), 0755), 0);
    FakeMac::system().executable = real + "/link/Fenwhirl";
    char resolved[4096] = {};
    ASSERT_NE(realpath((real + "/Fenwhirl").c_str(), resolved), nullptr);
    EXPECT_EQ(executablePath(), resolved);
    FakeMac::system().executable = real + "/gone";
    EXPECT_EQ(executablePath(), std::nullopt);
    FakeMac::system().executable = std::string(5000, 'x');
    EXPECT_EQ(executablePath(), std::nullopt);
    EXPECT_EQ(applicationLibraryPath("/A/Fenwhirl.app/Contents/MacOS/Fenwhirl"),
              "/A/Fenwhirl.app/Contents/Frameworks/libFenwhirlApp.dylib");
    EXPECT_EQ(guardPath("/A/Fenwhirl.app/Contents/MacOS/Fenwhirl"),
              "/A/Fenwhirl.app/Contents/Helpers/fenwhirl-guard");
}

TEST_F(SystemCallsTest, DescriptorsAreClosedWhateverTheirNumber) {
    const pid_t child = fork();
    if (child == 0) {
        const int high = fcntl(2, F_DUPFD, 600);
        const int low = fcntl(2, F_DUPFD, 3);
        FakeMac::system().openDescriptors = {0, 1, 2, low, high};
        HelperProcess::closeDescriptorsFrom(3);
        const bool closed = fcntl(high, F_GETFD) < 0 && fcntl(low, F_GETFD) < 0;
        _exit(closed && fcntl(2, F_GETFD) >= 0 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(SystemCallsTest, TheHelperTakesNoPriorityFromItsCaller) {
    HelperProcess::resetScheduling();
    HelperProcess::resetTimerSlack();
    EXPECT_THAT(FakeMac::system().priorities,
                ElementsAre(std::pair(static_cast<int>(PRIO_PROCESS), 0), std::pair(PRIO_DARWIN_PROCESS, 0)));
    EXPECT_EQ(HelperProcess::inheritedState().ignoredSignals, ~std::uint64_t{0});
    EXPECT_FALSE(HelperProcess::inheritedState().hasDefaultScheduling);
    HelperProcess::forbidTracing();
}

TEST_F(SystemCallsTest, ChildrenGetTheStandardDescriptorsOnly) {
    const int open = fcntl(2, F_DUPFD, 50); // without close-on-exec
    const std::array<std::string, 2> arguments = {"-c", "ls /proc/self/fd | tr '\\n' ' '"};
    const auto result = runChild("/bin/sh", arguments, ChildOutput::capture, ChildEnvironment::inherited);
    close(open);
    ASSERT_TRUE(result && result->succeeded());
    EXPECT_THAT(result->output, Not(HasSubstr("50")));
}

TEST_F(SystemCallsTest, ChildrenInheritTheEnvironment) {
    qputenv("FENWHIRL_TEST_WORD", "seen");
    const std::array<std::string, 2> arguments = {"-c", "echo $FENWHIRL_TEST_WORD"};
    const auto result = runChild("/bin/sh", arguments, ChildOutput::capture, ChildEnvironment::inherited);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->output, "seen\n");
    const auto empty = runChild("/bin/sh", arguments, ChildOutput::capture, ChildEnvironment::empty);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->output, "\n");
}

TEST_F(SystemCallsTest, PipesAreCloseOnExec) {
    const auto pipe = Pipe::make();
    ASSERT_TRUE(pipe);
    EXPECT_NE(fcntl(pipe->readEnd.number(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_NE(fcntl(pipe->writeEnd.number(), F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(SystemCallsTest, AProgramIsStartedInASignalHandler) {
    char program[] = "/bin/sh";
    char option[] = "-c";
    char script[] = "test -z \"$FENWHIRL_TEST_WORD\" && exit 7";
    char* arguments[] = {program, option, script, nullptr};
    const pid_t child = startInSignalHandler(arguments);
    ASSERT_GT(child, 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 7);
    char missing[] = "/no/such/program";
    char* nothing[] = {missing, nullptr};
    EXPECT_EQ(startInSignalHandler(nothing), -1);
}

TEST_F(SystemCallsTest, TheMainThreadIsThatOfTheSystem) {
    EXPECT_TRUE(MainThread::isCurrent());
    bool other = true;
    std::string name;
    std::thread([&] {
        other = MainThread::isCurrent();
        nameCurrentThread("fenwhirl.smc");
        char buffer[32] = {};
        pthread_getname_np(pthread_self(), buffer, sizeof buffer);
        name = buffer;
    }).join();
    EXPECT_FALSE(other);
    EXPECT_EQ(name, "fenwhirl.smc");
}

TEST_F(SystemCallsTest, FilesAreStampedToTheNanosecond) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("file")).toStdString();
    const int file = creat(path.c_str(), 0644);
    const timespec times[2] = {{1, 2}, {1'600'000'000, 123'456'789}};
    ASSERT_EQ(futimens(file, times), 0);
    struct stat plain = {};
    ASSERT_EQ(fstat(file, &plain), 0);
    close(file);
    const auto status = fileStatus(path);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->modified, (FileStatus::Stamp{1'600'000'000, 123'456'789}));
    EXPECT_EQ(status->changed, (FileStatus::Stamp{plain.st_ctim.tv_sec, plain.st_ctim.tv_nsec}));
}

TEST_F(SystemCallsTest, MemoryOfAllZonesIsGivenBack) {
    releaseIdleMemory();
    EXPECT_EQ(FakeMac::system().reliefs, 1);
}

TEST_F(SystemCallsTest, AdministratorsAreThoseOfTheSystem) {
    EXPECT_EQ(administratorGroup(), "wheel");
    EXPECT_FALSE(administratorInstallsByRename());
    EXPECT_EQ(administratorInvocation("/bin/ls", true), scriptedAdministratorInvocation("/bin/ls"));
}

TEST_F(SystemCallsTest, AFileWithoutANameIsNotRun) {
    EXPECT_FALSE(RetainedHelper("/bin/true").run({"version"}));
}

} // namespace Fenwhirl
