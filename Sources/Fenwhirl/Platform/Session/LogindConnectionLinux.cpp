#include "Fenwhirl/Platform/Session/LogindConnectionLinux.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace Fenwhirl {

namespace {

QString busService() {
    return QStringLiteral("org.freedesktop.DBus");
}

QString busPath() {
    return QStringLiteral("/org/freedesktop/DBus");
}

// Match rules for signals of the bus itself, of logind's manager, and of one object's properties.
QString ownerRule() {
    return QStringLiteral("type='signal',sender='%1',interface='%1',member='NameOwnerChanged',arg0='%2'")
        .arg(busService(), Logind::service());
}

QString managerRule() {
    return QStringLiteral("type='signal',sender='%1',interface='%2',path='%3'")
        .arg(Logind::service(), Logind::managerInterface(), Logind::path());
}

QString propertiesRule(const QString& path) {
    return QStringLiteral("type='signal',sender='%1',interface='%2',path='%3'")
        .arg(Logind::service(), Logind::propertiesInterface(), path);
}

QString uniqueConnectionName() {
    static int made = 0;
    return QStringLiteral("fenwhirl.logind.%1").arg(++made);
}

// Whether an error reply means that there was no answer: a time-out, a lost connection or a missing service.
bool isSilence(const QDBusMessage& reply) {
    switch (QDBusError(reply).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
    case QDBusError::ServiceUnknown:
    case QDBusError::NoServer:
        return true;
    default:
        return false;
    }
}

} // namespace

QString Logind::service() {
    return QStringLiteral("org.freedesktop.login1");
}

QString Logind::path() {
    return QStringLiteral("/org/freedesktop/login1");
}

QString Logind::managerInterface() {
    return QStringLiteral("org.freedesktop.login1.Manager");
}

QString Logind::propertiesInterface() {
    return QStringLiteral("org.freedesktop.DBus.Properties");
}

QString Logind::systemBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.isEmpty() ? QStringLiteral("unix:path=/var/run/dbus/system_bus_socket") : address;
}

bool Logind::isError(const QDBusMessage& reply) {
    return reply.type() == QDBusMessage::ErrorMessage;
}

LogindConnection::LogindConnection(QString address, std::chrono::milliseconds answer)
    : address_(std::move(address))
    , answer_(answer)
    , connectionName_(uniqueConnectionName())
    , bus_(QString()) {}

LogindConnection::~LogindConnection() {
    close();
}

bool LogindConnection::open(const QStringList& managerSignals) {
    close();
    // Not connectToBus, whose handshake blocks.
    bus_ = QDBusConnection::connectToPeer(address_, connectionName_);
    if (!bus_.isConnected()) {
        return false;
    }
    // No sender is given, because Qt would look its name up and block; `receive` checks the sender instead.
    const auto listen = [this](const QString& interface, const QString& signal) {
        bus_.connect({}, {}, interface, signal, this, SLOT(receive(QDBusMessage)));
    };
    listen(busService(), QStringLiteral("NameOwnerChanged"));
    for (const QString& signal : managerSignals) {
        listen(Logind::managerInterface(), signal);
    }
    listen(Logind::propertiesInterface(), QStringLiteral("PropertiesChanged"));
    bus_.connect({}, {}, QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(disconnected()));
    // The bus handles messages in order, so nothing waits for these replies: the match rules are active
    // before the bus answers any later call.
    bus_.asyncCall(
        QDBusMessage::createMethodCall(busService(), busPath(), busService(), QStringLiteral("Hello")));
    match(QStringLiteral("AddMatch"), ownerRule());
    match(QStringLiteral("AddMatch"), managerRule());
    return true;
}

void LogindConnection::close() {
    ++opened_;
    owner_.clear();
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromPeer(connectionName_);
}

void LogindConnection::disconnected() {
    close();
    Q_EMIT lost();
}

void LogindConnection::find(const Reply& answered, const Silence& silent) {
    askService(busService(), busPath(), busService(), QStringLiteral("GetNameOwner"), {Logind::service()},
               answered, silent);
}

void LogindConnection::ask(const QString& path, const QString& interface, const QString& method,
                           const QVariantList& arguments, const Reply& answered, const Silence& silent) {
    askService(owner_, path, interface, method, arguments, answered, silent);
}

void LogindConnection::watchProperties(const QString& path) {
    match(QStringLiteral("AddMatch"), propertiesRule(path));
}

void LogindConnection::unwatchProperties(const QString& path) {
    match(QStringLiteral("RemoveMatch"), propertiesRule(path));
}

void LogindConnection::receive(const QDBusMessage& signal) {
    if (signal.service() == busService()) {
        const QVariantList arguments = signal.arguments();
        if (signal.member() == QStringLiteral("NameOwnerChanged") &&
            arguments.value(0) == Logind::service()) {
            Q_EMIT ownerChanged(arguments.value(2).toString());
        }
    } else if (!owner_.isEmpty() && signal.service() == owner_) {
        Q_EMIT heard(signal);
    }
}

void LogindConnection::askService(const QString& service, const QString& path, const QString& interface,
                                  const QString& method, const QVariantList& arguments, const Reply& answered,
                                  const Silence& silent) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    auto* pending =
        new QDBusPendingCallWatcher(bus_.asyncCall(call, static_cast<int>(answer_.count())), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, pending, answered, silent, opened = opened_] {
                pending->deleteLater();
                // The connection has been closed since the call, and perhaps opened again.
                if (opened != opened_) {
                    return;
                }
                const QDBusMessage reply = pending->reply();
                if (reply.type() == QDBusMessage::ErrorMessage && isSilence(reply)) {
                    silent();
                } else {
                    answered(reply);
                }
            });
}

void LogindConnection::match(const QString& method, const QString& rule) {
    QDBusMessage call = QDBusMessage::createMethodCall(busService(), busPath(), busService(), method);
    call << rule;
    bus_.send(call);
}

} // namespace Fenwhirl
