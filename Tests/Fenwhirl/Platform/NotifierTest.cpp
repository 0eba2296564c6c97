#include "Fenwhirl/Platform/Notifier.h"

#include "Support/MainThreadPauses.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaitUntil.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <cstdlib>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

// A notification service that records its calls.
class FakeService : public QDBusVirtualObject {
public:
    QList<QDBusMessage> calls;
    bool answers = true;

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        calls.append(message);
        if (answers) {
            connection.send(message.createReply(uint{calls.size() > 0}));
        } else {
            message.setDelayedReply(true);
        }
        return true;
    }
};

// A session bus for this process alone that starts no services: an installed desktop may bring a notification
// service of its own.
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

// A notification service in another process: nobody answers in this one while it waits for the answer.
constexpr const char* serviceThatTakesOne = R"python(
import gi
from gi.repository import Gio, GLib
xml = ("<node><interface name='org.freedesktop.Notifications'><method name='Notify'>"
       + "".join(f"<arg type='{kind}' direction='in'/>" for kind in ("s", "u", "s", "s", "s", "as", "a{sv}", "i"))
       + "<arg type='u' direction='out'/></method></interface></node>")
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
taken = []
def answer(_bus, _sender, _path, _interface, _method, arguments, call):
    normal = 1
    if taken or arguments.unpack()[6]["urgency"] != normal:
        call.return_dbus_error("org.freedesktop.DBus.Error.LimitsExceeded", "one is enough")
    else:
        taken.append(arguments)
        call.return_value(GLib.Variant("(u)", (1,)))
bus.register_object("/org/freedesktop/Notifications", Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0], answer)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.Notifications", 0, lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
)python";

class NotifierTest : public testing::Test {
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

    // The service uses a connection of its own, as another program would.
    QDBusConnection makeService() {
        QDBusConnection connection =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("service"));
        EXPECT_TRUE(
            connection.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), &service));
        EXPECT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.Notifications")));
        return connection;
    }

    void waitForCalls(qsizetype count) {
        ASSERT_TRUE(waitUntil([&] { return service.calls.size() >= count; }));
    }

    ~NotifierTest() override { QDBusConnection::disconnectFromBus(QStringLiteral("service")); }

    static QProcess* bus;
    FakeService service;
};

QProcess* NotifierTest::bus = nullptr;

} // namespace

TEST_F(NotifierTest, CallsTheServiceOnceWithUrgencyEntryAndSound) {
    const QDBusConnection connection = makeService();
    Notifier::send(QStringLiteral("Fenwhirl"), QStringLiteral("Ton Mac chauffe : 93 degrés."));
    waitForCalls(1);
    ASSERT_EQ(service.calls.size(), 1);
    const QDBusMessage& call = service.calls[0];
    EXPECT_EQ(call.member(), QStringLiteral("Notify"));
    EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.Notifications"));
    EXPECT_EQ(call.signature(), QStringLiteral("susssasa{sv}i"));
    const QVariantList arguments = call.arguments();
    EXPECT_EQ(arguments[0].toString(), QStringLiteral("Fenwhirl"));
    EXPECT_EQ(arguments[1].toUInt(), 0U);
    EXPECT_EQ(arguments[3].toString(), QStringLiteral("Fenwhirl"));
    EXPECT_EQ(arguments[4].toString(), QStringLiteral("Ton Mac chauffe : 93 degrés."));
    EXPECT_TRUE(arguments[5].toStringList().isEmpty());
    EXPECT_EQ(arguments[7].toInt(), -1);
    const auto hints = qdbus_cast<QVariantMap>(arguments[6]);
    EXPECT_EQ(hints.value(QStringLiteral("urgency")).metaType(), QMetaType::fromType<uchar>());
    EXPECT_EQ(hints.value(QStringLiteral("urgency")).toInt(), 2);
    EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")).toString(), QStringLiteral("com.fenwhirl.app"));
    EXPECT_FALSE(hints.value(QStringLiteral("sound-name")).toString().isEmpty());
}

TEST_F(NotifierTest, MarkupIsShownAsTextNotObeyed) {
    const QDBusConnection connection = makeService();
    Notifier::send(QStringLiteral("a < b"), QStringLiteral("<img src=\"http://x\"/> & <b>\"fort\"</b>"));
    waitForCalls(1);
    ASSERT_EQ(service.calls.size(), 1);
    EXPECT_EQ(service.calls[0].arguments()[3].toString(), QStringLiteral("a < b")); // the title is plain text
    EXPECT_EQ(service.calls[0].arguments()[4].toString(),
              QStringLiteral("&lt;img src=\"http://x\"/&gt; &amp; &lt;b&gt;\"fort\"&lt;/b&gt;"));
}

TEST_F(NotifierTest, WithoutAServiceNothingHappens) {
    const auto isThere = [] {
        return QDBusConnection::sessionBus()
            .interface()
            ->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications"))
            .value();
    };
    ASSERT_TRUE(waitUntil([&] { return !isThere(); }))
        << "the bus has yet to notice that the last test's is gone";
    Notifier::send(QStringLiteral("Fenwhirl"), QStringLiteral("personne n'écoute"));
    // The bus answers in order: once this answer has arrived, the call above has failed.
    EXPECT_FALSE(isThere());
    const QDBusConnection connection = makeService();
    Notifier::send(QStringLiteral("Fenwhirl"), QStringLiteral("quelqu'un écoute"));
    waitForCalls(1);
    ASSERT_EQ(service.calls.size(), 1);
    EXPECT_EQ(service.calls[0].arguments()[4].toString(), QStringLiteral("quelqu'un écoute"));
}

TEST_F(NotifierTest, ServiceThatNeverAnswersHoldsUpNothing) {
    service.answers = false;
    const QDBusConnection connection = makeService();
    const auto pause =
        longestPause([] { Notifier::send(QStringLiteral("Fenwhirl"), QStringLiteral("silence")); },
                     [&] { return !service.calls.isEmpty(); });
    EXPECT_LT(pause, acceptablePause);
}

TEST_F(NotifierTest, WhoeverWaitsLearnsWhetherItWasTaken) {
    const auto deliver = [] {
        return Notifier::deliver(QStringLiteral("Fenwhirl"), QStringLiteral("attendu"));
    };
    EXPECT_EQ(deliver(), Notifier::Delivery::noService);
    QProcess other;
    other.start(QStringLiteral("/usr/bin/python3"),
                {QStringLiteral("-c"), QString::fromLatin1(serviceThatTakesOne)});
    if (!other.waitForReadyRead()) {
        GTEST_SKIP() << "python3-gi is not installed";
    }
    EXPECT_EQ(deliver(), Notifier::Delivery::taken);
    EXPECT_EQ(deliver(), Notifier::Delivery::refused);
    other.kill();
    other.waitForFinished();
}

TEST_F(NotifierTest, RealServiceShowsTitleAndMessage) {
    const QString dunst = QStandardPaths::findExecutable(QStringLiteral("dunst"));
    const QString server = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (dunst.isEmpty() || server.isEmpty()) {
        GTEST_SKIP() << "dunst or Xvfb is not installed";
    }
    QProcess display;
    display.start(server, {QStringLiteral("-displayfd"), QStringLiteral("1")});
    ASSERT_TRUE(display.waitForReadyRead());
    QProcess notifications;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(display.readLine().trimmed()));
    notifications.setProcessEnvironment(environment);
    notifications.start(dunst, {QStringLiteral("-print")});
    ASSERT_TRUE(waitUntil([] {
        return QDBusConnection::sessionBus()
            .interface()
            ->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications"))
            .value();
    }));
    Notifier::send(QStringLiteral("Fenwhirl"), QStringLiteral("Ton Mac chauffe : 93 degrés."));
    QByteArray shown;
    while (!shown.contains("script_count") && notifications.waitForReadyRead()) {
        shown += notifications.readAll();
    }
    EXPECT_TRUE(shown.contains("summary: 'Fenwhirl'")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("Ton Mac chauffe : 93 degrés.")) << shown.toStdString();
    EXPECT_TRUE(shown.contains("urgency: CRITICAL")) << shown.toStdString();
    for (QProcess* process : {&notifications, &display}) {
        process->terminate();
        process->waitForFinished();
    }
}

} // namespace Fenwhirl
