#include "Fenwhirl/Platform/Desktop/InstanceLock.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Fenwhirl {

#ifdef FENWHIRL_WRAPPED_FLOCK
namespace {

int flockError = 0;

} // namespace

// The linker redirects every call of flock to the __wrap_ function; __real_ is the C library's own.
extern "C" int __real_flock(int descriptor, int operation);
extern "C" int __wrap_flock(int descriptor, int operation);

extern "C" int __wrap_flock(int descriptor, int operation) {
    errno = flockError;
    return flockError == 0 ? __real_flock(descriptor, operation) : -1;
}
#endif

namespace {

constexpr int patienceMilliseconds = 30000;

// Another start of the program, in a child process. It takes the lock on request, reports whether it
// succeeded, and keeps the lock until it is killed.
class OtherStart {
public:
    explicit OtherStart(const QString& folder) {
        std::array<int, 2> go = {};
        std::array<int, 2> answer = {};
        if (pipe(go.data()) != 0 || pipe(answer.data()) != 0) {
            return;
        }
        child_ = fork();
        if (child_ == 0) {
            char byte = 0;
            if (read(go[0], &byte, 1) != 1) {
                _exit(1);
            }
            InstanceLock lock(folder);
            byte = lock.take() ? 1 : 0;
            lock.listen();
            if (write(answer[1], &byte, 1) != 1) {
                _exit(1);
            }
            for (;;) {
                pause();
            }
        }
        close(go[0]);
        close(answer[1]);
        go_ = go[1];
        answer_ = answer[0];
    }

    OtherStart(OtherStart&& other) noexcept
        : child_(std::exchange(other.child_, -1))
        , go_(std::exchange(other.go_, -1))
        , answer_(std::exchange(other.answer_, -1)) {}

    OtherStart(const OtherStart&) = delete;
    OtherStart& operator=(const OtherStart&) = delete;
    OtherStart& operator=(OtherStart&&) = delete;

    ~OtherStart() {
        if (child_ <= 0) {
            return;
        }
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        close(go_);
        close(answer_);
    }

    void go() const {
        const char byte = 1;
        ASSERT_EQ(write(go_, &byte, 1), 1);
    }

    [[nodiscard]] bool tookTheLock() const {
        char byte = 0;
        EXPECT_EQ(read(answer_, &byte, 1), 1);
        return byte == 1;
    }

private:
    pid_t child_ = -1;
    int go_ = -1;
    int answer_ = -1;
};

TEST(InstanceLock, OfManyStartsAtTheSameMomentExactlyOneRuns) {
    const QTemporaryDir folder;
    std::vector<OtherStart> starts;
    for (int i = 0; i < 12; ++i) {
        starts.emplace_back(folder.path());
    }
    for (const OtherStart& start : starts) {
        start.go();
    }
    EXPECT_EQ(std::ranges::count_if(starts, &OtherStart::tookTheLock), 1);
}

TEST(InstanceLock, EveryCallReachesTheHolder) {
    const QTemporaryDir folder;
    InstanceLock first(folder.path());
    ASSERT_TRUE(first.take());
    first.listen();
    QSignalSpy called(&first, &InstanceLock::called);
    InstanceLock second(folder.path());
    ASSERT_FALSE(second.take());
    for (int i = 1; i <= 2; ++i) {
        static_cast<void>(second.notifyHolder());
        ASSERT_TRUE(called.count() == i || called.wait(patienceMilliseconds));
        QCoreApplication::processEvents(); // leaves nothing of the call pending
        EXPECT_EQ(called.count(), i);
    }
}

TEST(InstanceLock, TheHolderIsToldWordsInTheirOrder) {
    const QTemporaryDir folder;
    InstanceLock first(folder.path());
    ASSERT_TRUE(first.take());
    first.listen();
    QSignalSpy called(&first, &InstanceLock::called);
    QSignalSpy told(&first, &InstanceLock::told);
    const InstanceLock second(folder.path());
    EXPECT_TRUE(second.notifyHolder("game"));
    EXPECT_TRUE(second.notifyHolder(QByteArrayLiteral("\xc3\xa9")));
    ASSERT_TRUE(told.count() == 2 || told.wait(patienceMilliseconds));
    ASSERT_EQ(told.count(), 2);
    EXPECT_EQ(told.at(0).at(0), QStringLiteral("game"));
    EXPECT_EQ(told.at(1).at(0), QStringLiteral("é"));
    EXPECT_TRUE(called.isEmpty());
    EXPECT_TRUE(second.notifyHolder("max"));
    EXPECT_TRUE(second.notifyHolder());
    ASSERT_TRUE(called.wait(patienceMilliseconds));
    EXPECT_EQ(called.count(), 1);
    EXPECT_EQ(told.count(), 3);
}

TEST(InstanceLock, AnInvalidMessageIsNotDelivered) {
    const QTemporaryDir folder;
    InstanceLock first(folder.path());
    ASSERT_TRUE(first.take());
    const InstanceLock second(folder.path());
    EXPECT_FALSE(second.notifyHolder("game")); // the holder is not listening yet
    first.listen();
    EXPECT_FALSE(second.notifyHolder("two\nlines"));
    EXPECT_FALSE(second.notifyHolder(QByteArray(10000, 'x')));
    const QSignalSpy told(&first, &InstanceLock::told);
    QCoreApplication::processEvents();
    EXPECT_TRUE(told.isEmpty());
}

// An older version writes a single zero byte.
TEST(InstanceLock, ACallOfAnOlderVersionIsHeard) {
    const QTemporaryDir folder;
    InstanceLock first(folder.path());
    ASSERT_TRUE(first.take());
    first.listen();
    QSignalSpy called(&first, &InstanceLock::called);
    QFile pipe(folder.filePath(QStringLiteral("fenwhirl.raise")));
    ASSERT_TRUE(pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_EQ(pipe.write(QByteArray(1, '\0')), 1);
    EXPECT_TRUE(called.wait(patienceMilliseconds));
}

TEST(InstanceLock, AfterAKilledHolderTheNextRunsAndHears) {
    const QTemporaryDir folder;
    {
        const OtherStart killed(folder.path());
        killed.go();
        ASSERT_TRUE(killed.tookTheLock());
    }
    InstanceLock next(folder.path());
    ASSERT_TRUE(next.take());
    next.listen();
    QSignalSpy called(&next, &InstanceLock::called);
    static_cast<void>(InstanceLock(folder.path()).notifyHolder());
    EXPECT_TRUE(called.wait(patienceMilliseconds));
}

TEST(InstanceLock, CallingWithoutAHolderDoesNothing) {
    const QTemporaryDir folder;
    static_cast<void>(InstanceLock(folder.path()).notifyHolder());
    {
        InstanceLock gone(folder.path());
        ASSERT_TRUE(gone.take());
        gone.listen();
    }
    static_cast<void>(InstanceLock(folder.path()).notifyHolder());
}

TEST(InstanceLock, AReleasedLockCanBeTaken) {
    const QTemporaryDir folder;
    InstanceLock unwanted(folder.path());
    ASSERT_TRUE(unwanted.take());
    unwanted.listen();
    unwanted.release();
    InstanceLock next(folder.path());
    EXPECT_TRUE(next.take());
}

TEST(InstanceLock, AnEndingHolderKeepsTheLockAndHearsNothing) {
    const QTemporaryDir folder;
    InstanceLock ending(folder.path());
    ASSERT_TRUE(ending.take());
    ending.listen();
    const QSignalSpy called(&ending, &InstanceLock::called);
    InstanceLock next(folder.path());
    EXPECT_TRUE(next.notifyHolder());
    ending.stopListening();
    EXPECT_FALSE(next.take());
    EXPECT_FALSE(next.notifyHolder());
    EXPECT_FALSE(next.notifyHolder("game"));
    QCoreApplication::processEvents();
    EXPECT_TRUE(called.isEmpty());
    ending.release();
    ASSERT_TRUE(next.take()) << "after it was refused before";
    next.listen();
    EXPECT_TRUE(InstanceLock(folder.path()).notifyHolder());
}

TEST(InstanceLock, WithoutAPlaceForItEveryStartRuns) {
    for (const QString& folder : {QString(), QStringLiteral("/dev/null/none")}) {
        InstanceLock first(folder);
        InstanceLock second(folder);
        EXPECT_TRUE(first.take());
        first.listen();
        EXPECT_TRUE(second.take());
        static_cast<void>(second.notifyHolder());
    }
}

#ifdef FENWHIRL_WRAPPED_FLOCK
TEST(InstanceLock, OnAFileSystemWithoutLocksEveryStartRuns) {
    const QTemporaryDir folder;
    for (const int error : {ENOLCK, ENOTSUP, EINTR}) {
        flockError = error;
        InstanceLock lock(folder.path());
        EXPECT_TRUE(lock.take());
    }
    flockError = 0;
}
#endif

TEST(PrivateFolder, IsMadeWithItsParentsAndForNobodyElse) {
    const QTemporaryDir home;
    const QString path = home.filePath(QStringLiteral("Library/Application Support/com.fenwhirl.app"));
    EXPECT_EQ(privateFolder(path), path);
    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_EQ(privateFolder(path), path); // found again the next time
}

TEST(PrivateFolder, IsNoLinkAndNoFolderThatOthersMayEnter) {
    const QTemporaryDir home;
    const QString real = home.filePath(QStringLiteral("real"));
    ASSERT_EQ(privateFolder(real), real);
    const QString link = home.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(real, link));
    EXPECT_EQ(privateFolder(link), QString());
    ASSERT_EQ(chmod(QFile::encodeName(real).constData(), 0750), 0);
    EXPECT_EQ(privateFolder(real), QString());
}

TEST(PrivateFolder, IsNothingWhereNoneCanBeMade) {
    EXPECT_EQ(privateFolder(QStringLiteral("/dev/null/none/folder")), QString());
}

} // namespace

} // namespace Fenwhirl
