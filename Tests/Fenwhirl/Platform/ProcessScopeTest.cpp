#include "Fenwhirl/Platform/ProcessScope.h"

#include "Support/MainThreadPauses.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>

#include <cstdlib>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

// A service manager that records its calls.
class FakeManager : public QDBusVirtualObject {
public:
    QList<QDBusMessage> calls;

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    // Never answers; the caller must not wait for an answer.
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override {
        calls.append(message);
        message.setDelayedReply(true);
        return true;
    }
};

// A session bus for this process alone that starts no services.
constexpr std::string_view busConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

class ProcessScopeTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        const TemporaryFolder folder;
        const QString configuration = QString::fromStdString(folder.write("bus.conf", busConfiguration));
        bus = new QProcess;
        bus->start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + configuration, QStringLiteral("--nofork"),
                    QStringLiteral("--print-address")});
        ASSERT_TRUE(bus->waitForReadyRead());
        setenv("DBUS_SESSION_BUS_ADDRESS", bus->readLine().trimmed().constData(), 1);
        ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
    }

    static void TearDownTestSuite() {
        QDBusConnection::disconnectFromBus(QDBusConnection::sessionBus().name());
        bus->terminate(); // removes its socket, too
        bus->waitForFinished();
        delete bus;
        bus = nullptr;
    }

    ~ProcessScopeTest() override { QDBusConnection::disconnectFromBus(QStringLiteral("manager")); }

    void startManager() {
        QDBusConnection connection =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("manager"));
        EXPECT_TRUE(connection.registerVirtualObject(QStringLiteral("/org/freedesktop/systemd1"), &manager));
        EXPECT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.systemd1")));
    }

    void waitForCall() {
        ASSERT_TRUE(waitUntil([this] { return !manager.calls.isEmpty(); }));
    }

    static QProcess* bus;
    FakeManager manager;
};

QProcess* ProcessScopeTest::bus = nullptr;

} // namespace

TEST_F(ProcessScopeTest, AsksForAUnitWithTheProcessAndWaitsForNothing) {
    startManager();
    const auto pause = longestPause(
        [this] {
            manager.calls.clear(); // of an earlier attempt
            ProcessScope::separate(4711, QStringLiteral("x-guard"), QStringLiteral("the guard of x"));
        },
        [this] { return !manager.calls.isEmpty(); });
    EXPECT_LT(pause, acceptablePause);
    ASSERT_EQ(manager.calls.size(), 1);
    const QDBusMessage& call = manager.calls[0];
    EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.systemd1.Manager"));
    EXPECT_EQ(call.member(), QStringLiteral("StartTransientUnit"));
    EXPECT_EQ(call.signature(), QStringLiteral("ssa(sv)a(sa(sv))"));
    EXPECT_EQ(call.arguments()[0].toString(), QStringLiteral("app-x-guard-4711.scope"));
    EXPECT_EQ(call.arguments()[1].toString(), QStringLiteral("fail"));

    const auto list = call.arguments()[2].value<QDBusArgument>();
    QVariantMap properties;
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        QDBusVariant value;
        list.beginStructure();
        list >> name >> value;
        list.endStructure();
        properties[name] = value.variant();
    }
    list.endArray();
    EXPECT_EQ(qdbus_cast<QList<uint>>(properties[QStringLiteral("PIDs")]), QList<uint>{4711});
    EXPECT_EQ(properties[QStringLiteral("Description")].toString(), QStringLiteral("the guard of x"));
    EXPECT_EQ(properties[QStringLiteral("CollectMode")].toString(), QStringLiteral("inactive-or-failed"));
}

TEST_F(ProcessScopeTest, WithoutAManagerNothingHappens) {
    ProcessScope::separate(4711, QStringLiteral("x-guard"), QStringLiteral("nobody hears it"));
    // The bus answers in order: once this answer has arrived, the call above has failed.
    EXPECT_FALSE(QDBusConnection::sessionBus().interface()->isServiceRegistered(
        QStringLiteral("org.freedesktop.systemd1")));
    startManager();
    ProcessScope::separate(4711, QStringLiteral("x-guard"), QStringLiteral("somebody hears it"));
    waitForCall();
    EXPECT_EQ(manager.calls.size(), 1);
}

} // namespace Fenwhirl
