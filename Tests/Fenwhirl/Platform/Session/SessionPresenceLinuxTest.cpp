#include "Fenwhirl/Platform/Session/SessionPresenceLinux.h"

#include "Fenwhirl/Platform/Desktop/PrivateBus.h"
#include "Support/MainThreadPauses.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QFile>
#include <QMap>
#include <QSignalSpy>

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

constexpr uint process = 4711;
constexpr uint user = 1000;

QString root() {
    return QStringLiteral("/org/freedesktop/login1");
}

QString pathOf(const QString& session) {
    return root() + QStringLiteral("/session/_3") + session;
}

QString userPath() {
    return root() + QStringLiteral("/user/_1000");
}

// A login manager with the sessions that the test defines; it can also stay silent.
class FakeLogind : public QDBusVirtualObject {
public:
    QString ofProcess;          // the session that contains the process
    QMap<QString, bool> active; // session → whether it is active
    QString display;            // the user's display session
    bool knowsUser = true;
    bool answers = true;
    QVariant strange;  // sent instead of the session's state
    QStringList asked; // the methods called, in order

    FakeLogind() : bus_(PrivateBus::connect()) {
        bus_.registerVirtualObject(root(), this, QDBusConnection::SubPath);
    }

    ~FakeLogind() override {
        bus_.unregisterObject(root(), QDBusConnection::UnregisterTree);
        QDBusConnection::disconnectFromBus(bus_.name());
    }

    FakeLogind(const FakeLogind&) = delete;
    FakeLogind& operator=(const FakeLogind&) = delete;

    void start() { ASSERT_TRUE(bus_.registerService(QStringLiteral("org.freedesktop.login1"))); }

    void leave() { ASSERT_TRUE(bus_.unregisterService(QStringLiteral("org.freedesktop.login1"))); }

    void switchTo(const QString& session, bool isActive) {
        active[session] = isActive;
        announce(bus_, session, {{QStringLiteral("Active"), isActive}}, {});
    }

    // Announces only that the property has changed, so its value must be read.
    void invalidate(const QString& session, bool isActive) {
        active[session] = isActive;
        announce(bus_, session, {}, {QStringLiteral("Active")});
    }

    static void announce(QDBusConnection bus, const QString& session, const QVariantMap& changes,
                         const QStringList& invalid, const QString& to = {}) {
        const QString interface = QStringLiteral("org.freedesktop.DBus.Properties");
        const QString name = QStringLiteral("PropertiesChanged");
        QDBusMessage signal = to.isEmpty()
                                  ? QDBusMessage::createSignal(pathOf(session), interface, name)
                                  : QDBusMessage::createTargetedSignal(to, pathOf(session), interface, name);
        signal << QStringLiteral("org.freedesktop.login1.Session") << changes << invalid;
        bus.send(signal);
    }

    void end(const QString& session) {
        active.remove(session);
        if (ofProcess == session) {
            ofProcess.clear();
        }
        tell(QStringLiteral("SessionRemoved"), session);
    }

    void begin(const QString& session, bool isActive) {
        active[session] = isActive;
        tell(QStringLiteral("SessionNew"), session);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        asked << message.member();
        asker = message.service();
        if (!answers) {
            message.setDelayedReply(true);
            return true;
        }
        const QVariant answer = answerTo(message);
        connection.send(answer.isValid()
                            ? message.createReply(answer)
                            : message.createErrorReply(QStringLiteral("org.freedesktop.login1.NoSuchSession"),
                                                       QString()));
        return true;
    }

    QString asker; // bus name of the code under test

private:
    static QVariant object(const QString& path) { return QVariant::fromValue(QDBusObjectPath(path)); }

    QVariant answerTo(const QDBusMessage& message) {
        const QString method = message.member();
        const QVariantList arguments = message.arguments();
        if (method == QStringLiteral("GetSessionByPID")) {
            return arguments[0] == QVariant(process) && active.contains(ofProcess) ? object(pathOf(ofProcess))
                                                                                   : QVariant();
        }
        if (method == QStringLiteral("GetSession")) {
            return active.contains(arguments[0].toString()) ? object(pathOf(arguments[0].toString()))
                                                            : QVariant();
        }
        if (method == QStringLiteral("GetUser")) {
            return knowsUser && arguments[0] == QVariant(user) ? object(userPath()) : QVariant();
        }
        if (message.path() == userPath() && arguments[1] == QVariant(QStringLiteral("Display"))) {
            QDBusArgument value;
            value.beginStructure();
            value << display << QDBusObjectPath(display.isEmpty() ? QStringLiteral("/") : pathOf(display));
            value.endStructure();
            return QVariant::fromValue(QDBusVariant(QVariant::fromValue(value)));
        }
        for (auto session = active.cbegin(); session != active.cend(); ++session) {
            if (message.path() != pathOf(session.key())) {
                continue;
            }
            const QVariant isActive = strange.isValid() ? strange : QVariant(session.value());
            if (method == QStringLiteral("Get")) {
                return QVariant::fromValue(QDBusVariant(isActive));
            }
            return QVariantMap{{QStringLiteral("Active"), isActive},
                               {QStringLiteral("Class"), session.key() == QStringLiteral("9")
                                                             ? QStringLiteral("manager")
                                                             : QStringLiteral("user")}};
        }
        return {};
    }

    void tell(const QString& name, const QString& session) {
        QDBusMessage signal =
            QDBusMessage::createSignal(root(), QStringLiteral("org.freedesktop.login1.Manager"), name);
        signal << session << QVariant::fromValue(QDBusObjectPath(pathOf(session)));
        bus_.send(signal);
    }

    QDBusConnection bus_;
};

class SessionPresenceLinuxTest : public testing::Test {
protected:
    // Timeouts so long that they never expire. A test shortens the one it waits for.
    static constexpr SessionTimeouts never{.settle = std::chrono::hours(1),
                                           .answer = std::chrono::hours(1),
                                           .loss = std::chrono::hours(1),
                                           .again = std::chrono::hours(1)};

    void make(const QString& session = {}, SessionTimeouts patience = never) {
        presence = std::make_unique<SessionPresenceLinux>(
            qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
            SessionQuery{.process = process, .session = session, .user = user}, patience);
        changed = std::make_unique<QSignalSpy>(presence.get(), &SessionPresence::changed);
        settled = std::make_unique<QSignalSpy>(presence.get(), &SessionPresence::settled);
    }

    [[nodiscard]] bool settles() const {
        return waitUntil([this] { return presence->isSettled(); });
    }

    [[nodiscard]] bool goesBack() const {
        return waitUntil([this] { return !presence->isInFront(); });
    }

    [[nodiscard]] bool comesToFront() const {
        return waitUntil([this] { return presence->isInFront(); });
    }

    PrivateBus bus;
    FakeLogind logind;
    std::unique_ptr<SessionPresenceLinux> presence;
    std::unique_ptr<QSignalSpy> changed;
    std::unique_ptr<QSignalSpy> settled;
};

} // namespace

TEST_F(SessionPresenceLinuxTest, IsWhatTheSessionOfTheProcessIsAndFollowsIt) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}, {QStringLiteral("2"), true}};
    logind.start();
    make(QStringLiteral("2"));
    EXPECT_FALSE(presence->isSettled()); // construction does not wait for the answer
    EXPECT_TRUE(presence->isInFront());
    ASSERT_TRUE(settles());
    EXPECT_FALSE(presence->isInFront());
    logind.switchTo(QStringLiteral("1"), true);
    ASSERT_TRUE(comesToFront());
    logind.invalidate(QStringLiteral("1"), false);
    ASSERT_TRUE(goesBack());
    logind.switchTo(QStringLiteral("2"), true); // another session
    logind.switchTo(QStringLiteral("1"), true);
    ASSERT_TRUE(comesToFront());
    EXPECT_EQ(changed->size(), 4);
    EXPECT_EQ(settled->size(), 1);
}

TEST_F(SessionPresenceLinuxTest, ANamedSessionServesAProcessThatIsInNone) {
    logind.active = {{QStringLiteral("1"), true}, {QStringLiteral("2"), false}};
    logind.display = QStringLiteral("1");
    logind.start();
    make(QStringLiteral("2"));
    ASSERT_TRUE(goesBack());
    logind.switchTo(QStringLiteral("2"), true);
    ASSERT_TRUE(comesToFront());
}

TEST_F(SessionPresenceLinuxTest, TheUsersDisplayServesAProcessOfTheirSystemd) {
    logind.active = {{QStringLiteral("3"), false}};
    logind.display = QStringLiteral("3");
    logind.start();
    make(QStringLiteral("8")); // a session that has ended
    ASSERT_TRUE(goesBack());
    logind.switchTo(QStringLiteral("3"), true);
    ASSERT_TRUE(comesToFront());
}

TEST_F(SessionPresenceLinuxTest, TheManagerSessionOfSystemdIsNoDesktopSession) {
    logind.ofProcess = QStringLiteral("9");
    logind.active = {{QStringLiteral("3"), false}, {QStringLiteral("9"), true}};
    logind.display = QStringLiteral("3");
    logind.start();
    make();
    ASSERT_TRUE(goesBack());
}

TEST_F(SessionPresenceLinuxTest, IsInFrontWhereNoSessionIsKnown) {
    logind.start();
    make();
    ASSERT_TRUE(settles());
    EXPECT_TRUE(presence->isInFront());
    EXPECT_TRUE(logind.asked.contains(QStringLiteral("Get"))) << "it looked for the user's display";
    logind.knowsUser = false;
    make();
    ASSERT_TRUE(settles());
    EXPECT_TRUE(presence->isInFront());
    EXPECT_TRUE(changed->isEmpty());
}

TEST_F(SessionPresenceLinuxTest, IsInFrontAfterAStrangeAnswer) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}};
    logind.strange = QStringLiteral("no");
    logind.start();
    make();
    ASSERT_TRUE(settles());
    EXPECT_TRUE(presence->isInFront());
}

TEST_F(SessionPresenceLinuxTest, IsInFrontWithoutALoginManager) {
    make();
    ASSERT_TRUE(settles());
    EXPECT_TRUE(presence->isInFront());
}

TEST_F(SessionPresenceLinuxTest, IsInFrontWithoutABus) {
    presence = std::make_unique<SessionPresenceLinux>(QStringLiteral("unix:path=/nonexistent/bus"),
                                                      SessionQuery{}, never);
    EXPECT_TRUE(presence->isSettled());
    EXPECT_TRUE(presence->isInFront());
}

TEST_F(SessionPresenceLinuxTest, ALoginManagerThatNeverAnswersHoldsUpNothing) {
    logind.answers = false;
    logind.start();
    SessionTimeouts patience = never;
    patience.settle = std::chrono::milliseconds(1);
    const auto pause = longestPause([&] { make({}, patience); },
                                    [&] { return presence->isSettled() && !logind.asked.isEmpty(); });
    EXPECT_LT(pause, acceptablePause);
    EXPECT_TRUE(presence->isInFront());
}

TEST_F(SessionPresenceLinuxTest, ABusThatNeverAnswersHoldsUpNothing) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/bus";
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 4), 0);
    SessionTimeouts patience = never;
    patience.settle = std::chrono::milliseconds(1);
    const auto pause = longestPause(
        [&] {
            presence = std::make_unique<SessionPresenceLinux>(
                QStringLiteral("unix:path=") + QString::fromStdString(path), SessionQuery{}, patience);
        },
        [&] { return presence->isSettled(); });
    EXPECT_LT(pause, acceptablePause);
    EXPECT_TRUE(presence->isInFront());
    presence.reset();
    close(listener);
}

TEST_F(SessionPresenceLinuxTest, AsksASilentLoginManagerAgain) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}};
    logind.answers = false;
    logind.start();
    SessionTimeouts patience = never;
    patience.answer = std::chrono::milliseconds(50);
    patience.again = std::chrono::milliseconds(1);
    make({}, patience);
    ASSERT_TRUE(settles());
    EXPECT_TRUE(presence->isInFront());
    logind.answers = true;
    ASSERT_TRUE(goesBack());
}

TEST_F(SessionPresenceLinuxTest, KeepsWhatWasSaidWhileTheLoginManagerIsReplaced) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}};
    logind.start();
    make();
    ASSERT_TRUE(goesBack());
    logind.leave();
    FakeLogind next;
    next.ofProcess = QStringLiteral("1");
    next.active = {{QStringLiteral("1"), false}};
    next.start();
    ASSERT_TRUE(waitUntil([&] { return next.asked.contains(QStringLiteral("GetAll")); }));
    EXPECT_FALSE(presence->isInFront());
    EXPECT_EQ(changed->size(), 1);
    next.switchTo(QStringLiteral("1"), true);
    ASSERT_TRUE(comesToFront());
}

TEST_F(SessionPresenceLinuxTest, IsInFrontOnceTheLoginManagerStaysAway) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}};
    logind.start();
    SessionTimeouts patience = never;
    patience.loss = std::chrono::milliseconds(1);
    make({}, patience);
    ASSERT_TRUE(goesBack());
    logind.leave();
    ASSERT_TRUE(comesToFront());
}

TEST_F(SessionPresenceLinuxTest, IsInFrontOnceTheBusStaysAway) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}};
    logind.start();
    SessionTimeouts patience = never;
    patience.loss = std::chrono::milliseconds(1);
    make({}, patience);
    ASSERT_TRUE(goesBack());
    bus.kill();
    ASSERT_TRUE(comesToFront());
}

TEST_F(SessionPresenceLinuxTest, ReturnsToABusThatStartsAgain) {
    const TemporaryFolder folder;
    const QString link = QString::fromStdString(folder.path()) + QStringLiteral("/bus");
    const auto lead = [&link] { // points the link to the current bus
        const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
        const QString path = address.section(u'=', 1, 1).section(u',', 0, 0);
        QFile::remove(link);
        ASSERT_TRUE(QFile::link(path, link));
    };
    lead();
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}};
    logind.start();
    SessionTimeouts patience = never;
    patience.again = std::chrono::milliseconds(1);
    presence = std::make_unique<SessionPresenceLinux>(
        QStringLiteral("unix:path=") + link, SessionQuery{.process = process, .session = {}, .user = user},
        patience);
    ASSERT_TRUE(goesBack());
    bus.kill();
    const PrivateBus again;
    FakeLogind next;
    next.ofProcess = QStringLiteral("1");
    next.active = {{QStringLiteral("1"), false}};
    next.start();
    lead();
    ASSERT_TRUE(waitUntil([&] { return next.asked.contains(QStringLiteral("GetAll")); }));
    EXPECT_FALSE(presence->isInFront());
    next.switchTo(QStringLiteral("1"), true);
    ASSERT_TRUE(comesToFront());
}

TEST_F(SessionPresenceLinuxTest, LooksForAnotherSessionWhenItsOwnEnds) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), true}, {QStringLiteral("2"), false}};
    logind.display = QStringLiteral("2");
    logind.start();
    make();
    ASSERT_TRUE(settles());
    EXPECT_TRUE(presence->isInFront());
    logind.end(QStringLiteral("1"));
    ASSERT_TRUE(goesBack());
    logind.display.clear();
    logind.end(QStringLiteral("2"));
    ASSERT_TRUE(comesToFront());
    logind.display = QStringLiteral("4");
    logind.begin(QStringLiteral("4"), false);
    ASSERT_TRUE(goesBack());
}

TEST_F(SessionPresenceLinuxTest, IgnoresOtherSenders) {
    logind.ofProcess = QStringLiteral("1");
    logind.active = {{QStringLiteral("1"), false}};
    logind.start();
    make();
    ASSERT_TRUE(goesBack());
    const QDBusConnection stranger = PrivateBus::connect();
    FakeLogind::announce(stranger, QStringLiteral("1"), {{QStringLiteral("Active"), true}}, {}, logind.asker);
    QDBusMessage gone = QDBusMessage::createTargetedSignal(
        logind.asker, QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("NameOwnerChanged"));
    gone << QStringLiteral("org.freedesktop.login1") << QString() << stranger.baseService();
    static_cast<void>(stranger.send(gone));
    // The bus keeps the order of messages: once this call returns, both forged signals have arrived.
    static_cast<void>(stranger.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"))));
    const qsizetype before = logind.asked.size();
    logind.invalidate(QStringLiteral("1"), false);
    ASSERT_TRUE(waitUntil([&] { return logind.asked.size() > before; }));
    EXPECT_EQ(changed->size(), 1);
    QDBusConnection::disconnectFromBus(stranger.name());
}

} // namespace Fenwhirl
