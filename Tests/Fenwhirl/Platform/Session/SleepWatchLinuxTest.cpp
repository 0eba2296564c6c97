#include "Fenwhirl/Platform/Session/SleepWatchLinux.h"

#include "Fenwhirl/Platform/Desktop/PrivateBus.h"
#include "Support/MainThreadPauses.h"
#include "Support/WaitUntil.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSignalSpy>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

QString root() {
    return QStringLiteral("/org/freedesktop/login1");
}

QDBusMessage announcement(bool isAboutToSleep, const QString& to = {}) {
    const QString interface = QStringLiteral("org.freedesktop.login1.Manager");
    const QString name = QStringLiteral("PrepareForSleep");
    QDBusMessage signal = to.isEmpty() ? QDBusMessage::createSignal(root(), interface, name)
                                       : QDBusMessage::createTargetedSignal(to, root(), interface, name);
    signal << isAboutToSleep;
    return signal;
}

// A login manager that grants locks, refuses them, or stays silent.
class FakeLogind : public QDBusVirtualObject {
public:
    bool answers = true;
    bool givesLocks = true;
    bool isAboutToSleep = false;
    QVariant strange; // sent instead of the property's value
    int looks = 0;
    QList<QVariantList> asked; // lock requests
    QString asker;             // bus name of the code under test

    FakeLogind() : bus_(PrivateBus::connect()) {
        bus_.registerVirtualObject(root(), this, QDBusConnection::SubPath);
    }

    ~FakeLogind() override {
        bus_.unregisterObject(root(), QDBusConnection::UnregisterTree);
        QDBusConnection::disconnectFromBus(bus_.name());
        forgetLock();
    }

    FakeLogind(const FakeLogind&) = delete;
    FakeLogind& operator=(const FakeLogind&) = delete;

    void start() { ASSERT_TRUE(bus_.registerService(QStringLiteral("org.freedesktop.login1"))); }

    void leave() { ASSERT_TRUE(bus_.unregisterService(QStringLiteral("org.freedesktop.login1"))); }

    void announce(bool sleep) {
        isAboutToSleep = sleep;
        bus_.send(announcement(sleep));
    }

    // Whether the last lock is still held: the other end of its pipe is open.
    [[nodiscard]] bool isDelayed() const {
        pollfd state{.fd = lock_, .events = POLLIN, .revents = 0};
        return lock_ >= 0 && ::poll(&state, 1, 0) == 0;
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        asker = message.service();
        if (message.member() == QStringLiteral("Inhibit")) {
            asked << message.arguments();
        } else {
            ++looks;
        }
        if (!answers) {
            message.setDelayedReply(true);
        } else if (message.member() == QStringLiteral("Get")) {
            connection.send(message.createReply(
                QVariant::fromValue(QDBusVariant(strange.isValid() ? strange : QVariant(isAboutToSleep)))));
        } else if (givesLocks) {
            connection.send(message.createReply(newLock()));
        } else {
            connection.send(message.createErrorReply(
                QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"), QString()));
        }
        return true;
    }

private:
    QVariant newLock() {
        forgetLock();
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        lock_ = ends[0];
        QDBusUnixFileDescriptor given;
        given.giveFileDescriptor(ends[1]);
        return QVariant::fromValue(given);
    }

    void forgetLock() {
        if (lock_ >= 0) {
            close(lock_);
        }
        lock_ = -1;
    }

    QDBusConnection bus_;
    int lock_ = -1;
};

class SleepWatchLinuxTest : public testing::Test {
protected:
    // Timeouts so long that they never expire. A test shortens the one it waits for.
    static constexpr SleepTimeouts never{.atMost = std::chrono::hours(1),
                                         .answer = std::chrono::hours(1),
                                         .doubt = std::chrono::hours(1),
                                         .again = std::chrono::hours(1)};

    void make(SleepTimeouts patience = never) {
        watch = std::make_unique<SleepWatchLinux>(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), patience);
        sleeps = std::make_unique<QSignalSpy>(watch.get(), &SleepWatch::goingToSleep);
        wakes = std::make_unique<QSignalSpy>(watch.get(), &SleepWatch::awake);
    }

    void makeWithLock(SleepTimeouts patience = never) {
        logind.start();
        make(patience);
        ASSERT_TRUE(waitUntil([this] { return logind.isDelayed(); }));
    }

    [[nodiscard]] bool goesToSleep(qsizetype times = 1) const {
        return waitUntil([&] { return sleeps->size() == times; });
    }

    [[nodiscard]] bool wakesUp(qsizetype times = 1) const {
        return waitUntil([&] { return wakes->size() == times; });
    }

    [[nodiscard]] bool letsSleep() const {
        return waitUntil([this] { return !logind.isDelayed(); });
    }

    PrivateBus bus;
    FakeLogind logind;
    std::unique_ptr<SleepWatchLinux> watch;
    std::unique_ptr<QSignalSpy> sleeps;
    std::unique_ptr<QSignalSpy> wakes;
};

} // namespace

TEST_F(SleepWatchLinuxTest, DelaysASleepUntilEverythingIsReadyAndTheNextOneAgain) {
    makeWithLock();
    ASSERT_EQ(logind.asked.size(), 1);
    EXPECT_EQ(logind.asked[0].value(0), QStringLiteral("sleep"));
    EXPECT_EQ(logind.asked[0].value(3), QStringLiteral("delay"));
    for (int sleep = 1; sleep <= 3; ++sleep) {
        logind.announce(true);
        ASSERT_TRUE(goesToSleep(sleep));
        EXPECT_TRUE(logind.isDelayed());
        watch->ready();
        ASSERT_TRUE(letsSleep());
        EXPECT_EQ(wakes->size(), sleep - 1);
        logind.announce(false);
        ASSERT_TRUE(wakesUp(sleep));
        ASSERT_TRUE(waitUntil([this] { return logind.isDelayed(); })) << sleep;
        EXPECT_EQ(logind.asked.size(), sleep + 1);
    }
}

TEST_F(SleepWatchLinuxTest, DelaysASleepForAShortTimeOnly) {
    SleepTimeouts patience = never;
    patience.atMost = std::chrono::milliseconds(1);
    makeWithLock(patience);
    logind.announce(true);
    ASSERT_TRUE(letsSleep());
    EXPECT_EQ(sleeps->size(), 1);
    EXPECT_LT(SleepTimeouts().atMost, std::chrono::seconds(2));
}

TEST_F(SleepWatchLinuxTest, KeepsItsLockWhileNoSleepIsNear) {
    makeWithLock();
    watch->ready();
    logind.announce(false); // the end of a sleep that was announced earlier
    ASSERT_TRUE(waitUntil([this] { return !logind.asker.isEmpty(); }));
    logind.announce(true);
    ASSERT_TRUE(goesToSleep());
    EXPECT_TRUE(logind.isDelayed());
    EXPECT_TRUE(wakes->isEmpty());
    EXPECT_EQ(logind.asked.size(), 1);
}

TEST_F(SleepWatchLinuxTest, SaysSoWhereNoLockIsGiven) {
    logind.givesLocks = false;
    logind.start();
    make();
    ASSERT_TRUE(waitUntil([this] { return logind.asked.size() == 1; }));
    logind.announce(true);
    ASSERT_TRUE(goesToSleep());
    watch->ready();
    logind.givesLocks = true;
    logind.announce(false);
    ASSERT_TRUE(wakesUp());
    ASSERT_TRUE(waitUntil([this] { return logind.isDelayed(); }));
}

TEST_F(SleepWatchLinuxTest, KnowsOfASleepThatWasAnnouncedBeforeItsStart) {
    logind.isAboutToSleep = true;
    logind.start();
    make();
    ASSERT_TRUE(goesToSleep());
    EXPECT_TRUE(logind.asked.isEmpty());
    logind.announce(false);
    ASSERT_TRUE(wakesUp());
    ASSERT_TRUE(waitUntil([this] { return logind.isDelayed(); }));
}

TEST_F(SleepWatchLinuxTest, AsksWhetherItStillSleepsWhenNobodySaysThatItIsAwake) {
    SleepTimeouts patience = never;
    patience.doubt = std::chrono::milliseconds(1);
    makeWithLock(patience);
    const int before = logind.looks;
    logind.announce(true);
    ASSERT_TRUE(goesToSleep());
    ASSERT_TRUE(waitUntil([&] { return logind.looks >= before + 3; }));
    EXPECT_TRUE(wakes->isEmpty());
    logind.isAboutToSleep = false;
    ASSERT_TRUE(wakesUp());
    EXPECT_EQ(sleeps->size(), 1);
}

TEST_F(SleepWatchLinuxTest, IsAwakeAfterAStrangeAnswerAndAfterNone) {
    SleepTimeouts patience = never;
    patience.doubt = std::chrono::milliseconds(1);
    patience.answer = std::chrono::milliseconds(50);
    makeWithLock(patience);
    logind.strange = QStringLiteral("yes");
    logind.announce(true);
    ASSERT_TRUE(wakesUp());
    logind.answers = false;
    logind.announce(true);
    ASSERT_TRUE(wakesUp(2));
    EXPECT_EQ(sleeps->size(), 2);
}

TEST_F(SleepWatchLinuxTest, IsAwakeWhenTheLoginManagerIsGone) {
    SleepTimeouts patience = never;
    patience.doubt = std::chrono::milliseconds(1);
    makeWithLock(patience);
    logind.announce(true);
    ASSERT_TRUE(goesToSleep());
    logind.leave();
    ASSERT_TRUE(wakesUp());
}

TEST_F(SleepWatchLinuxTest, IsAwakeWhenTheBusIsGone) {
    SleepTimeouts patience = never;
    patience.doubt = std::chrono::milliseconds(1);
    makeWithLock(patience);
    logind.announce(true);
    ASSERT_TRUE(goesToSleep());
    bus.kill();
    ASSERT_TRUE(wakesUp());
}

TEST_F(SleepWatchLinuxTest, LocksTheNextLoginManager) {
    makeWithLock();
    logind.leave();
    FakeLogind next;
    next.start();
    ASSERT_TRUE(waitUntil([&] { return next.isDelayed(); }));
    next.announce(true);
    ASSERT_TRUE(goesToSleep());
    watch->ready();
    ASSERT_TRUE(waitUntil([&] { return !next.isDelayed(); }));
}

TEST_F(SleepWatchLinuxTest, AsksASilentLoginManagerAgain) {
    logind.answers = false;
    logind.start();
    SleepTimeouts patience = never;
    patience.answer = std::chrono::milliseconds(50);
    patience.again = std::chrono::milliseconds(1);
    const auto pause = longestPause(
        [&] {
            logind.looks = 0;
            make(patience);
        },
        [&] { return logind.looks >= 2; });
    EXPECT_LT(pause, acceptablePause);
    logind.answers = true;
    ASSERT_TRUE(waitUntil([this] { return logind.isDelayed(); }));
    EXPECT_TRUE(sleeps->isEmpty());
    EXPECT_TRUE(wakes->isEmpty());
}

TEST_F(SleepWatchLinuxTest, SaysNothingWithoutALoginManagerAndWithoutABus) {
    make();
    watch->ready();
    const SleepWatchLinux withoutBus(QStringLiteral("unix:path=/nonexistent/bus"), never);
    logind.start(); // noticed as soon as it appears
    ASSERT_TRUE(waitUntil([this] { return logind.isDelayed(); }));
    EXPECT_TRUE(sleeps->isEmpty());
}

TEST_F(SleepWatchLinuxTest, IgnoresOtherSenders) {
    makeWithLock();
    const QDBusConnection stranger = PrivateBus::connect();
    static_cast<void>(stranger.send(announcement(true, logind.asker)));
    static_cast<void>(stranger.send(announcement(true)));
    // The bus keeps the order of messages: once this call returns, both forged signals have arrived.
    static_cast<void>(stranger.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"))));
    logind.announce(true);
    ASSERT_TRUE(goesToSleep());
    logind.announce(false);
    ASSERT_TRUE(wakesUp());
    EXPECT_EQ(sleeps->size(), 1);
    QDBusConnection::disconnectFromBus(stranger.name());
}

} // namespace Fenwhirl
