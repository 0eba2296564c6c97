#include "Fenwhirl/Localization/Localizer.h"
#include "MonitorHarness.h"

#include <QSignalSpy>

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

class MonitorPreferences : public testing::Test, protected MonitorHarness {
protected:
    ~MonitorPreferences() override { Localizer::setLanguage(AppLanguage::automatic); }

    // The stored value, including its type.
    [[nodiscard]] std::optional<PreferenceValue> stored(const char* key) const {
        const auto entry = preferences.values.find(QLatin1String(key));
        return entry == preferences.values.end() ? std::nullopt : std::optional(entry->second);
    }

    void restart() {
        destroyMonitor();
        make();
    }
};

const QByteArray twoFans =
    R"({"0":{"mode":"constant","constantRPM":2500,"sensorKey":"","startTemp":50,"maxTemp":90},)"
    R"("3":{"mode":"sensor","constantRPM":3000,"sensorKey":"TG0P","startTemp":40,"maxTemp":80}})";

} // namespace

TEST_F(MonitorPreferences, FirstLaunchHasTheDefaults) {
    make();
    EXPECT_TRUE(monitor().settings().empty());
    EXPECT_EQ(monitor().setting(0), FanSetting());
    EXPECT_EQ(monitor().activePreset(), std::nullopt);
    EXPECT_EQ(monitor().theme(), AppTheme::dark);
    EXPECT_EQ(monitor().language(), AppLanguage::automatic);
    EXPECT_TRUE(monitor().alertsEnabled());
    EXPECT_EQ(monitor().warmThreshold(), 85);
    EXPECT_EQ(monitor().hotThreshold(), 92);
    EXPECT_EQ(monitor().alertThreshold(), 90);
    EXPECT_FALSE(monitor().didOnboard());
    EXPECT_EQ(monitor().selectedPage(), Page::dashboard);
    EXPECT_TRUE(monitor().smcAvailable());
    EXPECT_FALSE(monitor().helperOutdated());
    EXPECT_FALSE(monitor().needsHelper());
    EXPECT_FALSE(monitor().isInstalling());
    EXPECT_TRUE(monitor().helperInstalled());
    EXPECT_TRUE(monitor().controlError().isEmpty());
    EXPECT_TRUE(monitor().fans().isEmpty());
    EXPECT_TRUE(monitor().sensors().isEmpty());
    EXPECT_TRUE(monitor().history().isEmpty());
    EXPECT_EQ(monitor().primaryCelsius(), std::nullopt);
    EXPECT_TRUE(preferences.values.empty());
}

TEST_F(MonitorPreferences, EveryChangeIsStoredAtOnceWithItsType) {
    make();
    monitor().setTheme(AppTheme::automatic);
    EXPECT_EQ(stored("theme"), PreferenceValue(QStringLiteral("auto")));
    monitor().setLanguage(AppLanguage::srCyrl);
    EXPECT_EQ(stored("language"), PreferenceValue(QStringLiteral("sr-Cyrl")));
    EXPECT_EQ(Localizer::language(), AppLanguage::srCyrl);
    monitor().setAlertsEnabled(false);
    EXPECT_EQ(stored("alertsEnabled"), PreferenceValue(false));
    monitor().setWarmThreshold(70);
    EXPECT_EQ(stored("warmThreshold"), PreferenceValue(70.0));
    monitor().setHotThreshold(80.5);
    EXPECT_EQ(stored("hotThreshold"), PreferenceValue(80.5));
    monitor().setAlertThreshold(75);
    EXPECT_EQ(stored("alertThreshold"), PreferenceValue(75.0));
    monitor().setDidOnboard(true);
    EXPECT_EQ(stored("didOnboard"), PreferenceValue(true));
    monitor().setSetting(1, constant(2500));
    EXPECT_TRUE(std::holds_alternative<QByteArray>(*stored("settings")));
    EXPECT_FALSE(preferences.contains(QStringLiteral("preset")));
    restart();
    EXPECT_EQ(monitor().theme(), AppTheme::automatic);
    EXPECT_EQ(monitor().language(), AppLanguage::srCyrl);
    EXPECT_FALSE(monitor().alertsEnabled());
    EXPECT_EQ(monitor().warmThreshold(), 70);
    EXPECT_EQ(monitor().hotThreshold(), 80.5);
    EXPECT_EQ(monitor().alertThreshold(), 75);
    EXPECT_TRUE(monitor().didOnboard());
    EXPECT_EQ(monitor().settings(), (FanSettings{{1, constant(2500)}}));
}

TEST_F(MonitorPreferences, AssignmentOfTheSameValueIsStoredButNotAnnounced) {
    make();
    QSignalSpy changed(&monitor(), &Monitor::themeChanged);
    monitor().setTheme(AppTheme::dark);
    EXPECT_EQ(stored("theme"), PreferenceValue(QStringLiteral("dark")));
    EXPECT_EQ(changed.count(), 0);
    monitor().setTheme(AppTheme::light);
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(MonitorPreferences, StoredValuesAreLoaded) {
    preferences.setData(QStringLiteral("settings"), twoFans);
    preferences.setText(QStringLiteral("preset"), QStringLiteral("game"));
    preferences.setText(QStringLiteral("language"), QStringLiteral("de"));
    make();
    EXPECT_EQ(monitor().settings(), (FanSettings{{0, constant(2500)}, {3, curve(40, 80, "TG0P")}}));
    EXPECT_EQ(monitor().activePreset(), Preset::game);
    EXPECT_EQ(Localizer::language(), AppLanguage::de);
}

TEST_F(MonitorPreferences, ValuesThatAreNotUnderstoodLeaveTheDefaults) {
    preferences.setText(QStringLiteral("theme"), QStringLiteral("blue"));
    preferences.setText(QStringLiteral("language"), QStringLiteral("FR"));
    preferences.setText(QStringLiteral("preset"), QStringLiteral("turbo"));
    preferences.setText(QStringLiteral("settings"), QString::fromUtf8(twoFans));
    make();
    EXPECT_EQ(monitor().theme(), AppTheme::dark);
    EXPECT_EQ(monitor().language(), AppLanguage::automatic);
    EXPECT_EQ(monitor().activePreset(), std::nullopt);
    EXPECT_TRUE(monitor().settings().empty());
}

TEST_F(MonitorPreferences, WordsOfAnotherTypeAreIgnored) {
    for (const char* key : {"theme", "language", "preset"}) {
        preferences.setNumber(QLatin1String(key), 1);
    }
    make();
    EXPECT_EQ(monitor().theme(), AppTheme::dark);
    EXPECT_EQ(monitor().language(), AppLanguage::automatic);
    EXPECT_EQ(monitor().activePreset(), std::nullopt);
}

TEST_F(MonitorPreferences, ThresholdsAndTheAlertSwitchAreReadFromAnyStoredType) {
    preferences.setText(QStringLiteral("warmThreshold"), QStringLiteral("70"));
    preferences.setText(QStringLiteral("hotThreshold"), QStringLiteral("chaud"));
    preferences.setBoolean(QStringLiteral("alertThreshold"), true);
    preferences.setNumber(QStringLiteral("alertsEnabled"), 0);
    make();
    EXPECT_EQ(monitor().warmThreshold(), 70);
    EXPECT_EQ(monitor().hotThreshold(), 0);
    EXPECT_EQ(monitor().alertThreshold(), 1);
    EXPECT_FALSE(monitor().alertsEnabled());
    // From then on they have the type in which they were read.
    EXPECT_EQ(stored("warmThreshold"), PreferenceValue(70.0));
    EXPECT_EQ(stored("hotThreshold"), PreferenceValue(0.0));
    EXPECT_EQ(stored("alertThreshold"), PreferenceValue(1.0));
    EXPECT_EQ(stored("alertsEnabled"), PreferenceValue(false));
}

TEST_F(MonitorPreferences, ThresholdsAreTakenAsTheyAre) {
    preferences.setNumber(QStringLiteral("warmThreshold"), -1e300);
    preferences.setNumber(QStringLiteral("hotThreshold"), std::numeric_limits<double>::quiet_NaN());
    make();
    EXPECT_EQ(monitor().warmThreshold(), -1e300);
    EXPECT_NE(monitor().hotThreshold(), monitor().hotThreshold());
}

TEST_F(MonitorPreferences, OneWrongFanDiscardsAllSettingsAndKeepsTheStoredOnes) {
    QByteArray broken = twoFans;
    broken.replace(R"(,"maxTemp":80)", "");
    preferences.setData(QStringLiteral("settings"), broken);
    make();
    EXPECT_TRUE(monitor().settings().empty());
    EXPECT_EQ(stored("settings"), PreferenceValue(broken));
    monitor().setSetting(0, constant(2000));
    EXPECT_NE(stored("settings"), PreferenceValue(broken));
}

TEST_F(MonitorPreferences, SettingsThatCannotBeStoredLeaveTheStoredOnes) {
    preferences.setData(QStringLiteral("settings"), twoFans);
    make();
    monitor().setSetting(0, constant(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(stored("settings"), PreferenceValue(twoFans));
}

TEST_F(MonitorPreferences, PresetSurvivesARestartWithItsSettings) {
    start();
    monitor().apply(Preset::game);
    EXPECT_EQ(stored("preset"), PreferenceValue(QStringLiteral("game")));
    restart();
    EXPECT_EQ(monitor().activePreset(), Preset::game);
    EXPECT_EQ(monitor().settings(), (FanSettings{{0, curve(40, 80)}, {1, curve(40, 80)}}));
}

TEST_F(MonitorPreferences, PresetIsSavedAfterTheSettingsThatItBrought) {
    start();
    monitor().apply(Preset::game);
    const auto settingsBefore = stored("settings");
    std::optional<PreferenceValue> settingsThen;
    std::optional<PreferenceValue> presetThen;
    QObject::connect(&monitor(), &Monitor::settingsChanged, &monitor(), [&] {
        settingsThen = stored("settings");
        presetThen = stored("preset");
    });
    const int writes = preferences.writes;
    monitor().apply(Preset::max);
    EXPECT_NE(settingsThen, settingsBefore);
    EXPECT_EQ(settingsThen, stored("settings"));
    EXPECT_EQ(presetThen, PreferenceValue(QStringLiteral("game")));
    EXPECT_EQ(stored("preset"), PreferenceValue(QStringLiteral("max")));
    EXPECT_EQ(preferences.writes, writes + 4) << "both, each time";
}

TEST_F(MonitorPreferences, PresetRewritesEveryPresentFanAndNoOther) {
    preferences.setData(QStringLiteral("settings"), twoFans);
    smc.setNumber("F1Mx", "fpe2", 5500);
    start();
    monitor().apply(Preset::max);
    EXPECT_EQ(monitor().setting(0), constant(6000));
    EXPECT_EQ(monitor().setting(1), constant(5500));
    EXPECT_EQ(monitor().setting(3), curve(40, 80, "TG0P")); // a fan that is not present
    monitor().apply(Preset::automatic);
    EXPECT_EQ(monitor().settings().at(0), FanSetting());
}

TEST_F(MonitorPreferences, AnErrorThatIsShownFollowsTheLanguage) {
    preferences.setText(QStringLiteral("language"), QStringLiteral("fr"));
    loginItemWorks = false;
    start();
    monitor().setLaunchAtLogin(true);
    const QString french = monitor().controlError();
    QSignalSpy changed(&monitor(), &Monitor::controlErrorChanged);
    monitor().setLanguage(AppLanguage::de);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_NE(monitor().controlError(), french);
    monitor().setLanguage(AppLanguage::fr);
    EXPECT_EQ(monitor().controlError(), french);
    monitor().dismissControlError();
    changed.clear();
    monitor().setLanguage(AppLanguage::automatic);
    EXPECT_EQ(changed.count(), 0) << "there is none";
}

// Its speed is brought into the fan's range as soon as that is known.
TEST_F(MonitorPreferences, PresetMaxIsMoreThanAnyFanCanDoWhereTheMaximumIsUnknown) {
    smc.remove("F0Mx");
    start();
    monitor().apply(Preset::max);
    EXPECT_EQ(monitor().setting(0), constant(10000));
    EXPECT_EQ(monitor().setting(1), constant(6000));
}

TEST_F(MonitorPreferences, PresetWithoutAnyFanIsOnlyRemembered) {
    make();
    QSignalSpy settingsChanged(&monitor(), &Monitor::settingsChanged);
    monitor().apply(Preset::max);
    EXPECT_TRUE(monitor().settings().empty());
    EXPECT_EQ(settingsChanged.count(), 0);
    EXPECT_EQ(monitor().activePreset(), Preset::max);
    EXPECT_EQ(stored("preset"), PreferenceValue(QStringLiteral("max")));
    EXPECT_EQ(stored("settings"), PreferenceValue(QByteArray("{}")));
}

TEST_F(MonitorPreferences, PresetActsAtTheNextPollThatNeedsIt) {
    setCelsius(60);
    start();
    monitor().apply(Preset::game);
    EXPECT_TRUE(helper.takeRuns().empty());
    poll();
    EXPECT_EQ(helper.takeRuns(),
              (std::vector<FakeHelper::Arguments>{{"set", "0", "3600"}, {"set", "1", "3600"}}));
    setCelsius(60.5); // 30 rpm more, which is not worth a command
    pollAfter(2);
    EXPECT_TRUE(helper.takeRuns().empty());
}

TEST_F(MonitorPreferences, RealEditClearsThePresetAndAnEqualOneDoesNot) {
    start();
    monitor().apply(Preset::game);
    QSignalSpy presetChanged(&monitor(), &Monitor::activePresetChanged);
    const int writes = preferences.writes;
    monitor().setSetting(0, curve(40, 80));
    EXPECT_EQ(monitor().activePreset(), Preset::game);
    EXPECT_EQ(preferences.writes, writes);
    monitor().setSetting(0, curve(41, 80));
    EXPECT_EQ(monitor().activePreset(), std::nullopt);
    EXPECT_FALSE(preferences.contains(QStringLiteral("preset")));
    EXPECT_EQ(presetChanged.count(), 1);
}

TEST_F(MonitorPreferences, EditOfAFanWithoutEntryToTheDefaultChangesNothing) {
    make();
    monitor().setSetting(5, FanSetting());
    EXPECT_TRUE(monitor().settings().empty());
    EXPECT_TRUE(preferences.values.empty());
}

TEST_F(MonitorPreferences, SelectedPageIsNotStored) {
    make();
    QSignalSpy changed(&monitor(), &Monitor::selectedPageChanged);
    monitor().setSelectedPage(Page::alerts);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(preferences.values.empty());
}

TEST_F(MonitorPreferences, ActsInTimeWhileAlertsAreOnOrAFanIsNotAutomatic) {
    make();
    EXPECT_EQ(needsTimelyScheduling, std::vector<bool>{true});
    monitor().setAlertsEnabled(false);
    EXPECT_EQ(needsTimelyScheduling, (std::vector<bool>{true, false}));
    monitor().setSetting(0, constant(2000));
    EXPECT_EQ(needsTimelyScheduling, (std::vector<bool>{true, false, true}));
    monitor().setSetting(0, FanSetting());
    EXPECT_EQ(needsTimelyScheduling, (std::vector<bool>{true, false, true, false}));
}

} // namespace Fenwhirl
