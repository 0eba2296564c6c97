#include "Fenwhirl/Monitoring/MonitorHarness.h"
#include "Fenwhirl/Platform/Toolkit/MainThreadInbox.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>

#include <future>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using Runs = std::vector<FakeHelper::Arguments>;
using Scope = HandBack::Scope;

class MonitorSleep : public testing::Test, public MonitorHarness {
protected:
    // Sets one fan to a constant speed and the other to a curve, and polls, which sends both speeds.
    void driveBoth() {
        start();
        monitor().setSetting(0, constant(2000));
        monitor().setSetting(1, curve(40, 80));
        poll();
        ASSERT_EQ(helper.takeRuns(), driven);
    }

    [[nodiscard]] bool goesToSleep() {
        bool isDone = false;
        monitor().prepareForSleep([&isDone] { isDone = true; });
        return waitUntil([&isDone] { return isDone; });
    }

    const Runs driven = {{"set", "0", "2000"}, {"set", "1", "2400"}};
    const Runs handedBack = {{"auto", "0"}, {"auto", "1"}};
};

} // namespace

TEST_F(MonitorSleep, HandsBackTheFansOfAConstantSpeedToo) {
    driveBoth();
    ASSERT_TRUE(goesToSleep());
    EXPECT_EQ(helper.takeRuns(), handedBack);
}

TEST_F(MonitorSleep, PollsOnlyReadUntilItIsAwake) {
    driveBoth();
    ASSERT_TRUE(goesToSleep());
    helper.forgetRuns();
    pollAfter(11);
    pollAfter(11);
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorSleep, TheFirstPollAfterItTakesTheFansAgainHoweverShortItWas) {
    driveBoth();
    ASSERT_TRUE(goesToSleep());
    helper.forgetRuns();
    QSignalSpy polled(&monitor(), &Monitor::polled);
    advance(1);
    monitor().wakeUp();
    ASSERT_TRUE(waitUntil([&] { return !polled.isEmpty(); }));
    EXPECT_EQ(helper.takeRuns(), driven);
}

TEST_F(MonitorSleep, APollThatIsUnderWaySendsNoFurtherSpeed) {
    start();
    monitor().setSetting(0, constant(2000));
    monitor().setSetting(1, constant(3000));
    // Not with Qt's own call across threads, whose locks the thread sanitizer cannot see.
    const MainThreadInbox inbox;
    helper.onRun = [this, mainThread = inbox.sender()](const FakeHelper::Arguments& arguments) {
        if (arguments.front() == "set") {
            std::promise<void> done;
            mainThread.post([&] {
                monitor().prepareForSleep([] {});
                done.set_value();
            });
            done.get_future().wait();
        }
    };
    poll();
    ASSERT_TRUE(goesToSleep());
    EXPECT_EQ(helper.takeRuns(), (Runs{{"set", "0", "2000"}, {"auto", "0"}}));
}

TEST_F(MonitorSleep, AHandBackThatIsRefusedIsRepeatedWithEachPoll) {
    driveBoth();
    helper.succeeds = false;
    ASSERT_TRUE(goesToSleep());
    helper.forgetRuns();
    poll();
    EXPECT_EQ(helper.takeRuns(), handedBack);
    helper.succeeds = true;
    poll();
    EXPECT_EQ(helper.takeRuns(), handedBack);
    poll();
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorSleep, HeatProtectionLeavesTheFansToTheFirmware) {
    driveBoth();
    ASSERT_TRUE(goesToSleep());
    helper.forgetRuns();
    setCelsius(91);
    poll();
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorSleep, TouchesNoFanThatIsNotOurs) {
    start();
    ASSERT_TRUE(goesToSleep());
    EXPECT_EQ(helper.takeRuns(), Runs());
}

TEST_F(MonitorSleep, TheGuardHandsBackTheFansOfAConstantSpeedToo) {
    driveBoth();
    ASSERT_EQ(handBacks.back(), (HandBack{Scope::indices, {1}, {0}}));
    helper.succeeds = false;
    ASSERT_TRUE(goesToSleep());
    EXPECT_EQ(handBacks.back(), (HandBack{Scope::indices, {0, 1}, {}}));
}

TEST_F(MonitorSleep, QuittingDuringSleepSendsNoSpeed) {
    driveBoth();
    ASSERT_TRUE(goesToSleep());
    monitor().setSetting(0, constant(3000));
    helper.forgetRuns();
    monitor().restoreAutomaticBlocking();
    for (const auto& run : helper.takeRuns()) {
        EXPECT_EQ(run.front(), "auto");
    }
    EXPECT_EQ(timesHandedBack, 1);
}

TEST_F(MonitorSleep, WakingWithoutASleepDoesNothing) {
    driveBoth();
    const QSignalSpy polled(&monitor(), &Monitor::polled);
    monitor().wakeUp();
    poll();
    EXPECT_EQ(polled.size(), 1);
    EXPECT_EQ(helper.takeRuns(), Runs());
}

} // namespace Fenwhirl
