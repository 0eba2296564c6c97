#include "Fenwhirl/Platform/Toolkit/SerialQueue.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <gtest/gtest.h>
#include <pthread.h>
#include <string>
#include <thread>
#include <vector>

namespace Fenwhirl {

TEST(SerialQueue, RunsWorkInTheOrderOfHandingOver) {
    std::vector<int> order;
    std::vector<int> expected;
    {
        SerialQueue queue("fenwhirl.test");
        for (int i = 0; i < 1000; ++i) {
            queue.async([&order, i] { order.push_back(i); });
            expected.push_back(i);
        }
    }
    EXPECT_EQ(order, expected);
}

TEST(SerialQueue, RunsNextWhatIsInAHurry) {
    std::vector<int> order;
    {
        SerialQueue queue("fenwhirl.test");
        std::promise<void> release;
        queue.async([released = release.get_future().share()] { released.wait(); });
        queue.async([&order] { order.push_back(1); });
        queue.asyncNext([&order] { order.push_back(0); });
        release.set_value();
    }
    EXPECT_EQ(order, (std::vector{0, 1}));
}

TEST(SerialQueue, RepeatsWorkInTime) {
    using namespace std::chrono;
    constexpr milliseconds period{5};
    std::promise<void> third;
    std::atomic<int> runs = 0;
    SerialQueue queue("fenwhirl.test");
    const auto begin = steady_clock::now();
    queue.every(period, [&] {
        if (++runs == 3) {
            third.set_value();
        }
    });
    third.get_future().wait();
    EXPECT_GE(steady_clock::now() - begin, 3 * period); // none comes early
}

TEST(SerialQueue, LeavesOutRepetitionsThatItMissed) {
    using namespace std::chrono;
    constexpr milliseconds period{1};
    std::promise<void> fifth;
    std::atomic<int> runs = 0;
    std::atomic<int> runsBeforeWaitingWork = -1;
    std::promise<steady_clock::time_point> released;
    SerialQueue queue("fenwhirl.test");
    queue.async([&] {
        queue.every(period, [&] {
            if (++runs == 5) {
                fifth.set_value();
            }
        });
        queue.async([&] { runsBeforeWaitingWork = runs.load(); });
        const auto begin = steady_clock::now();
        while (steady_clock::now() < begin + 200 * period) {
        }
        released.set_value(steady_clock::now());
    });
    const auto busyUntil = released.get_future().get();
    fifth.get_future().wait();
    const int made = runs;
    EXPECT_LE(made, (steady_clock::now() - busyUntil) / period + 2);
    EXPECT_EQ(runsBeforeWaitingWork, 0); // work that waits goes first
}

TEST(SerialQueue, NeverRunsTwoPiecesAtOnce) {
    std::atomic<int> inside = 0;
    std::atomic<bool> overlapped = false;
    {
        SerialQueue queue("fenwhirl.test");
        std::vector<std::thread> callers;
        for (int caller = 0; caller < 4; ++caller) {
            callers.emplace_back([&] {
                for (int i = 0; i < 250; ++i) {
                    queue.async([&] {
                        overlapped = overlapped || inside.fetch_add(1) != 0;
                        inside.fetch_sub(1);
                    });
                }
            });
        }
        for (std::thread& caller : callers) {
            caller.join();
        }
    }
    EXPECT_FALSE(overlapped);
}

TEST(SerialQueue, SyncReturnsAfterAllThatWasHandedOverBefore) {
    SerialQueue queue("fenwhirl.test");
    int done = 0;
    for (int i = 0; i < 100; ++i) {
        queue.async([&done] { ++done; });
    }
    int seen = -1;
    queue.sync([&] { seen = done; });
    EXPECT_EQ(seen, 100);
}

TEST(SerialQueue, DestructionRunsAlsoWhatWorkHandsOverMeanwhile) {
    bool ran = false;
    {
        SerialQueue queue("fenwhirl.test");
        queue.async([&] { queue.async([&ran] { ran = true; }); });
    }
    EXPECT_TRUE(ran);
}

TEST(SerialQueue, KnowsWhetherTheCallerRunsOnIt) {
    SerialQueue queue("fenwhirl.test");
    bool inside = false;
    queue.sync([&] { inside = queue.isCurrent(); });
    EXPECT_TRUE(inside);
    EXPECT_FALSE(queue.isCurrent());
}

TEST(SerialQueue, NamesItsThread) {
    SerialQueue queue("fenwhirl.processes");
    char name[64] = {};
    queue.sync([&name] { pthread_getname_np(pthread_self(), name, sizeof name); });
    EXPECT_EQ(std::string("fenwhirl.processes").rfind(name, 0), 0U) << name;
    EXPECT_GE(std::string(name).size(), 15U);
}

TEST(SerialQueueDeathTest, WaitingForItselfEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            SerialQueue queue("fenwhirl.test");
            queue.sync([&] { queue.sync([] {}); });
        },
        testing::KilledBySignal(SIGABRT), "");
}

} // namespace Fenwhirl
