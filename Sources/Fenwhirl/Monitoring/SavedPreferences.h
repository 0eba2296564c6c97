// What the monitor remembers between two launches: its properties on one side, the keys and types of the
// user's preferences on the other.
//
//   settings        data: see FanSettingsJSON.h       preset          text: a Preset's word, no key without
//   one theme           text: an AppTheme's word          language        text: an AppLanguage's word
//   alertsEnabled   boolean                           warmThreshold, hotThreshold, alertThreshold   °C
//   didOnboard      boolean: the introduction was seen
//
// What is absent, of another type or not understood leaves the default. Thresholds and the switch are read
// from whatever is stored, taken as they are, and written back as what they are. All failures are silent: the
// user sees defaults, and what was stored stays until it is written the next time.
//
// Threads: those of the store.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"
#include "Fenwhirl/Monitoring/AppTheme.h"
#include "Fenwhirl/Monitoring/FanSetting.h"
#include "Fenwhirl/Monitoring/Preset.h"

#include <optional>

class PreferencesStore;

struct SavedPreferences {
    AppTheme theme = AppTheme::dark;
    AppLanguage language = AppLanguage::automatic;
    double warmThreshold = 85;
    double hotThreshold = 92;
    bool alertsEnabled = true;
    double alertThreshold = 90;
    FanSettings settings;
    std::optional<Preset> activePreset;
    bool didOnboard = false;

    [[nodiscard]] static SavedPreferences load(PreferencesStore& store);
};

namespace Save {

void theme(PreferencesStore& store, AppTheme theme);
void language(PreferencesStore& store, AppLanguage language);
void warmThreshold(PreferencesStore& store, double celsius);
void hotThreshold(PreferencesStore& store, double celsius);
void alertsEnabled(PreferencesStore& store, bool on);
void alertThreshold(PreferencesStore& store, double celsius);
void didOnboard(PreferencesStore& store, bool done);
// Settings that cannot be encoded leave the stored ones untouched.
void settings(PreferencesStore& store, const FanSettings& settings);
void activePreset(PreferencesStore& store, std::optional<Preset> preset);

} // namespace Save
