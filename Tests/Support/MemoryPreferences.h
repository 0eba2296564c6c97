// Preferences that live as long as the test and count what was written.

#pragma once

#include "Fenwhirl/Platform/PreferencesStore.h"

#include <QMap>
#include <QVariant>

class MemoryPreferences : public PreferencesStore {
public:
    QMap<QString, QVariant> values;
    int writes = 0;

    [[nodiscard]] bool contains(const QString& key) const override { return values.contains(key); }

    [[nodiscard]] std::optional<QString> text(const QString& key) const override {
        return typed<QString>(key);
    }

    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override { return typed<bool>(key); }

    [[nodiscard]] std::optional<double> number(const QString& key) const override {
        return typed<double>(key);
    }

    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override {
        return typed<QByteArray>(key);
    }

    void setText(const QString& key, const QString& value) override { write(key, value); }

    void setBoolean(const QString& key, bool value) override { write(key, value); }

    void setNumber(const QString& key, double value) override { write(key, value); }

    void setData(const QString& key, const QByteArray& value) override { write(key, value); }

    void remove(const QString& key) override {
        ++writes;
        values.remove(key);
    }

private:
    template <typename Type>
    [[nodiscard]] std::optional<Type> typed(const QString& key) const {
        const QVariant value = values.value(key);
        return value.metaType() == QMetaType::fromType<Type>() ? std::optional<Type>(value.value<Type>())
                                                               : std::nullopt;
    }

    void write(const QString& key, const QVariant& value) {
        ++writes;
        values.insert(key, value);
    }
};
