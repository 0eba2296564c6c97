// Preferences that live as long as the test and count what was written. For any thread, as the real ones;
// `values` is for the test alone, while nobody else is at work.

#pragma once

#include "Fenwhirl/Platform/PreferenceReading.h"
#include "Fenwhirl/Platform/PreferencesStore.h"
#include "Fenwhirl/Platform/Threads.h"

#include <QMap>
#include <QVariant>

class MemoryPreferences : public PreferencesStore {
public:
    QMap<QString, QVariant> values;
    int writes = 0;

    [[nodiscard]] bool contains(const QString& key) const override {
        const MutexLock lock(mutex_);
        return values.contains(key);
    }

    [[nodiscard]] std::optional<QString> text(const QString& key) const override {
        return storedAs<QString>(value(key));
    }

    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override {
        return readAsBoolean(value(key));
    }

    [[nodiscard]] std::optional<double> number(const QString& key) const override {
        return readAsNumber(value(key));
    }

    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override {
        return storedAs<QByteArray>(value(key));
    }

    void setText(const QString& key, const QString& value) override { write(key, value); }

    void setBoolean(const QString& key, bool value) override { write(key, value); }

    void setNumber(const QString& key, double value) override { write(key, value); }

    void setData(const QString& key, const QByteArray& value) override { write(key, value); }

    void remove(const QString& key) override {
        const MutexLock lock(mutex_);
        ++writes;
        values.remove(key);
    }

private:
    [[nodiscard]] std::optional<PreferenceValue> value(const QString& key) const {
        const MutexLock lock(mutex_);
        const QVariant value = values.value(key);
        switch (value.typeId()) {
        case QMetaType::QString:
            return value.toString();
        case QMetaType::Bool:
            return value.toBool();
        case QMetaType::Double:
            return value.toDouble();
        case QMetaType::QByteArray:
            return value.toByteArray();
        default:
            return std::nullopt;
        }
    }

    void write(const QString& key, const QVariant& value) {
        const MutexLock lock(mutex_);
        ++writes;
        values.insert(key, value);
    }

    mutable Mutex mutex_;
};
