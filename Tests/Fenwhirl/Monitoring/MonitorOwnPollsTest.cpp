// The polls that the monitor's own queue begins, without the main thread.

#include "MonitorHarness.h"
#include "Support/WaitUntil.h"

#include <QDeadlineTimer>
#include <QSignalSpy>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <thread>

namespace Fenwhirl {

// A monitor that polls by itself, much more often than the program does.
class MonitorOwnPolls : public testing::Test, protected MonitorHarness {
protected:
    std::atomic<int> polls = 0;         // that were begun
    std::atomic<int> looks = 0;         // at the helper's file
    std::atomic<int> looksFromHere = 0; // on the main thread
    std::atomic<std::int64_t> stamp = 1;

    MonitorServices quickServices(std::chrono::milliseconds interval = std::chrono::milliseconds(5)) {
        MonitorServices quick = services();
        quick.runsOwnTimer = true;
        quick.pollInterval = interval;
        quick.wallClock = [this] {
            ++polls;
            return std::chrono::system_clock::time_point();
        };
        quick.helper.isInstalled = [this, here = std::this_thread::get_id()] {
            ++looks;
            looksFromHere += std::this_thread::get_id() == here ? 1 : 0;
            return helper.installed.load();
        };
        quick.helper.fileStamp = [this] { return stamp.load(); };
        return quick;
    }
};

TEST_F(MonitorOwnPolls, NeedNotWakeTheMainThread) {
    Monitor monitor(quickServices(std::chrono::milliseconds(25))); // time enough to publish a result
    int looksBefore = 0;
    int pollsWithoutLook = 0;
    QObject::connect(&monitor, &Monitor::polled, &monitor, [&] {
        pollsWithoutLook += looksFromHere == looksBefore ? 1 : 0;
        looksBefore = looksFromHere;
    });
    monitor.start();
    // Until the version of the helper is known, the main thread takes part; and so it does on a busy computer whenever it
    // publishes a result too late.
    EXPECT_TRUE(waitUntil([&] { return pollsWithoutLook >= 5; }));
}

TEST_F(MonitorOwnPolls, StopWhileTheMainThreadHangs) {
    Monitor monitor(quickServices());
    QSignalSpy polled(&monitor, &Monitor::polled);
    monitor.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() >= 10; }));
    // The guard would hand the fans back by now, and a poll would take them again.
    const int pollsBefore = polls;
    const int looksBefore = looks;
    const QDeadlineTimer deadline(std::chrono::seconds(20));
    while (looks < looksBefore + 30 && !deadline.hasExpired()) {
        std::this_thread::yield(); // without the event loop
    }
    EXPECT_GE(looks, looksBefore + 30);
    EXPECT_LE(polls, pollsBefore + 2); // one that was running, one whose result is not published
    polled.clear();
    EXPECT_TRUE(waitUntil([&] { return polled.count() >= 10; })); // they continue
}

TEST_F(MonitorOwnPolls, NoticeWhatHappensToTheHelper) {
    helper.installed = false;
    Monitor monitor(quickServices(std::chrono::milliseconds(25)));
    QSignalSpy polled(&monitor, &Monitor::polled);
    monitor.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() >= 5; }));
    EXPECT_FALSE(monitor.helperInstalled());
    EXPECT_EQ(helper.versionReads, 0);
    const int pollsBefore = polls;
    helper.installed = true;
    ASSERT_TRUE(waitUntil([&] { return monitor.helperInstalled(); }));
    EXPECT_LE(polls, pollsBefore + 4); // at once, and not when the main thread happens to look
    ASSERT_TRUE(waitUntil([&] { return helper.versionReads == 1; }));
    helper.setVersion("2");
    stamp = 2;
    ASSERT_TRUE(waitUntil([&] { return monitor.helperOutdated(); }));
    EXPECT_EQ(helper.versionReads, 2);
    helper.installed = false;
    EXPECT_TRUE(waitUntil([&] { return !monitor.helperInstalled() && !monitor.helperOutdated(); }));
}

} // namespace Fenwhirl
