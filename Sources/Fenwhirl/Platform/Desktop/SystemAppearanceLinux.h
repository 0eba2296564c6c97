// The settings portal behind SystemAppearance on Linux. Tests make it with a bus of their own.

#pragma once

#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QString>
#include <QVariant>

class SystemAppearanceLinux : public SystemAppearance {
    Q_OBJECT

public:
    explicit SystemAppearanceLinux(QDBusConnection bus);

    void choose(AppearanceChoice choice) override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    void read(const QString& group, const QString& key);
    void take(const QString& group, const QString& key, QVariant value);

    QDBusConnection bus_;
};
