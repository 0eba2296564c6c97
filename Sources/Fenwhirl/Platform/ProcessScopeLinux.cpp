#include "Fenwhirl/Platform/ProcessScope.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QList>

namespace Fenwhirl::ProcessScope {

// Not in an unnamed namespace: Qt finds the operators of these types by argument-dependent lookup.

// A property of a unit.
struct UnitProperty {
    QString name;
    QDBusVariant value;
};

// An auxiliary unit created along with the main one. The D-Bus signature requires the type; the list is
// always empty.
struct AuxiliaryUnit {
    QString name;
    QList<UnitProperty> properties;
};

static QDBusArgument& operator<<(QDBusArgument& argument, const UnitProperty& property) {
    argument.beginStructure();
    argument << property.name << property.value;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, UnitProperty& property) {
    argument.beginStructure();
    argument >> property.name >> property.value;
    argument.endStructure();
    return argument;
}

static QDBusArgument& operator<<(QDBusArgument& argument, const AuxiliaryUnit& unit) {
    argument.beginStructure();
    argument << unit.name << unit.properties;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, AuxiliaryUnit& unit) {
    argument.beginStructure();
    argument >> unit.name >> unit.properties;
    argument.endStructure();
    return argument;
}

void separate(pid_t process, const QString& name, const QString& description) {
    qDBusRegisterMetaType<UnitProperty>();
    qDBusRegisterMetaType<QList<UnitProperty>>();
    qDBusRegisterMetaType<AuxiliaryUnit>();
    qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
    const QString unit = QStringLiteral("app-%1-%2.scope").arg(name).arg(process);
    const QList<uint> processes = {static_cast<uint>(process)};
    const QList<UnitProperty> properties = {
        {QStringLiteral("Description"), QDBusVariant(description)},
        {QStringLiteral("PIDs"), QDBusVariant(QVariant::fromValue(processes))},
        // The manager forgets the unit once it has ended, even if it failed.
        {QStringLiteral("CollectMode"), QDBusVariant(QStringLiteral("inactive-or-failed"))},
    };
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.systemd1"), QStringLiteral("/org/freedesktop/systemd1"),
        QStringLiteral("org.freedesktop.systemd1.Manager"), QStringLiteral("StartTransientUnit"));
    call.setAutoStartService(false); // the manager is already running, or there is none
    call.setArguments({unit, QStringLiteral("fail"), QVariant::fromValue(properties),
                       QVariant::fromValue(QList<AuxiliaryUnit>())});
    static_cast<void>(QDBusConnection::sessionBus().asyncCall(call));
}

} // namespace Fenwhirl::ProcessScope
