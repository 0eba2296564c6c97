#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"

#include "Fenwhirl/Platform/Preferences/PreferenceReading.h"

namespace Fenwhirl {

bool PreferencesStore::contains(const QString& key) const {
    return value(key).has_value();
}

std::optional<QString> PreferencesStore::text(const QString& key) const {
    return storedAs<QString>(value(key));
}

std::optional<bool> PreferencesStore::boolean(const QString& key) const {
    return readAsBoolean(value(key));
}

std::optional<double> PreferencesStore::number(const QString& key) const {
    return readAsNumber(value(key));
}

std::optional<QByteArray> PreferencesStore::data(const QString& key) const {
    return storedAs<QByteArray>(value(key));
}

void PreferencesStore::setText(const QString& key, const QString& value) {
    store(key, value);
}

void PreferencesStore::setBoolean(const QString& key, bool value) {
    store(key, value);
}

void PreferencesStore::setNumber(const QString& key, double value) {
    store(key, value);
}

void PreferencesStore::setData(const QString& key, const QByteArray& value) {
    store(key, value);
}

void PreferencesStore::remove(const QString& key) {
    store(key, std::nullopt);
}

} // namespace Fenwhirl
