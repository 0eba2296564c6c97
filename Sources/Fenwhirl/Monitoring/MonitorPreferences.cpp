// What the user wants: settings, presets and preferences, each saved as soon as it changes.

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Monitoring/MonitorPrivate.h"

namespace Fenwhirl {

namespace {

// The constant speed of the preset "Max" for a fan whose maximum is currently unknown: more than any fan can
// do. It is clamped to the fan's range later.
constexpr double beyondEveryMaximumRPM = 10000;

} // namespace

const FanSettings& Monitor::settings() const {
    return state().saved.settings;
}

FanSetting Monitor::setting(int index) const {
    const FanSettings& settings = state().saved.settings;
    const auto entry = settings.find(index);
    return entry == settings.end() ? FanSetting() : entry->second;
}

void Monitor::setSetting(int index, const FanSetting& setting) {
    Private& d = state();
    if (setting == this->setting(index)) {
        return;
    }
    d.change([&](FanSettings& settings) { settings[index] = setting; }, std::nullopt);
}

std::optional<Preset> Monitor::activePreset() const {
    return state().saved.activePreset;
}

void Monitor::apply(Preset preset) {
    Private& d = state();
    const auto rewrite = [&](FanSettings& settings) {
        mainThread.assertIsCurrent();
        for (const FanState& fan : d.fans) {
            settings[fan.id] = settingFor(preset, fan.isMaximumKnown ? fan.maxRPM : beyondEveryMaximumRPM);
        }
    };
    d.change(rewrite, preset);
}

AppTheme Monitor::theme() const {
    return state().saved.theme;
}

void Monitor::setTheme(AppTheme theme) {
    Private& d = state();
    d.remember<&SavedPreferences::theme>(theme, &Monitor::themeChanged);
}

AppLanguage Monitor::language() const {
    return state().saved.language;
}

void Monitor::setLanguage(AppLanguage language) {
    Private& d = state();
    Localizer::setLanguage(language);
    const bool changes = d.saved.language != language;
    d.remember<&SavedPreferences::language>(language, &Monitor::languageChanged);
    if (changes && d.controlError) {
        Q_EMIT controlErrorChanged();
    }
}

bool Monitor::alertsEnabled() const {
    return state().saved.alertsEnabled;
}

void Monitor::setAlertsEnabled(bool on) {
    Private& d = state();
    d.remember<&SavedPreferences::alertsEnabled>(on, &Monitor::alertsEnabledChanged);
    d.publishHandBackState();
}

double Monitor::warmThreshold() const {
    return state().saved.warmThreshold;
}

void Monitor::setWarmThreshold(double celsius) {
    Private& d = state();
    d.remember<&SavedPreferences::warmThreshold>(celsius, &Monitor::warmThresholdChanged);
}

double Monitor::hotThreshold() const {
    return state().saved.hotThreshold;
}

void Monitor::setHotThreshold(double celsius) {
    Private& d = state();
    d.remember<&SavedPreferences::hotThreshold>(celsius, &Monitor::hotThresholdChanged);
}

double Monitor::alertThreshold() const {
    return state().saved.alertThreshold;
}

void Monitor::setAlertThreshold(double celsius) {
    Private& d = state();
    d.remember<&SavedPreferences::alertThreshold>(celsius, &Monitor::alertThresholdChanged);
    d.publishHandBackState();
}

bool Monitor::didOnboard() const {
    return state().saved.didOnboard;
}

void Monitor::setDidOnboard(bool done) {
    Private& d = state();
    d.remember<&SavedPreferences::didOnboard>(done, &Monitor::didOnboardChanged);
}

void Monitor::Private::change(const std::function<void(FanSettings&)>& edit, std::optional<Preset> preset) {
    FanSettings changed = saved.settings;
    edit(changed);
    const bool differs = changed != saved.settings;
    if (differs) {
        saved.settings = std::move(changed);
        settingsSnapshot = std::make_shared<const FanSettings>(saved.settings);
    }
    save();
    if (differs) {
        Q_EMIT monitor.settingsChanged();
        publishHandBackState();
    }
    assign(saved.activePreset, preset, &Monitor::activePresetChanged);
    save();
}

void Monitor::Private::save() const {
    Fenwhirl::save(*services.preferences, Preferences::of<&SavedPreferences::settings>(), saved.settings);
    Fenwhirl::save(*services.preferences, Preferences::of<&SavedPreferences::activePreset>(),
                   saved.activePreset);
}

} // namespace Fenwhirl
