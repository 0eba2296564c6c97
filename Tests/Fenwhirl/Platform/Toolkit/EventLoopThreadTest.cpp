#include "Fenwhirl/Platform/Toolkit/EventLoopThread.h"

#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace Fenwhirl {

using namespace std::chrono_literals;

TEST(EventLoopThread, RunsItsWorkOnAThreadOfItsOwn) {
    std::promise<std::thread::id> thread;
    const EventLoopThread loopThread("test",
                                     [&](QEventLoop&) { thread.set_value(std::this_thread::get_id()); });
    EXPECT_NE(thread.get_future().get(), std::this_thread::get_id());
}

TEST(EventLoopThread, DeliversEventsUntilTheWorkEndsTheLoop) {
    std::promise<int> ticks;
    const EventLoopThread loopThread("test", [&](QEventLoop& loop) {
        int count = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (++count == 3) {
                EventLoopThread::end(loop);
            }
        });
        timer.start(1ms);
        loop.exec();
        ticks.set_value(count);
    });
    // The end is an event itself. A thread that waits for its processor may be told of another tick before it.
    EXPECT_GE(ticks.get_future().get(), 3);
}

TEST(EventLoopThread, RemembersAnEndThatComesBeforeTheLoopRuns) {
    std::promise<void> returned;
    const EventLoopThread loopThread("test", [&](QEventLoop& loop) {
        EventLoopThread::end(loop);
        loop.exec();
        returned.set_value();
    });
    EXPECT_EQ(returned.get_future().wait_for(60s), std::future_status::ready);
}

TEST(EventLoopThread, IsEndedByItsOwnerAndWaitedFor) {
    std::atomic<bool> returned = false;
    std::promise<void> running;
    {
        const EventLoopThread loopThread("test", [&](QEventLoop& loop) {
            QTimer::singleShot(0, &loop, [&] { running.set_value(); });
            loop.exec();
            returned = true;
        });
        running.get_future().wait();
        EXPECT_FALSE(returned);
    }
    EXPECT_TRUE(returned);
}

TEST(EventLoopThread, CanBeEndedAtAnyMoment) {
    for (int round = 0; round < 200; ++round) {
        std::optional<bool> loopRan; // used by the thread alone until the thread has been waited for
        {
            const EventLoopThread loopThread("test", [&](QEventLoop& loop) {
                loopRan = false;
                loop.exec();
                loopRan = true;
            });
            for (int i = 0; i < round % 10; ++i) {
                std::this_thread::yield();
            }
        }
        EXPECT_NE(loopRan, false) << "a loop that was begun is also left";
    }
}

} // namespace Fenwhirl
