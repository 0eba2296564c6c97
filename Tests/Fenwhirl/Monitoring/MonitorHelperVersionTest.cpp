// What the monitor does about the version of the installed helper.

#include "MonitorHarness.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>

#include <cstdint>
#include <future>
#include <gtest/gtest.h>
#include <vector>

namespace Fenwhirl {

namespace {

using Runs = std::vector<FakeHelper::Arguments>;

class MonitorHelperVersion : public testing::Test, protected MonitorHarness {};

} // namespace

TEST_F(MonitorHelperVersion, HelperOfAnotherVersionIsOutdated) {
    helper.setVersion("2");
    start();
    EXPECT_TRUE(waitUntil([&] { return monitor().helperOutdated(); }));
    helper.setVersion("3");
    monitor().tick();
    EXPECT_TRUE(waitUntil([&] { return !monitor().helperOutdated(); }));
    for (const auto& version :
         {std::optional<std::string>(""), std::optional<std::string>("4"), std::optional<std::string>()}) {
        helper.setVersion(version);
        monitor().tick();
        EXPECT_TRUE(waitUntil([&] { return monitor().helperOutdated(); }));
        helper.setVersion("3");
        monitor().tick();
        EXPECT_TRUE(waitUntil([&] { return !monitor().helperOutdated(); }));
    }
    helper.setVersion("2");
    monitor().tick();
    EXPECT_TRUE(waitUntil([&] { return monitor().helperOutdated(); }));
    helper.installed = false;
    monitor().tick();
    EXPECT_FALSE(monitor().helperOutdated()); // known at once, without asking the helper
}

TEST_F(MonitorHelperVersion, HangingVersionBlocksNeitherWindowNorReadings) {
    std::promise<void> release;
    helper.onVersion = [&, released = release.get_future().share()] { released.wait(); };
    start(); // publishes its poll although the version never arrives
    setFan(0, 2500);
    poll();
    EXPECT_EQ(monitor().fans()[0].rpm, 2500);
    ASSERT_TRUE(waitUntil([&] { return helper.versionReads == 1; }));
    poll();
    EXPECT_EQ(helper.versionReads, 1); // still the first read
    helper.setVersion("2");
    release.set_value();
    EXPECT_TRUE(waitUntil([&] { return monitor().helperOutdated(); }));
}

TEST_F(MonitorHelperVersion, AnAnswerAboutAHelperThatIsGoneDoesNotCount) {
    std::promise<void> release;
    // The second answer may still be under way when this test is over; it must not use what belongs to the test.
    helper.onVersion = [&fake = *helperOwner, released = release.get_future().share()] {
        if (fake.versionReads == 1) {
            released.wait();
        } else {
            fake.setVersion("3");
        }
    };
    helper.setVersion("2");
    start();
    ASSERT_TRUE(waitUntil([&] { return helper.versionReads == 1; }));
    helper.installed = false;
    poll();
    QSignalSpy outdated(&monitor(), &Monitor::helperOutdatedChanged);
    release.set_value();
    helper.installed = true;
    // The next helper is asked only when the answer about the former one has arrived.
    ASSERT_TRUE(waitUntil([&] {
        monitor().tick();
        return helper.versionReads >= 2;
    }));
    EXPECT_EQ(outdated.count(), 0);
    EXPECT_FALSE(monitor().helperOutdated());
}

TEST_F(MonitorHelperVersion, VersionIsAskedForOnceWhileTheFileStaysTheSame) {
    MonitorServices stamped = services();
    std::int64_t stamp = 7;
    stamped.helper.fileStamp = [&] { return std::optional(stamp); };
    Monitor m(stamped);
    QSignalSpy polled(&m, &Monitor::polled);
    QSignalSpy outdated(&m, &Monitor::helperOutdatedChanged);
    helper.setVersion("2");
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1 && outdated.count() == 1; }));
    for (int polls = 2; polls <= 3; ++polls) {
        m.tick();
        ASSERT_TRUE(waitUntil([&] { return polled.count() == polls; }));
    }
    EXPECT_EQ(helper.versionReads, 1);
    helper.setVersion("3");
    stamp = 8;
    m.tick();
    EXPECT_TRUE(waitUntil([&] { return outdated.count() == 2; }));
    EXPECT_EQ(helper.versionReads, 2);
    EXPECT_FALSE(m.helperOutdated());
}

TEST_F(MonitorHelperVersion, AHelperThatCouldNotBeStartedIsAskedAgainAndThenDrives) {
    MonitorServices stamped = services();
    stamped.helper.fileStamp = [] { return std::optional<std::int64_t>(7); };
    Monitor m(stamped);
    QSignalSpy polled(&m, &Monitor::polled);
    helper.setVersion("Impossible de lancer l'assistant.");
    m.setSetting(0, constant(2000));
    m.start();
    ASSERT_TRUE(waitUntil([&] { return polled.count() == 1 && m.helperOutdated(); }));
    EXPECT_EQ(helper.takeRuns(), Runs());
    helper.setVersion("3");
    ASSERT_TRUE(waitUntil([&] {
        m.tick();
        return !m.helperOutdated();
    }));
    ASSERT_TRUE(waitUntil([&] {
        m.tick();
        return helper.takeRuns() == Runs{{"set", "0", "2000"}};
    }));
}

} // namespace Fenwhirl
