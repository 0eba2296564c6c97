// SystemAppearance on Linux, by means of the settings portal. Tests pass a bus of their own.

#pragma once

#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QString>
#include <QVariant>

namespace Fenwhirl {

// Who enlarges texts when the desktop asks for it: this program, or Qt along with everything else.
enum class TextScaling { ours, ofQt };

class SystemAppearanceLinux : public SystemAppearance {
    Q_OBJECT

public:
    explicit SystemAppearanceLinux(QDBusConnection bus, TextScaling textScaling = TextScaling::ours);

    void choose(AppearanceChoice choice) override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    void read(const QString& group, const QString& key);
    void take(const QString& group, const QString& key, QVariant value);

    QDBusConnection bus_;
    TextScaling textScaling_;
};

} // namespace Fenwhirl
