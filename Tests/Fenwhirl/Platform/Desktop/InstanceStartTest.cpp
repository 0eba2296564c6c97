// What a start of the program comes to while another instance is running, starting or ending.

#include "Fenwhirl/Platform/Desktop/SingleInstanceLinux.h"
#include "PrivateBus.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace Fenwhirl {

namespace {

using Start = SingleInstance::Start;

// Where an instance looks for others.
struct Location {
    QString folder;
    bool isOnBus;

    [[nodiscard]] std::unique_ptr<SingleInstanceLinux> instance() const {
        return std::make_unique<SingleInstanceLinux>(
            folder, isOnBus ? PrivateBus::connect() : QDBusConnection(QStringLiteral("not connected")));
    }
};

// Starts the program while `ending` has stopped listening. That instance ends after the second attempt. This
// thread is busy all the time, like that of a program that hands the fans back.
void startDuringTheEnd(std::unique_ptr<SingleInstanceLinux> ending, const Location& where) {
    ASSERT_TRUE(ending->becomeFirst());
    const QSignalSpy raised(ending.get(), &SingleInstance::raiseRequested);
    ending->stopListening();
    const auto next = where.instance();
    int attempts = 0;
    const Start start = next->start([&] {
        const bool arrived = attempts == 0 ? next->raiseFirst() : next->notifyFirst(QStringLiteral("game"));
        if (++attempts == 2) {
            ending.reset();
        }
        return arrived;
    });
    EXPECT_EQ(start, Start::first);
    EXPECT_EQ(attempts, 2);
    EXPECT_TRUE(raised.isEmpty());
    // The next one can be found.
    const QSignalSpy heard(next.get(), &SingleInstance::raiseRequested);
    const auto third = Location{where.folder, false}.instance();
    EXPECT_EQ(third->start([&] { return third->raiseFirst(); }), Start::handedOver);
    EXPECT_TRUE(waitUntil([&] { return heard.count() == 1; }));
}

} // namespace

TEST(InstanceStart, DuringTheEndOfAnotherWaitsAndIsFirst) {
    for (const bool isOnBus : {false, true}) {
        const QTemporaryDir folder;
        const Location where{folder.path(), isOnBus};
        startDuringTheEnd(where.instance(), where);
    }
}

// Two programs would drive the fans if the name on the bus were given up before the fans are handed back.
TEST(InstanceStart, DuringTheEndOfAnotherWithAnotherFolderWaitsToo) {
    const QTemporaryDir folder;
    const QTemporaryDir other;
    startDuringTheEnd(Location{folder.path(), true}.instance(), {other.path(), true});
}

// What it answered would count as done, although nobody acts on it any more.
TEST(InstanceStart, DuringTheEndOfAnotherGetsNoAnswerFromIt) {
    const QTemporaryDir folder;
    const Location where{folder.path(), true};
    const auto ending = where.instance();
    ASSERT_TRUE(ending->becomeFirst());
    const QSignalSpy raised(ending.get(), &SingleInstance::raiseRequested);
    const QSignalSpy asked(ending.get(), &SingleInstance::actionRequested);
    ending->stopListening();
    bool wasAnswered = true;
    std::atomic<bool> isDone = false;
    std::thread other([&] { // its calls block, while this thread answers what reaches it
        const auto next = where.instance();
        wasAnswered = next->becomeFirst() || next->raiseFirst() || next->notifyFirst(QStringLiteral("game"));
        isDone = true;
    });
    EXPECT_TRUE(waitUntil([&] { return isDone.load(); }));
    other.join();
    EXPECT_FALSE(wasAnswered);
    EXPECT_TRUE(raised.isEmpty());
    EXPECT_TRUE(asked.isEmpty());
}

TEST(InstanceStart, WithoutAnAnswerEndsWhenTheTimeIsOver) {
    const QTemporaryDir folder;
    const Location where{folder.path(), false};
    const auto ending = where.instance();
    ASSERT_TRUE(ending->becomeFirst());
    ending->stopListening();
    const auto next = where.instance();
    int attempts = 0;
    const auto tell = [&] {
        ++attempts;
        return next->raiseFirst();
    };
    EXPECT_EQ(next->start(tell, std::chrono::milliseconds(0)), Start::unanswered);
    EXPECT_EQ(attempts, 1);
    EXPECT_EQ(next->start(tell, SingleInstance::pause * 2), Start::unanswered);
    EXPECT_GT(attempts, 2);
}

TEST(InstanceStart, WithoutAnotherTellsNobody) {
    const QTemporaryDir folder;
    const auto only = Location{folder.path(), true}.instance();
    EXPECT_EQ(only->start([] {
        ADD_FAILURE();
        return false;
    }),
              Start::first);
}

} // namespace Fenwhirl
