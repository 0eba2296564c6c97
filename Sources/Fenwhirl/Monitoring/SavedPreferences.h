// What the monitor remembers between two launches: its properties on one side, the keys and types of the
// user's preferences on the other.
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
#include <tuple>

class PreferencesStore;

// Each property with its default.
struct SavedPreferences {
    double warmThreshold = 85; // °C
    double hotThreshold = 92;  // °C
    bool alertsEnabled = true;
    double alertThreshold = 90; // °C
    AppTheme theme = AppTheme::dark;
    AppLanguage language = AppLanguage::automatic;
    FanSettings settings;
    std::optional<Preset> activePreset;
    bool didOnboard = false; // the introduction was seen

    [[nodiscard]] static SavedPreferences load(PreferencesStore& store);
};

// Where a property is stored. Its type says how: booleans and numbers as they are, enumerations by their
// words, an empty preset by no key, the fans' settings as data (FanSettingsJSON.h).
template <typename Value>
struct Preference {
    const char* key;
    Value SavedPreferences::*property;
    bool isWrittenBack = false; // what another type was read from is stored as what it is
};

template <typename Value>
Preference(const char*, Value SavedPreferences::*, bool = false) -> Preference<Value>;

namespace Preferences {

inline constexpr Preference warmThreshold{"warmThreshold", &SavedPreferences::warmThreshold, true};
inline constexpr Preference hotThreshold{"hotThreshold", &SavedPreferences::hotThreshold, true};
inline constexpr Preference alertsEnabled{"alertsEnabled", &SavedPreferences::alertsEnabled, true};
inline constexpr Preference alertThreshold{"alertThreshold", &SavedPreferences::alertThreshold, true};
inline constexpr Preference theme{"theme", &SavedPreferences::theme};
inline constexpr Preference language{"language", &SavedPreferences::language};
inline constexpr Preference settings{"settings", &SavedPreferences::settings};
inline constexpr Preference activePreset{"preset", &SavedPreferences::activePreset};
inline constexpr Preference didOnboard{"didOnboard", &SavedPreferences::didOnboard};

// What is loaded, in this order.
inline constexpr std::tuple all{warmThreshold, hotThreshold, alertsEnabled, alertThreshold, theme,
                                language,      settings,     activePreset,  didOnboard};

} // namespace Preferences

// Stores one property. Settings that cannot be encoded leave the stored ones untouched.
void save(PreferencesStore& store, const Preference<bool>& preference, bool on);
void save(PreferencesStore& store, const Preference<double>& preference, double number);
void save(PreferencesStore& store, const Preference<AppTheme>& preference, AppTheme theme);
void save(PreferencesStore& store, const Preference<AppLanguage>& preference, AppLanguage language);
void save(PreferencesStore& store, const Preference<FanSettings>& preference, const FanSettings& settings);
void save(PreferencesStore& store, const Preference<std::optional<Preset>>& preference,
          std::optional<Preset> preset);
