#include "MonitorHarness.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class MonitorAlert : public testing::Test, protected MonitorHarness {
protected:
    MonitorAlert() { preferences.setText(QStringLiteral("language"), QStringLiteral("fr")); }

    void pollAt(double celsius, double secondsLater) {
        setCelsius(celsius);
        pollAfter(secondsLater);
    }
};

} // namespace

TEST_F(MonitorAlert, FirstCrossingAlertsAtOnceAndTheNextFiveMinutesLater) {
    start();
    pollAt(89.9, 2);
    EXPECT_TRUE(notifications.empty());
    pollAt(90, 2);
    ASSERT_EQ(notifications.size(), 1U);
    EXPECT_EQ(notifications[0].first, QStringLiteral("Fenwhirl"));
    EXPECT_EQ(notifications[0].second, QStringLiteral("Ton Mac chauffe : 90 degrés."));
    pollAt(95.75, 2);
    pollAfter(297.5);
    EXPECT_EQ(notifications.size(), 1U);
    pollAfter(0.5); // exactly 300 s after the first
    ASSERT_EQ(notifications.size(), 2U);
    EXPECT_EQ(notifications[1].second, QStringLiteral("Ton Mac chauffe : 95 degrés."));
}

TEST_F(MonitorAlert, CoolingInBetweenDoesNotShortenThePause) {
    start();
    pollAt(95, 2);
    pollAt(50, 100);
    pollAt(95, 100);
    EXPECT_EQ(notifications.size(), 1U);
    pollAt(95, 100);
    EXPECT_EQ(notifications.size(), 2U);
}

TEST_F(MonitorAlert, SwitchedOffNothingIsSent) {
    start();
    monitor().setAlertsEnabled(false);
    pollAt(110, 2);
    EXPECT_TRUE(notifications.empty());
    monitor().setAlertsEnabled(true);
    pollAt(110, 2);
    EXPECT_EQ(notifications.size(), 1U);
}

TEST_F(MonitorAlert, WithoutTemperatureNothingIsSent) {
    start();
    smc.remove("TC0P");
    pollAfter(2);
    EXPECT_TRUE(notifications.empty());
}

TEST_F(MonitorAlert, FollowsTheUsersThreshold) {
    start();
    monitor().setAlertThreshold(60);
    pollAt(59.5, 2);
    EXPECT_TRUE(notifications.empty());
    pollAt(60, 2);
    EXPECT_EQ(notifications.size(), 1U);
}

TEST_F(MonitorAlert, SpeaksTheInterfaceLanguage) {
    start();
    monitor().setLanguage(AppLanguage::en);
    pollAt(95, 2);
    ASSERT_EQ(notifications.size(), 1U);
    EXPECT_NE(notifications[0].second, QStringLiteral("Ton Mac chauffe : 95 degrés."));
    EXPECT_TRUE(notifications[0].second.contains(QStringLiteral("95")));
}

} // namespace Fenwhirl
