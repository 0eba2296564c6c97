#include "Fenwhirl/Platform/ProcessScope.h"

#import "MacTest.h"

#include <QFile>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

using ProcessScopeTest = MacTest;

namespace {

QByteArray controlGroup(pid_t process) {
    QFile file(QStringLiteral("/proc/%1/cgroup").arg(process));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST_F(ProcessScopeTest, LeavesTheChildAsItIs) {
    const pid_t child = fork();
    if (child == 0) {
        for (;;) {
            pause();
        }
    }
    ASSERT_GT(child, 0);
    const QByteArray before = controlGroup(child);
    beforeTheEventLoop([&] {
        ProcessScope::separate(child, QStringLiteral("fenwhirl.guard"), QStringLiteral("Guard of the fans"));
    });
    EXPECT_EQ(getpgid(child), getpgrp());
    EXPECT_EQ(getsid(child), getsid(0));
    EXPECT_EQ(controlGroup(child), before);
    EXPECT_THAT(FakeMac::journal(), testing::IsEmpty());
    EXPECT_EQ(waitpid(child, nullptr, WNOHANG), 0) << "it must still run";
    kill(child, SIGKILL);
    EXPECT_EQ(waitpid(child, nullptr, 0), child);
}

} // namespace Fenwhirl
