#include "Fenwhirl/Platform/Desktop/StatusNotifierHost.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QTimer>

#include <utility>

QString StatusNotifierHost::watcherService() {
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString StatusNotifierHost::watcherPath() {
    return QStringLiteral("/StatusNotifierWatcher");
}

StatusNotifierHost::StatusNotifierHost(QDBusConnection bus, QObject* parent)
    : QObject(parent)
    , bus_(std::move(bus)) {
    if (!bus_.isConnected()) {
        QTimer::singleShot(0, this, [this] { setAvailable(false); });
        return;
    }
    auto* watcher =
        new QDBusServiceWatcher(watcherService(), bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setAvailable(false); });
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &StatusNotifierHost::ask);
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        [[maybe_unused]] const bool connected =
            bus_.connect(watcherService(), watcherPath(), watcherService(), QString::fromLatin1(signal), this,
                         SLOT(ask()));
        Q_ASSERT(connected);
    }
    ask();
}

void StatusNotifierHost::ask() {
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService(), watcherPath(),
                                                       QStringLiteral("org.freedesktop.DBus.Properties"),
                                                       QStringLiteral("Get"));
    call << watcherService() << QStringLiteral("IsStatusNotifierHostRegistered");
    call.setAutoStartService(false);
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        setAvailable(reply.isValid() && reply.value().variant().toBool());
    });
}

void StatusNotifierHost::setAvailable(bool available) {
    const bool wasKnown = std::exchange(known_, true);
    if (std::exchange(available_, available) != available || !wasKnown)
        Q_EMIT availableChanged();
}
