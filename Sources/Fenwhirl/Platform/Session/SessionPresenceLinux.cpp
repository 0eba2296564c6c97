#include "Fenwhirl/Platform/Session/SessionPresenceLinux.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <unistd.h>
#include <utility>

namespace Fenwhirl {

namespace {

QString sessionInterface() {
    return QStringLiteral("org.freedesktop.login1.Session");
}

QString userInterface() {
    return QStringLiteral("org.freedesktop.login1.User");
}

QString activeProperty() {
    return QStringLiteral("Active");
}

// The path in a reply that is an object path, or a structure of a name and an object path. Otherwise empty;
// logind says "/" for none.
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
    return std::make_unique<SessionPresenceLinux>(Logind::systemBusAddress(), SessionQuery::thisProcess());
}

SessionQuery SessionQuery::thisProcess() {
    return {.process = static_cast<uint>(QCoreApplication::applicationPid()),
            .session = qEnvironmentVariable("XDG_SESSION_ID"),
            .user = getuid()};
}

SessionPresenceLinux::SessionPresenceLinux(QString address, SessionQuery seeker, SessionTimeouts patience)
    : seeker_(std::move(seeker))
    , logind_(std::move(address), patience.answer) {
    connect(&logind_, &LogindConnection::ownerChanged, this, &SessionPresenceLinux::takeOwner);
    connect(&logind_, &LogindConnection::heard, this, &SessionPresenceLinux::heard);
    connect(&logind_, &LogindConnection::lost, this, &SessionPresenceLinux::disconnected);
    loss_.setSingleShot(true);
    loss_.setInterval(patience.loss);
    connect(&loss_, &QTimer::timeout, this, [this] { setInFront(true); });
    again_.setSingleShot(true);
    again_.setInterval(patience.again);
    connect(&again_, &QTimer::timeout, this, [this] {
        if (logind_.isOpen()) {
            find();
        } else {
            connectToBus();
        }
    });
    connectToBus();
    if (logind_.isOpen()) {
        QTimer::singleShot(patience.settle, this, [this] { settle(); });
    } else {
        again_.stop(); // there never was a bus, so no connection was lost
        settle();
    }
}

SessionPresenceLinux::~SessionPresenceLinux() {
    leaveBus();
}

void SessionPresenceLinux::connectToBus() {
    leaveBus();
    if (logind_.open({QStringLiteral("SessionNew"), QStringLiteral("SessionRemoved")})) {
        find();
    } else {
        again_.start();
    }
}

void SessionPresenceLinux::leaveBus() {
    ++search_;
    session_.clear();
    logind_.close();
}

void SessionPresenceLinux::disconnected() {
    leaveBus();
    lose();
    if (!wasAnswered_) {
        again_.stop(); // the bus closed the connection without ever answering, so it rejects us
    }
}

void SessionPresenceLinux::lose() {
    settle();
    if (!loss_.isActive()) {
        loss_.start();
    }
    again_.start();
}

// Asks the bus for logind, without starting it.
void SessionPresenceLinux::find() {
    ++search_;
    logind_.find(ofThisSearch([this](const QDBusMessage& reply) {
                     if (Logind::isError(reply)) {
                         giveUp();
                     } else {
                         takeOwner(reply.arguments().value(0).toString());
                     }
                 }),
                 silenceOfThisSearch());
}

void SessionPresenceLinux::takeOwner(const QString& owner) {
    ++search_;
    logind_.setOwner(owner);
    if (!owner.isEmpty()) {
        searchByProcess();
    }
    // If logind has gone, `ownerChanged` reports its return, so nothing has to be retried.
    else if (!loss_.isActive()) {
        loss_.start();
    }
}

void SessionPresenceLinux::searchByProcess() {
    ++search_;
    ask(Logind::path(), Logind::managerInterface(), QStringLiteral("GetSessionByPID"), {seeker_.process},
        [this](const QDBusMessage& reply) {
            const QString path = Logind::isError(reply) ? QString() : pathIn(reply.arguments().value(0));
            follow(path, [this] { searchByName(); });
        });
}

void SessionPresenceLinux::searchByName() {
    if (seeker_.session.isEmpty()) {
        searchByUser();
        return;
    }
    ask(Logind::path(), Logind::managerInterface(), QStringLiteral("GetSession"), {seeker_.session},
        [this](const QDBusMessage& reply) {
            const QString path = Logind::isError(reply) ? QString() : pathIn(reply.arguments().value(0));
            follow(path, [this] { searchByUser(); });
        });
}

void SessionPresenceLinux::searchByUser() {
    ask(Logind::path(), Logind::managerInterface(), QStringLiteral("GetUser"), {seeker_.user},
        [this](const QDBusMessage& reply) {
            const QString user = Logind::isError(reply) ? QString() : pathIn(reply.arguments().value(0));
            if (user.isEmpty()) {
                giveUp();
                return;
            }
            ask(user, Logind::propertiesInterface(), QStringLiteral("Get"),
                {userInterface(), QStringLiteral("Display")}, [this](const QDBusMessage& display) {
                    const auto value = display.arguments().value(0).value<QDBusVariant>();
                    const QString path = Logind::isError(display) ? QString() : pathIn(value.variant());
                    follow(path, [this] { giveUp(); });
                });
        });
}

void SessionPresenceLinux::follow(const QString& path, const std::function<void()>& otherwise) {
    if (path.isEmpty()) {
        otherwise();
        return;
    }
    watch(path); // before reading, so that no later change is missed
    ask(path, Logind::propertiesInterface(), QStringLiteral("GetAll"), {sessionInterface()},
        [this, otherwise](const QDBusMessage& reply) {
            const auto properties =
                Logind::isError(reply) ? QVariantMap() : qdbus_cast<QVariantMap>(reply.arguments().value(0));
            // The user's systemd has a session of its own, which is always active.
            const bool isManager =
                properties.value(QStringLiteral("Class")).toString().startsWith(QStringLiteral("manager"));
            if (properties.isEmpty() || isManager) {
                otherwise();
            } else {
                take(properties.value(activeProperty()));
            }
        });
}

void SessionPresenceLinux::watch(const QString& path) {
    if (path == session_) {
        return;
    }
    if (!session_.isEmpty()) {
        logind_.unwatchProperties(session_);
    }
    session_ = path;
    if (!session_.isEmpty()) {
        logind_.watchProperties(session_);
    }
}

void SessionPresenceLinux::readActive() {
    ask(session_, Logind::propertiesInterface(), QStringLiteral("Get"),
        {sessionInterface(), activeProperty()}, [this](const QDBusMessage& reply) {
            take(Logind::isError(reply) ? QVariant()
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
    if (signal.interface() == Logind::managerInterface() && signal.path() == Logind::path()) {
        searchByProcess(); // a session began or ended, perhaps ours
    } else if (signal.interface() == Logind::propertiesInterface() && signal.path() == session_ &&
               arguments.value(0) == sessionInterface()) {
        const auto changes = qdbus_cast<QVariantMap>(arguments.value(1));
        if (changes.contains(activeProperty())) {
            take(changes.value(activeProperty()));
        } else if (arguments.value(2).toStringList().contains(activeProperty())) {
            readActive();
        }
    }
}

void SessionPresenceLinux::ask(const QString& path, const QString& interface, const QString& method,
                               const QVariantList& arguments, const Reply& answered) {
    logind_.ask(path, interface, method, arguments, ofThisSearch(answered), silenceOfThisSearch());
}

LogindConnection::Reply SessionPresenceLinux::ofThisSearch(const Reply& answered) {
    return [this, answered, search = search_](const QDBusMessage& reply) {
        if (search != search_) {
            return;
        }
        wasAnswered_ = true;
        answered(reply);
    };
}

LogindConnection::Silence SessionPresenceLinux::silenceOfThisSearch() {
    return [this, search = search_] {
        if (search == search_) {
            lose();
        }
    };
}

} // namespace Fenwhirl
