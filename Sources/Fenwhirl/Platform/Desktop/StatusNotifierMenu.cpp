#include "Fenwhirl/Platform/Desktop/StatusNotifierMenu.h"

#include <QDBusMetaType>

#include <utility>

namespace Fenwhirl {

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuLayout& layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const StatusMenuLayout& child : layout.children) {
        argument << QDBusVariant(QVariant::fromValue(child));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuLayout& layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children.append(qdbus_cast<StatusMenuLayout>(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuProperties& entry) {
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuProperties& entry) {
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

namespace {

// Doubles underscores, because a single one would mark the next character as an access key.
QString escapedUnderscores(QString text) {
    return text.replace(u'_', QStringLiteral("__"));
}

} // namespace

StatusNotifierMenu::StatusNotifierMenu(QObject* parent) : QObject(parent) {
    qDBusRegisterMetaType<StatusMenuLayout>();
    qDBusRegisterMetaType<StatusMenuProperties>();
    qDBusRegisterMetaType<StatusMenuPropertiesList>();
    qDBusRegisterMetaType<StatusMenuEvent>();
    qDBusRegisterMetaType<StatusMenuEvents>();
}

void StatusNotifierMenu::setEntries(StatusMenu entries) {
    entries_ = std::move(entries);
    Q_EMIT LayoutUpdated(++revision_, 0);
}

QVariantMap StatusNotifierMenu::properties(int id, const QStringList& names) const {
    QVariantMap all;
    if (id == 0) {
        all.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    } else {
        const StatusMenuEntry& entry = entries_.at(static_cast<std::size_t>(id - 1));
        if (entry.isSeparator()) {
            all.insert(QStringLiteral("type"), QStringLiteral("separator"));
        } else {
            all.insert(QStringLiteral("label"), escapedUnderscores(entry.text));
        }
        if (entry.isCurrent) {
            all.insert(QStringLiteral("toggle-type"), QStringLiteral("radio"));
            all.insert(QStringLiteral("toggle-state"), *entry.isCurrent ? 1 : 0);
        }
    }
    if (names.isEmpty()) {
        return all;
    }
    QVariantMap asked;
    for (const QString& name : names) {
        if (all.contains(name)) {
            asked.insert(name, all.value(name));
        }
    }
    return asked;
}

uint StatusNotifierMenu::GetLayout(int parent, int depth, const QStringList& names,
                                   StatusMenuLayout& layout) {
    layout.id = parent;
    if (!exists(parent)) {
        return revision_;
    }
    layout.properties = properties(parent, names);
    if (parent == 0 && depth != 0) {
        for (int id = 1; exists(id); ++id) {
            layout.children.append({id, properties(id, names), {}});
        }
    }
    return revision_;
}

StatusMenuPropertiesList StatusNotifierMenu::GetGroupProperties(const QList<int>& ids,
                                                                const QStringList& names) {
    StatusMenuPropertiesList result;
    for (const int id : ids) {
        if (exists(id)) {
            result.append({id, properties(id, names)});
        }
    }
    return result;
}

QDBusVariant StatusNotifierMenu::GetProperty(int id, const QString& name) {
    const QVariantMap found = exists(id) ? properties(id, {name}) : QVariantMap();
    return QDBusVariant(found.value(name, QString())); // D-Bus has no empty variant
}

void StatusNotifierMenu::Event(int id, const QString& name, const QDBusVariant& /*data*/,
                               uint /*timestamp*/) {
    if (name != QStringLiteral("clicked") || id < 1 || !exists(id)) {
        return;
    }
    // A copy, because the action may replace the entries.
    if (const auto choose = entries_.at(static_cast<std::size_t>(id - 1)).choose) {
        choose();
    }
}

QList<int> StatusNotifierMenu::EventGroup(const StatusMenuEvents& events) {
    QList<int> unknown;
    for (const StatusMenuEvent& event : events) {
        if (exists(event.id)) {
            Event(event.id, event.name, event.data, event.timestamp);
        } else {
            unknown.append(event.id);
        }
    }
    return unknown;
}

bool StatusNotifierMenu::AboutToShow(int /*id*/) {
    return false;
}

QList<int> StatusNotifierMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& unknown) {
    for (const int id : ids) {
        if (!exists(id)) {
            unknown.append(id);
        }
    }
    return {};
}

} // namespace Fenwhirl
