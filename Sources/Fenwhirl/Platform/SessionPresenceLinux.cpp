#include "Fenwhirl/Platform/SessionPresenceLinux.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <unistd.h>
#include <utility>

namespace {

QString busService() {
    return QStringLiteral("org.freedesktop.DBus");
}

QString busPath() {
    return QStringLiteral("/org/freedesktop/DBus");
}

QString logindService() {
    return QStringLiteral("org.freedesktop.login1");
}

QString logindPath() {
    return QStringLiteral("/org/freedesktop/login1");
}

QString managerInterface() {
    return QStringLiteral("org.freedesktop.login1.Manager");
}

QString sessionInterface() {
    return QStringLiteral("org.freedesktop.login1.Session");
}

QString userInterface() {
    return QStringLiteral("org.freedesktop.login1.User");
}

QString propertiesInterface() {
    return QStringLiteral("org.freedesktop.DBus.Properties");
}

QString activeProperty() {
    return QStringLiteral("Active");
}

// Signals of the bus itself, of the sessions' beginnings and ends, and of one session's properties.
QString ownerRule() {
    return QStringLiteral("type='signal',sender='%1',interface='%1',member='NameOwnerChanged',arg0='%2'")
        .arg(busService(), logindService());
}

QString managerRule() {
    return QStringLiteral("type='signal',sender='%1',interface='%2',path='%3'")
        .arg(logindService(), managerInterface(), logindPath());
}

QString propertiesRule(const QString& path) {
    return QStringLiteral("type='signal',sender='%1',interface='%2',path='%3'")
        .arg(logindService(), propertiesInterface(), path);
}

QString systemBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.isEmpty() ? QStringLiteral("unix:path=/var/run/dbus/system_bus_socket") : address;
}

QString uniqueConnectionName() {
    static int made = 0;
    return QStringLiteral("fenwhirl.sessions.%1").arg(++made);
}

bool isError(const QDBusMessage& reply) {
    return reply.type() == QDBusMessage::ErrorMessage;
}

// Nobody said anything: the time was over, or the connection.
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

// Empty unless the reply is one object's path, or a structure of a name and one; logind says "/" for none.
QString pathIn(const QVariant& value) {
    QString path;
    if (value.metaType() == QMetaType::fromType<QDBusObjectPath>()) {
        path = value.value<QDBusObjectPath>().path();
    } else if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        const auto argument = value.value<QDBusArgument>();
        if (argument.currentSignature() == QStringLiteral("(so)")) {
            QString name;
            QDBusObjectPath object;
            argument.beginStructure();
            argument >> name >> object;
            argument.endStructure();
            path = object.path();
        }
    }
    return path == QStringLiteral("/") ? QString() : path;
}

} // namespace

std::unique_ptr<SessionPresence> SessionPresence::create() {
    return std::make_unique<SessionPresenceLinux>(systemBusAddress(), SessionSeeker::thisProcess());
}

SessionSeeker SessionSeeker::thisProcess() {
    return {.process = static_cast<uint>(QCoreApplication::applicationPid()),
            .session = qEnvironmentVariable("XDG_SESSION_ID"),
            .user = getuid()};
}

SessionPresenceLinux::SessionPresenceLinux(QString address, SessionSeeker seeker, SessionPatience patience)
    : address_(std::move(address))
    , seeker_(std::move(seeker))
    , patience_(patience)
    , connectionName_(uniqueConnectionName())
    , bus_(QString()) {
    loss_.setSingleShot(true);
    loss_.setInterval(patience.loss);
    connect(&loss_, &QTimer::timeout, this, [this] { setInFront(true); });
    again_.setSingleShot(true);
    again_.setInterval(patience.again);
    connect(&again_, &QTimer::timeout, this, [this] {
        if (bus_.isConnected())
            find();
        else
            connectToBus();
    });
    connectToBus();
    if (bus_.isConnected()) {
        QTimer::singleShot(patience.settle, this, [this] { settle(); });
    } else {
        again_.stop(); // there was none, so none was lost
        settle();
    }
}

SessionPresenceLinux::~SessionPresenceLinux() {
    leaveBus();
}

void SessionPresenceLinux::connectToBus() {
    leaveBus();
    bus_ = QDBusConnection::connectToPeer(address_, connectionName_);
    if (!bus_.isConnected()) {
        again_.start();
        return;
    }
    // Without a sender's name, which the library would look up and wait for: `heard` looks at the sender.
    const auto listen = [this](const QString& interface, const QString& signal) {
        bus_.connect({}, {}, interface, signal, this, SLOT(heard(QDBusMessage)));
    };
    listen(busService(), QStringLiteral("NameOwnerChanged"));
    listen(managerInterface(), QStringLiteral("SessionNew"));
    listen(managerInterface(), QStringLiteral("SessionRemoved"));
    listen(propertiesInterface(), QStringLiteral("PropertiesChanged"));
    bus_.connect({}, {}, QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(disconnected()));
    // Messages arrive in their order: by the time the bus answers the last, all of it holds.
    bus_.asyncCall(
        QDBusMessage::createMethodCall(busService(), busPath(), busService(), QStringLiteral("Hello")));
    match(QStringLiteral("AddMatch"), ownerRule());
    match(QStringLiteral("AddMatch"), managerRule());
    find();
}

void SessionPresenceLinux::leaveBus() {
    ++search_;
    owner_.clear();
    session_.clear();
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromPeer(connectionName_);
}

void SessionPresenceLinux::disconnected() {
    leaveBus();
    lose();
    if (!wasAnswered_)
        again_.stop(); // it does not want us
}

void SessionPresenceLinux::lose() {
    settle();
    if (!loss_.isActive())
        loss_.start();
    again_.start();
}

// Asks the bus for logind, without starting one.
void SessionPresenceLinux::find() {
    ++search_;
    ask(busService(), busPath(), busService(), QStringLiteral("GetNameOwner"), {logindService()},
        [this](const QDBusMessage& reply) {
            if (isError(reply))
                giveUp();
            else
                takeOwner(reply.arguments().value(0).toString());
        });
}

void SessionPresenceLinux::takeOwner(const QString& owner) {
    ++search_;
    owner_ = owner;
    if (!owner_.isEmpty())
        searchByProcess();
    else if (!loss_.isActive())
        loss_.start();
}

void SessionPresenceLinux::searchByProcess() {
    ++search_;
    askLogind(logindPath(), managerInterface(), QStringLiteral("GetSessionByPID"), {seeker_.process},
              [this](const QDBusMessage& reply) {
                  const QString path = isError(reply) ? QString() : pathIn(reply.arguments().value(0));
                  follow(path, [this] { searchByName(); });
              });
}

void SessionPresenceLinux::searchByName() {
    if (seeker_.session.isEmpty()) {
        searchByUser();
        return;
    }
    askLogind(logindPath(), managerInterface(), QStringLiteral("GetSession"), {seeker_.session},
              [this](const QDBusMessage& reply) {
                  const QString path = isError(reply) ? QString() : pathIn(reply.arguments().value(0));
                  follow(path, [this] { searchByUser(); });
              });
}

void SessionPresenceLinux::searchByUser() {
    askLogind(logindPath(), managerInterface(), QStringLiteral("GetUser"), {seeker_.user},
              [this](const QDBusMessage& reply) {
                  const QString user = isError(reply) ? QString() : pathIn(reply.arguments().value(0));
                  if (user.isEmpty()) {
                      giveUp();
                      return;
                  }
                  askLogind(user, propertiesInterface(), QStringLiteral("Get"),
                            {userInterface(), QStringLiteral("Display")},
                            [this](const QDBusMessage& display) {
                                const auto value = display.arguments().value(0).value<QDBusVariant>();
                                const QString path = isError(display) ? QString() : pathIn(value.variant());
                                follow(path, [this] { giveUp(); });
                            });
              });
}

void SessionPresenceLinux::follow(const QString& path, const std::function<void()>& otherwise) {
    if (path.isEmpty()) {
        otherwise();
        return;
    }
    watch(path); // first: nothing that changes from now on is missed
    askLogind(
        path, propertiesInterface(), QStringLiteral("GetAll"), {sessionInterface()},
        [this, otherwise](const QDBusMessage& reply) {
            const auto properties =
                isError(reply) ? QVariantMap() : qdbus_cast<QVariantMap>(reply.arguments().value(0));
            // The user's systemd has a session, too, which is always active.
            const bool isManager =
                properties.value(QStringLiteral("Class")).toString().startsWith(QStringLiteral("manager"));
            if (properties.isEmpty() || isManager)
                otherwise();
            else
                take(properties.value(activeProperty()));
        });
}

void SessionPresenceLinux::watch(const QString& path) {
    if (path == session_)
        return;
    if (!session_.isEmpty())
        match(QStringLiteral("RemoveMatch"), propertiesRule(session_));
    session_ = path;
    if (!session_.isEmpty())
        match(QStringLiteral("AddMatch"), propertiesRule(session_));
}

void SessionPresenceLinux::readActive() {
    askLogind(session_, propertiesInterface(), QStringLiteral("Get"), {sessionInterface(), activeProperty()},
              [this](const QDBusMessage& reply) {
                  take(isError(reply) ? QVariant()
                                      : reply.arguments().value(0).value<QDBusVariant>().variant());
              });
}

void SessionPresenceLinux::take(const QVariant& active) {
    loss_.stop();
    again_.stop();
    setInFront(active.metaType() != QMetaType::fromType<bool>() || active.toBool());
}

void SessionPresenceLinux::giveUp() {
    ++search_;
    watch({});
    take({});
}

void SessionPresenceLinux::heard(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    if (signal.service() == busService()) {
        if (signal.member() == QStringLiteral("NameOwnerChanged") && arguments.value(0) == logindService())
            takeOwner(arguments.value(2).toString());
        return;
    }
    if (owner_.isEmpty() || signal.service() != owner_)
        return;
    if (signal.interface() == managerInterface() && signal.path() == logindPath()) {
        searchByProcess(); // a session began or ended: perhaps ours
    } else if (signal.interface() == propertiesInterface() && signal.path() == session_ &&
               arguments.value(0) == sessionInterface()) {
        const auto changes = qdbus_cast<QVariantMap>(arguments.value(1));
        if (changes.contains(activeProperty()))
            take(changes.value(activeProperty()));
        else if (arguments.value(2).toStringList().contains(activeProperty()))
            readActive();
    }
}

void SessionPresenceLinux::askLogind(const QString& path, const QString& interface, const QString& method,
                                     const QVariantList& arguments, const Reply& answered) {
    ask(owner_, path, interface, method, arguments, answered);
}

void SessionPresenceLinux::ask(const QString& service, const QString& path, const QString& interface,
                               const QString& method, const QVariantList& arguments, const Reply& answered) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    auto* pending =
        new QDBusPendingCallWatcher(bus_.asyncCall(call, static_cast<int>(patience_.answer.count())), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, answered, search = search_] {
        pending->deleteLater();
        if (search != search_)
            return;
        const QDBusMessage reply = pending->reply();
        if (isError(reply) && isSilence(reply)) {
            lose();
        } else {
            wasAnswered_ = true;
            answered(reply);
        }
    });
}

void SessionPresenceLinux::match(const QString& method, const QString& rule) {
    QDBusMessage call = QDBusMessage::createMethodCall(busService(), busPath(), busService(), method);
    call << rule;
    bus_.send(call);
}
