// The history of the main temperature, and the times of its samples.

#include "MonitorHarness.h"

#include <QList>

#include <chrono>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class MonitorHistory : public testing::Test, protected MonitorHarness {};

// In seconds, because a time point cannot be printed on every platform.
QList<double> since1970(const QList<std::chrono::system_clock::time_point>& times) {
    QList<double> seconds;
    for (const auto time : times) {
        seconds.append(std::chrono::duration<double>(time.time_since_epoch()).count());
    }
    return seconds;
}

} // namespace

TEST_F(MonitorHistory, KeepsTheLastThreeHundredTemperatures) {
    start();
    for (int i = 1; i < 305; ++i) {
        setCelsius(20 + i * 0.125);
        poll();
    }
    ASSERT_EQ(monitor().history().size(), 300);
    EXPECT_EQ(monitor().history().first(), 20 + 5 * 0.125);
    EXPECT_EQ(monitor().history().last(), 20 + 304 * 0.125);
}

TEST_F(MonitorHistory, HasNoEntryForAPollWithoutTemperature) {
    start();
    smc.remove("TC0P");
    poll();
    EXPECT_EQ(monitor().history(), QList<double>{50});
    EXPECT_EQ(monitor().primaryCelsius(), std::nullopt);
}

TEST_F(MonitorHistory, EveryTemperatureKeepsTheTimeItWasReadAt) {
    start();
    pollAfter(2);
    pollAfter(7);
    EXPECT_EQ(since1970(monitor().historyTimes()),
              since1970({wallTime(1000), wallTime(1002), wallTime(1009)}));
    for (int i = 0; i < 300; ++i) {
        pollAfter(2);
    }
    ASSERT_EQ(monitor().historyTimes().size(), 300);
    EXPECT_EQ(since1970({monitor().historyTimes().first()}), since1970({wallTime(1011)}));
    EXPECT_EQ(since1970({monitor().historyTimes().last()}), since1970({wallTime(1609)}));
}

TEST_F(MonitorHistory, WhenInterruptedKeepsTheTimesOnBothSidesOfTheGap) {
    start();
    smc.remove("TC0P");
    for (int i = 0; i < 30; ++i) {
        pollAfter(2); // a minute without a temperature adds no samples
    }
    setCelsius(60);
    pollAfter(2);
    EXPECT_EQ(monitor().history(), (QList<double>{50, 60}));
    EXPECT_EQ(since1970(monitor().historyTimes()), since1970({wallTime(1000), wallTime(1062)}));
}

TEST_F(MonitorHistory, ASleepShowsInItsTimes) {
    start();
    pollAfter(8 * 3600);
    EXPECT_EQ(since1970(monitor().historyTimes()), since1970({wallTime(1000), wallTime(1000 + 8 * 3600)}));
}

TEST_F(MonitorHistory, ASampleCarriesTheTimeOfItsReadingNotOfItsPublication) {
    start();
    monitor().setSetting(0, constant(2000));
    const auto before = wallTime(seconds());
    helper.onRun = [this](const auto&) { advance(25); }; // a helper that hangs for a while
    poll();
    EXPECT_EQ(since1970({monitor().historyTimes().last()}), since1970({before}));
}

TEST_F(MonitorHistory, AClockThatIsSetChangesNoTimeOfEarlierSamples) {
    start();
    const auto before = wallTime(seconds());
    setWallClock(1.7e9);
    pollAfter(2);
    EXPECT_EQ(since1970(monitor().historyTimes()), since1970({before, wallTime(1002)}));
}

} // namespace Fenwhirl
