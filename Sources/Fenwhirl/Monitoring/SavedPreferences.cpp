#include "Fenwhirl/Monitoring/SavedPreferences.h"

#include "Fenwhirl/Monitoring/FanSettingsJSON.h"
#include "Fenwhirl/Platform/PreferencesStore.h"

#include <QLatin1StringView>
#include <QString>

#include <string_view>

namespace {

constexpr QLatin1StringView settingsKey("settings");
constexpr QLatin1StringView presetKey("preset");
constexpr QLatin1StringView themeKey("theme");
constexpr QLatin1StringView languageKey("language");
constexpr QLatin1StringView alertsEnabledKey("alertsEnabled");
constexpr QLatin1StringView warmThresholdKey("warmThreshold");
constexpr QLatin1StringView hotThresholdKey("hotThreshold");
constexpr QLatin1StringView alertThresholdKey("alertThreshold");
constexpr QLatin1StringView didOnboardKey("didOnboard");

QString text(std::string_view word) {
    return QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
}

// The case that a stored word names, if a word is stored and names one.
template <typename Case>
std::optional<Case> storedCase(const PreferencesStore& store, const QString& key,
                               std::optional<Case> (*caseFromRawValue)(std::string_view)) {
    const auto word = store.text(key);
    return word ? caseFromRawValue(word->toStdString()) : std::nullopt;
}

} // namespace

SavedPreferences SavedPreferences::load(PreferencesStore& store) {
    SavedPreferences saved;
    saved.theme = storedCase(store, themeKey, appThemeFromRawValue).value_or(saved.theme);
    saved.language = storedCase(store, languageKey, appLanguageFromRawValue).value_or(saved.language);
    if (const auto celsius = store.number(warmThresholdKey)) {
        Save::warmThreshold(store, saved.warmThreshold = *celsius);
    }
    if (const auto celsius = store.number(hotThresholdKey)) {
        Save::hotThreshold(store, saved.hotThreshold = *celsius);
    }
    if (const auto on = store.boolean(alertsEnabledKey)) {
        Save::alertsEnabled(store, saved.alertsEnabled = *on);
    }
    if (const auto celsius = store.number(alertThresholdKey)) {
        Save::alertThreshold(store, saved.alertThreshold = *celsius);
    }
    if (const auto json = store.data(settingsKey)) {
        saved.settings = decodeFanSettings(*json).value_or(FanSettings());
    }
    saved.activePreset = storedCase(store, presetKey, presetFromRawValue);
    saved.didOnboard = store.boolean(didOnboardKey).value_or(saved.didOnboard);
    return saved;
}

void Save::theme(PreferencesStore& store, AppTheme theme) {
    store.setText(themeKey, text(rawValue(theme)));
}

void Save::language(PreferencesStore& store, AppLanguage language) {
    store.setText(languageKey, text(rawValue(language)));
}

void Save::warmThreshold(PreferencesStore& store, double celsius) {
    store.setNumber(warmThresholdKey, celsius);
}

void Save::hotThreshold(PreferencesStore& store, double celsius) {
    store.setNumber(hotThresholdKey, celsius);
}

void Save::alertsEnabled(PreferencesStore& store, bool on) {
    store.setBoolean(alertsEnabledKey, on);
}

void Save::alertThreshold(PreferencesStore& store, double celsius) {
    store.setNumber(alertThresholdKey, celsius);
}

void Save::didOnboard(PreferencesStore& store, bool done) {
    store.setBoolean(didOnboardKey, done);
}

void Save::settings(PreferencesStore& store, const FanSettings& settings) {
    if (const auto json = encodeFanSettings(settings)) {
        store.setData(settingsKey, *json);
    }
}

void Save::activePreset(PreferencesStore& store, std::optional<Preset> preset) {
    if (preset) {
        store.setText(presetKey, text(rawValue(*preset)));
    } else {
        store.remove(presetKey);
    }
}
