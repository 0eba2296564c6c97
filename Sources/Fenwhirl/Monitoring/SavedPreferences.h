// What the monitor remembers from one launch to the next: its properties on one side, the keys and types of
// the user's preferences on the other.
//
// A value that is absent, of another type or unintelligible leaves the default. Thresholds and the switch are
// read from whatever type is stored, used unchanged, and written back in their own type. All failures are
// silent: the user sees the defaults, and the stored value stays until it is next written.
//
// Threads: those of the store.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"
#include "Fenwhirl/Monitoring/AppTheme.h"
#include "Fenwhirl/Monitoring/FanSetting.h"
#include "Fenwhirl/Monitoring/Preset.h"

#include <cstddef>
#include <optional>
#include <tuple>
#include <type_traits>

namespace Fenwhirl {

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

// Where a property is stored. Its type determines how: booleans and numbers directly, enumerations as text,
// an empty preset as an absent key, the fans' settings as data (FanSettingsJSON.h).
template <typename Value>
struct Preference {
    const char* key;
    Value SavedPreferences::*property;
    bool isWrittenBack = false; // a value that was read from another type is written back in its own
};

template <typename Value>
Preference(const char*, Value SavedPreferences::*, bool = false) -> Preference<Value>;

namespace Preferences {

// The only list of the preferences, in the order in which they are loaded.
inline constexpr std::tuple all{
    Preference{"warmThreshold", &SavedPreferences::warmThreshold, true},
    Preference{"hotThreshold", &SavedPreferences::hotThreshold, true},
    Preference{"alertsEnabled", &SavedPreferences::alertsEnabled, true},
    Preference{"alertThreshold", &SavedPreferences::alertThreshold, true},
    Preference{"theme", &SavedPreferences::theme},
    Preference{"language", &SavedPreferences::language},
    Preference{"settings", &SavedPreferences::settings},
    Preference{"preset", &SavedPreferences::activePreset},
    Preference{"didOnboard", &SavedPreferences::didOnboard},
};

// The preference in which a property is stored. What is not in the list above cannot be stored, because the next
// launch would not load it: the compiler then names the property.
template <auto Property, std::size_t Place = 0>
[[nodiscard]] constexpr auto of() {
    static_assert(Place < std::tuple_size_v<decltype(all)>, "this property is missing in Preferences::all");
    if constexpr (Place < std::tuple_size_v<decltype(all)>) {
        constexpr auto preference = std::get<Place>(all);
        if constexpr (std::is_same_v<decltype(preference.property), decltype(Property)>) {
            if constexpr (preference.property == Property) {
                return preference;
            } else {
                return of<Property, Place + 1>();
            }
        } else {
            return of<Property, Place + 1>();
        }
    }
}

} // namespace Preferences

// Stores one property. If settings cannot be encoded, the stored ones stay untouched.
void save(PreferencesStore& store, const Preference<bool>& preference, bool on);
void save(PreferencesStore& store, const Preference<double>& preference, double number);
void save(PreferencesStore& store, const Preference<AppTheme>& preference, AppTheme theme);
void save(PreferencesStore& store, const Preference<AppLanguage>& preference, AppLanguage language);
void save(PreferencesStore& store, const Preference<FanSettings>& preference, const FanSettings& settings);
void save(PreferencesStore& store, const Preference<std::optional<Preset>>& preference,
          std::optional<Preset> preset);

} // namespace Fenwhirl
