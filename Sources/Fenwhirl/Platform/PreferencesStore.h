// The user's preferences of the domain com.fenwhirl.app: a small typed dictionary that survives restarts.
//
// Values are what a property list knows: text, boolean, double, binary data. A text or data of another type
// yields nothing; booleans and numbers are read from whatever is stored (PreferenceReading.h), and only a key
// that does not exist yields nothing. Every set or remove is on disk when it returns, never half: a crash
// leaves the old or the new value. A failure to write is silent and keeps the old state on disk; a broken
// file reads as empty and is kept until the next write.
//
// Threads: safe to call from any thread.

#pragma once

#include "Fenwhirl/Platform/PreferencesText.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

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
    // What is stored under that key, as it is stored; nothing without such a key.
    [[nodiscard]] virtual std::optional<PreferenceValue> value(const QString& key) const = 0;
    // Stores the value, or removes the key.
    virtual void store(const QString& key, std::optional<PreferenceValue> value) = 0;
};

// The store of this user on this system.
[[nodiscard]] std::unique_ptr<PreferencesStore> openUserPreferences();
