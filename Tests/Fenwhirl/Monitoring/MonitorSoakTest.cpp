// Simulated days: the real monitor polls every two seconds while temperatures drift, sensors and fans come
// and go, the helper occasionally fails, the computer sleeps and the user changes settings. At every poll the
// model states independently which commands the helper must have received.

#include "Fenwhirl/Monitoring/PollModel.h"
#include "MonitorHarness.h"
#include "Support/ResidentMemory.h"
#include "Support/Volume.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace Fenwhirl {

namespace {

class MonitorSoak : public testing::Test, protected MonitorHarness {
protected:
    // What the controller, the helper and the user do before a poll.
    void disturb(std::mt19937& generator) {
        const auto oneIn = [&](unsigned count) { return generator() % count == 0; };
        celsius = std::clamp(celsius + (static_cast<double>(generator() % 9) - 4) * 0.25, 30.0, 110.0);
        setCelsius(celsius);
        if (oneIn(100)) {
            smc.remove("TC0P");
        }
        if (oneIn(100)) {
            smc.remove("F1Ac");
        } else {
            setFan(1, 2000);
        }
        if (oneIn(500)) {
            smc.setNumber("F0Mx", "fpe2", 4000 + static_cast<double>(generator() % 3000));
        }
        helper.succeeds = !oneIn(100);
        helper.installed = !oneIn(500);
        if (oneIn(200)) {
            const int index = static_cast<int>(generator() % 3);
            monitor().setSetting(index, oneIn(3)   ? FanSetting()
                                        : oneIn(2) ? constant(1000 + static_cast<double>(generator() % 6000))
                                                   : curve(40, 80));
        }
        if (oneIn(2000)) {
            monitor().setAlertsEnabled(oneIn(2));
        }
        advance(oneIn(3000) ? 3600 : 2); // asleep for an hour, or just the next poll
    }

    // The model's input: the readings that this poll published, and the current settings.
    [[nodiscard]] PollCircumstances circumstances(double nowSeconds) {
        PollCircumstances c;
        for (const FanState& fan : monitor().fans()) {
            c.fans.push_back({fan.id, fan.rpm, fan.minRPM, fan.maxRPM, fan.target});
        }
        for (const SensorState& sensor : monitor().sensors()) {
            c.temperatures.push_back({sensor.id.toStdString(), sensor.celsius});
        }
        c.settings = monitor().settings();
        c.protect = monitor().alertsEnabled();
        c.protectAt = monitor().alertThreshold();
        c.helperInstalled = monitor().helperInstalled();
        c.helperSucceeds = helper.succeeds;
        c.nowSeconds = nowSeconds;
        return c;
    }

    double celsius = 60;
};

} // namespace

TEST_F(MonitorSoak, DaysOfPollsDoWhatTheRulesSayAndKeepTheirMemory) {
    constexpr int pollsOfADay = 24 * 60 * 30;
    const int polls = rounds(1, 365) * pollsOfADay;
    std::mt19937 generator(365);
    start();
    PollModel model;
    static_cast<void>(model.poll(circumstances(seconds())));
    helper.forgetRuns();
    std::optional<std::size_t> residentAtFirst;
    int runs = 0;
    for (int i = 0; i < polls; ++i) {
        smc.requests.clear();
        disturb(generator);
        poll();
        if (HasFatalFailure()) {
            return;
        }
        const auto expected = model.poll(circumstances(seconds()));
        const auto actual = helper.takeRuns();
        ASSERT_EQ(actual, expected.commands) << "poll " << i;
        ASSERT_EQ(monitor().needsHelper(), expected.needsHelper) << "poll " << i;
        ASSERT_EQ(monitor().primaryCelsius(), expected.primary) << "poll " << i;
        ASSERT_LE(monitor().history().size(), 300);
        runs += static_cast<int>(actual.size());
        notifications.clear();
        handBacks.clear();
        if (i == pollsOfADay / 10) {
            residentAtFirst = residentBytes();
        }
    }
    EXPECT_GT(runs, 1000);
    if (residentAtFirst) {
        EXPECT_LT(residentBytes(), *residentAtFirst + (1U << 20U));
    }
}

} // namespace Fenwhirl
