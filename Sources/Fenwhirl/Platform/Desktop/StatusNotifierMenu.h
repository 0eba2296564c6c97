// The context menu of a status notifier item, in the form in which hosts read it over the bus
// (com.canonical.dbusmenu): one level of entries, numbered from 1. The host draws the menu, requests its
// layout and reports what was chosen.
//
// A new set of entries is a new revision, of which the host is notified.
//
// Threads: main thread only. Linux only. The owner registers the object on the bus.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusItem.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace Fenwhirl {

// An entry with its children.
struct StatusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<StatusMenuLayout> children;
};

// An entry's properties without its children.
struct StatusMenuProperties {
    int id = 0;
    QVariantMap properties;
};

using StatusMenuPropertiesList = QList<StatusMenuProperties>;

// Something that the user did with an entry.
struct StatusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

using StatusMenuEvents = QList<StatusMenuEvent>;

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuProperties& entry);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuProperties& entry);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEvent& event);

class StatusNotifierMenu : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    explicit StatusNotifierMenu(QObject* parent = nullptr);

    void setEntries(StatusMenu entries);

    [[nodiscard]] uint version() const { return 3; }

    [[nodiscard]] QString textDirection() const { return QStringLiteral("ltr"); }

    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }

    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    Q_SCRIPTABLE uint GetLayout(int parent, int depth, const QStringList& names,
                                Fenwhirl::StatusMenuLayout& layout);
    Q_SCRIPTABLE Fenwhirl::StatusMenuPropertiesList GetGroupProperties(const QList<int>& ids,
                                                                       const QStringList& names);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name);
    Q_SCRIPTABLE void Event(int id, const QString& name, const QDBusVariant& data, uint timestamp);
    // Returns the ids that do not exist.
    Q_SCRIPTABLE QList<int> EventGroup(const Fenwhirl::StatusMenuEvents& events);
    // Whether the host must read the layout again first. Always false, because the layout is always up to
    // date.
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& unknown);

Q_SIGNALS:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    // NOLINTEND(readability-identifier-naming)

private:
    // Id 0 is the menu itself.
    [[nodiscard]] bool exists(int id) const { return id >= 0 && id <= static_cast<int>(entries_.size()); }

    [[nodiscard]] QVariantMap properties(int id, const QStringList& names) const;

    StatusMenu entries_;
    uint revision_ = 1;
};

} // namespace Fenwhirl

Q_DECLARE_METATYPE(Fenwhirl::StatusMenuLayout)
Q_DECLARE_METATYPE(Fenwhirl::StatusMenuProperties)
Q_DECLARE_METATYPE(Fenwhirl::StatusMenuPropertiesList)
Q_DECLARE_METATYPE(Fenwhirl::StatusMenuEvent)
Q_DECLARE_METATYPE(Fenwhirl::StatusMenuEvents)
