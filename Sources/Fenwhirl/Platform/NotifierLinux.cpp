#include "Fenwhirl/Platform/Notifier.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QStringList>
#include <QVariantMap>

namespace Fenwhirl {

namespace {

// Escapes the message, because the notification service interprets the body as markup.
QString escaped(QString text) {
    text.replace(u'&', QStringLiteral("&amp;"));
    text.replace(u'<', QStringLiteral("&lt;"));
    text.replace(u'>', QStringLiteral("&gt;"));
    return text;
}

enum class Urgency : uchar {
    normal = 1,   // disappears after a while
    critical = 2, // shown at once, even over a full-screen game, until somebody closes it
};

QDBusMessage notification(const QString& title, const QString& message, Urgency urgency) {
    constexpr uint newNotification = 0;
    constexpr int serviceDecidesHowLong = -1;

    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    const QVariantMap hints = {
        {QStringLiteral("urgency"), QVariant::fromValue(static_cast<uchar>(urgency))},
        {QStringLiteral("desktop-entry"), QStringLiteral("com.fenwhirl.app")},
        {QStringLiteral("sound-name"), QStringLiteral("dialog-warning")},
    };
    call.setArguments({QStringLiteral("Fenwhirl"), newNotification, QStringLiteral("com.fenwhirl.app"), title,
                       escaped(message), QStringList(), hints, serviceDecidesHowLong});
    return call;
}

} // namespace

void Notifier::send(const QString& title, const QString& message) {
    // Neither the reply nor whether a service is there to send one matters.
    static_cast<void>(
        QDBusConnection::sessionBus().asyncCall(notification(title, message, Urgency::critical)));
}

Notifier::Delivery Notifier::deliver(const QString& title, const QString& message) {
    constexpr int patienceMilliseconds = 5000;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return Delivery::noService;
    }
    const QDBusMessage answer =
        bus.call(notification(title, message, Urgency::normal), QDBus::Block, patienceMilliseconds);
    if (answer.type() == QDBusMessage::ReplyMessage) {
        return Delivery::taken;
    }
    return QDBusError(answer).type() == QDBusError::ServiceUnknown ? Delivery::noService : Delivery::refused;
}

} // namespace Fenwhirl
