#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include "Fenwhirl/Platform/Toolkit/BackgroundTask.h"
#include "Fenwhirl/Platform/Toolkit/Clock.h"
#include "Fenwhirl/Platform/Toolkit/MainThreadInbox.h"
#include "Fenwhirl/Platform/Toolkit/SerialQueue.h"
#include "Support/WaitUntil.h"

#include <QCoreApplication>
#include <QThread>

#include <csignal>
#include <cstdlib>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <vector>

namespace Fenwhirl {

TEST(MainThread, IsKnownOnEveryThread) {
    EXPECT_TRUE(MainThread::isCurrent());
    mainThread.assertIsCurrent();
    bool elsewhere = true;
    SerialQueue queue("fenwhirl.test");
    queue.sync([&] { elsewhere = MainThread::isCurrent(); });
    EXPECT_FALSE(elsewhere);
}

TEST(MainThreadDeathTest, AssertionOnAnotherThreadEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            SerialQueue queue("fenwhirl.test");
            queue.sync([] { mainThread.assertIsCurrent(); });
        },
        testing::KilledBySignal(SIGABRT), "");
}

TEST(ThreadAffinityDeathTest, BelongsToTheFirstThatAsks) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const ThreadAffinity owner;
    SerialQueue queue("fenwhirl.test");
    queue.sync([&] { owner.assertIsCurrent(); });
    queue.sync([&] { owner.assertIsCurrent(); });
    EXPECT_EXIT(
        {
            const ThreadAffinity other;
            SerialQueue elsewhere("fenwhirl.test");
            elsewhere.sync([&] { other.assertIsCurrent(); });
            other.assertIsCurrent();
        },
        testing::KilledBySignal(SIGABRT), "");
}

TEST(MainThreadInbox, RunsWorkOnTheMainThreadInItsOrder) {
    const MainThreadInbox inbox;
    std::vector<int> order;
    bool alwaysMain = true;
    {
        SerialQueue queue("fenwhirl.test");
        queue.async([&, reply = inbox.sender()] {
            for (int i = 0; i < 1000; ++i) {
                reply.post([&, i] {
                    order.push_back(i);
                    alwaysMain = alwaysMain && MainThread::isCurrent();
                });
            }
        });
    }
    EXPECT_TRUE(order.empty()); // only the event loop runs it
    ASSERT_TRUE(waitUntil([&] { return order.size() == 1000; }));
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(order.at(static_cast<std::size_t>(i)), i);
    }
    EXPECT_TRUE(alwaysMain);
}

TEST(MainThreadInbox, WorkMayPostMoreWork) {
    const MainThreadInbox inbox;
    int depth = 0;
    std::function<void()> next = [&] {
        if (++depth < 100) {
            inbox.sender().post(next);
        }
    };
    inbox.sender().post(next);
    ASSERT_TRUE(waitUntil([&] { return depth == 100; }));
    EXPECT_EQ(depth, 100);
}

// Opening a file dialog, for example, runs an event loop.
TEST(MainThreadInbox, WorkThatRunsAnEventLoopDoesNotHoldUpWhatWaitsBehindIt) {
    const MainThreadInbox inbox;
    std::vector<int> order;
    std::optional<std::vector<int>> ranInside;
    inbox.sender().post([&] {
        ASSERT_TRUE(waitUntil([&] { return order.size() == 2; }));
        ranInside = order;
    });
    inbox.sender().post([&] {
        order.push_back(1);
        inbox.sender().post([&] { order.push_back(2); });
    });
    ASSERT_TRUE(waitUntil([&] { return ranInside.has_value(); }));
    EXPECT_EQ(ranInside, (std::vector<int>{1, 2}));
}

TEST(MainThreadInbox, WhatWasNotRunIsDroppedWithTheInbox) {
    auto inbox = std::make_unique<MainThreadInbox>();
    const auto sender = inbox->sender();
    const auto owned = std::make_shared<int>();
    bool ran = false;
    sender.post([&ran, owned] { ran = true; });
    EXPECT_EQ(owned.use_count(), 2);
    inbox.reset();
    sender.post([&ran, owned] { ran = true; });
    EXPECT_EQ(owned.use_count(), 1);
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

TEST(MainThreadInbox, WorkMayCloseItsOwnInbox) {
    auto inbox = std::make_unique<MainThreadInbox>();
    const auto sender = inbox->sender();
    bool first = false;
    bool second = false;
    sender.post([&] {
        first = true;
        inbox.reset();
    });
    sender.post([&] { second = true; });
    ASSERT_TRUE(waitUntil([&] { return first; }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    EXPECT_TRUE(first);
    EXPECT_FALSE(second);
}

TEST(BackgroundTask, RunsBesideOthersThatBlock) {
    std::promise<void> release;
    std::promise<void> ended;
    runInBackground([released = release.get_future().share(), &ended] {
        released.wait();
        ended.set_value();
    });
    std::promise<bool> onMain;
    runInBackground([&onMain] { onMain.set_value(MainThread::isCurrent()); });
    EXPECT_FALSE(onMain.get_future().get());
    release.set_value();
    ended.get_future().wait();
}

TEST(Clock, NeverGoesBackAndCountsSeconds) {
    const auto before = continuousTime();
    const auto steadyBefore = std::chrono::steady_clock::now();
    auto last = before;
    while (std::chrono::steady_clock::now() - steadyBefore < std::chrono::milliseconds(20)) {
        const auto now = continuousTime();
        ASSERT_GE(now, last);
        last = now;
    }
    // Reads the clock once more: on a slow machine the loop may have been interrupted after its last reading.
    EXPECT_GE((continuousTime() - before).count(), 0.015);
}

#if defined(__SANITIZE_THREAD__)
// The suppressions for the library must not hide data races of our own: two threads write to a value of ours,
// one of them in a call made by the library, and the sanitizer must report it.
TEST(ThreadSanitizerDeathTest, SeesCodeOfOursThatTheLibraryCalls) {
    // The sanitizer exits with status 66 after a report.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            QThread thread;
            QObject receiver;
            receiver.moveToThread(&thread);
            thread.start();
            const auto value = std::make_unique<int>(1);
            QMetaObject::invokeMethod(&receiver, [&] {
                *value = 2;
                thread.quit();
            });
            *value = 3;
            thread.wait();
            std::exit(0);
        },
        testing::ExitedWithCode(66), "data race.*ThreadsTest");
}
#endif

} // namespace Fenwhirl
