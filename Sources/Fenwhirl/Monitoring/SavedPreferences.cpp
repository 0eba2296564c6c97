#include "Fenwhirl/Monitoring/SavedPreferences.h"

#include "Fenwhirl/Monitoring/FanSettingsJSON.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"

#include <QLatin1StringView>
#include <QString>

#include <string_view>

namespace Fenwhirl {

namespace {

template <typename Value>
QString keyOf(const Preference<Value>& preference) {
    return QLatin1StringView(preference.key);
}

void saveWord(PreferencesStore& store, const QString& key, std::string_view word) {
    store.setText(key, QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size())));
}

// The enumerator that the stored text names, if there is such a text and it names one.
template <typename Case>
std::optional<Case> storedCase(const PreferencesStore& store, const QString& key,
                               std::optional<Case> (*caseFromRawValue)(std::string_view)) {
    const auto word = store.text(key);
    return word ? caseFromRawValue(word->toStdString()) : std::nullopt;
}

void read(const PreferencesStore& store, const QString& key, bool& on) {
    on = store.boolean(key).value_or(on);
}

void read(const PreferencesStore& store, const QString& key, double& number) {
    number = store.number(key).value_or(number);
}

void read(const PreferencesStore& store, const QString& key, AppTheme& theme) {
    theme = storedCase(store, key, appThemeFromRawValue).value_or(theme);
}

void read(const PreferencesStore& store, const QString& key, AppLanguage& language) {
    language = storedCase(store, key, appLanguageFromRawValue).value_or(language);
}

void read(const PreferencesStore& store, const QString& key, FanSettings& settings) {
    if (const auto json = store.data(key)) {
        settings = decodeFanSettings(*json).value_or(settings);
    }
}

void read(const PreferencesStore& store, const QString& key, std::optional<Preset>& preset) {
    preset = storedCase(store, key, presetFromRawValue);
}

template <typename Value>
void load(PreferencesStore& store, const Preference<Value>& preference, SavedPreferences& saved) {
    Value& value = saved.*preference.property;
    read(store, keyOf(preference), value);
    if (preference.isWrittenBack && store.contains(keyOf(preference))) {
        save(store, preference, value);
    }
}

} // namespace

SavedPreferences SavedPreferences::load(PreferencesStore& store) {
    SavedPreferences saved;
    std::apply([&](const auto&... preference) { (Fenwhirl::load(store, preference, saved), ...); },
               Preferences::all);
    return saved;
}

void save(PreferencesStore& store, const Preference<bool>& preference, bool on) {
    store.setBoolean(keyOf(preference), on);
}

void save(PreferencesStore& store, const Preference<double>& preference, double number) {
    store.setNumber(keyOf(preference), number);
}

void save(PreferencesStore& store, const Preference<AppTheme>& preference, AppTheme theme) {
    saveWord(store, keyOf(preference), rawValue(theme));
}

void save(PreferencesStore& store, const Preference<AppLanguage>& preference, AppLanguage language) {
    saveWord(store, keyOf(preference), rawValue(language));
}

void save(PreferencesStore& store, const Preference<FanSettings>& preference, const FanSettings& settings) {
    if (const auto json = encodeFanSettings(settings)) {
        store.setData(keyOf(preference), *json);
    }
}

void save(PreferencesStore& store, const Preference<std::optional<Preset>>& preference,
          std::optional<Preset> preset) {
    if (preset) {
        saveWord(store, keyOf(preference), rawValue(*preset));
    } else {
        store.remove(keyOf(preference));
    }
}

} // namespace Fenwhirl
