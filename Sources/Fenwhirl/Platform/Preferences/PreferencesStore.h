// The user's preferences in the domain com.fenwhirl.app: a small typed dictionary that survives restarts.
//
// Values have the types of a property list: text, boolean, double, binary data. `text` and `data` return
// nothing when another type is stored. `boolean` and `number` convert whatever is stored
// (PreferenceReading.h) and return nothing only when the key does not exist. Every set or remove is on disk
// when it returns, and never in part: a crash leaves the old or the new value. A failed write is not reported
// and leaves the old state on disk. A broken file reads as empty and is kept until the next write.
//
// Threads: safe from any thread.

#pragma once

#include "Fenwhirl/Platform/Preferences/PreferencesText.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace Fenwhirl {

class PreferencesStore {
public:
    PreferencesStore() = default;
    virtual ~PreferencesStore() = default;
    PreferencesStore(const PreferencesStore&) = delete;
    PreferencesStore& operator=(const PreferencesStore&) = delete;

    [[nodiscard]] bool contains(const QString& key) const;
    [[nodiscard]] std::optional<QString> text(const QString& key) const;
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const;
    [[nodiscard]] std::optional<double> number(const QString& key) const;
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const;

    void setText(const QString& key, const QString& value);
    void setBoolean(const QString& key, bool value);
    void setNumber(const QString& key, double value);
    void setData(const QString& key, const QByteArray& value);
    void remove(const QString& key);

private:
    // The value stored under that key, in its stored type; absent when there is no such key.
    [[nodiscard]] virtual std::optional<PreferenceValue> value(const QString& key) const = 0;
    // Stores the value, or removes the key.
    virtual void store(const QString& key, std::optional<PreferenceValue> value) = 0;
};

// Opens this user's store on this system.
[[nodiscard]] std::unique_ptr<PreferencesStore> openUserPreferences();

// A store of the same kind in the same place, for trying whether values come back. Opened anew it holds what
// was stored before; nothing that the user has chosen is in it.
[[nodiscard]] std::unique_ptr<PreferencesStore> openTrialPreferences();
// Takes away what such a store leaves behind when all its keys are removed.
void removeTrialPreferences();

} // namespace Fenwhirl
