#include "Fenwhirl/Platform/Desktop/SystemAppearanceLinux.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QGuiApplication>

#include <utility>

namespace Fenwhirl {

namespace {

constexpr uint preferDark = 1;

QString service() {
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString path() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

QString interface() {
    return QStringLiteral("org.freedesktop.portal.Settings");
}

QString appearanceGroup() {
    return QStringLiteral("org.freedesktop.appearance");
}

QString colorSchemeKey() {
    return QStringLiteral("color-scheme");
}

QString interfaceGroup() {
    return QStringLiteral("org.gnome.desktop.interface");
}

QString motionKey() {
    return QStringLiteral("enable-animations");
}

QString textScaleKey() {
    return QStringLiteral("text-scaling-factor");
}

// Under X11 a desktop requests larger texts through the resolution of its fonts (Xft.dpi), and Qt treats that
// as the ratio between physical pixels and its own. A second multiplication would scale twice.
TextScaling textScalingOf(const QString& platform) {
    return platform == QStringLiteral("xcb") ? TextScaling::ofQt : TextScaling::ours;
}

} // namespace

std::unique_ptr<SystemAppearance> SystemAppearance::create() {
    return std::make_unique<SystemAppearanceLinux>(QDBusConnection::sessionBus(),
                                                   textScalingOf(QGuiApplication::platformName()));
}

SystemAppearanceLinux::SystemAppearanceLinux(QDBusConnection bus, TextScaling textScaling)
    : bus_(std::move(bus))
    , textScaling_(textScaling) {
    if (!bus_.isConnected()) {
        return;
    }
    // Qt does not connect a slot that has a parameter type unknown to QtDBus, and QtDBus registers its own
    // types only at their first use.
    qDBusRegisterMetaType<QDBusVariant>();
    [[maybe_unused]] const bool connected =
        bus_.connect(service(), path(), interface(), QStringLiteral("SettingChanged"), this,
                     SLOT(settingChanged(QString, QString, QDBusVariant)));
    Q_ASSERT(connected);
    // A portal that starts or restarts later may report other values.
    auto* watcher = new QDBusServiceWatcher(service(), bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &SystemAppearanceLinux::readAll);
    readAll();
}

void SystemAppearanceLinux::readAll() {
    read(appearanceGroup(), colorSchemeKey());
    read(interfaceGroup(), motionKey());
    if (textScaling_ == TextScaling::ours) {
        read(interfaceGroup(), textScaleKey());
    }
}

void SystemAppearanceLinux::read(const QString& group, const QString& key) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(service(), path(), interface(), QStringLiteral("Read"));
    call << group << key;
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, group, key] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        if (reply.isValid()) {
            take(group, key, reply.value().variant());
        }
    });
}

void SystemAppearanceLinux::choose(AppearanceChoice /*choice*/) {}

void SystemAppearanceLinux::settingChanged(const QString& group, const QString& key,
                                           const QDBusVariant& value) {
    take(group, key, value.variant());
}

void SystemAppearanceLinux::take(const QString& group, const QString& key, QVariant value) {
    // The reply of the portal's Read has one more layer of variant than its SettingChanged signal.
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    if (group == appearanceGroup() && key == colorSchemeKey()) {
        setDark(value.toUInt() == preferDark);
    } else if (group == interfaceGroup() && key == motionKey()) {
        setReducedMotion(!value.toBool());
    } else if (group == interfaceGroup() && key == textScaleKey() && textScaling_ == TextScaling::ours) {
        setTextScale(value.toDouble());
    }
}

} // namespace Fenwhirl
