#include "Fenwhirl/Platform/Desktop/StatusNotifierHost.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QTimer>

#include <utility>

namespace Fenwhirl {

namespace {

QString programOf(uint process) {
    QFile name(QStringLiteral("/proc/%1/comm").arg(process));
    return name.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(name.readAll()).trimmed() : QString();
}

} // namespace

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
        // Deferred, so that the owner can connect to the signal first.
        QTimer::singleShot(0, this, [this] { setAvailable(false); });
        return;
    }
    auto* watcher =
        new QDBusServiceWatcher(watcherService(), bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*service*/, const QString& /*before*/, const QString& now) {
                setAvailable(false); // a new watcher has no host yet, even if it replaced another
                if (!now.isEmpty()) {
                    ask();
                }
            });
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
        if (reply.isValid() && reply.value().variant().toBool()) {
            askForProgram();
        } else {
            setAvailable(false);
        }
    });
}

void StatusNotifierHost::askForProgram() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"));
    call << watcherService();
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<uint> reply = *pending;
        if (reply.isError() &&
            reply.error().name() == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner")) {
            return; // the watcher has just gone, which serviceOwnerChanged reports
        }
        program_ = reply.isValid() ? programOf(reply.value()) : QString();
        setAvailable(true);
    });
}

void StatusNotifierHost::setAvailable(bool available) {
    const bool wasKnown = std::exchange(known_, true);
    if (std::exchange(available_, available) != available || !wasKnown) {
        Q_EMIT availableChanged();
    }
}

} // namespace Fenwhirl
