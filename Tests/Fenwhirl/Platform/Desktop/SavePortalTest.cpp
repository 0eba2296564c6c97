#include "Fenwhirl/Platform/Desktop/SavePortalLinux.h"
#include "PrivateBus.h"
#include "Support/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QKeyEvent>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace Fenwhirl {

namespace {

using namespace std::chrono_literals;

// A portal whose dialog gives the answer that the test chose: at once, later or never.
class FakeFileChooser : public QDBusVirtualObject {
public:
    bool knowsHow = true;
    bool choosesItsOwnPath = false;
    std::optional<uint> code = 0;
    QStringList places = {QStringLiteral("file:///home/camille/Mes%20rapports/rapport.txt")};
    QString title;
    QVariantMap options;
    QString request;
    int closed = 0;
    // Called when a dialog has been asked for and the reply with its request has been sent.
    std::function<void()> whenAsked;

    FakeFileChooser() : bus_(PrivateBus::connect()) {
        // A caller that does not hear the answer gets none at all, and its test fails instead of hanging.
        QTimer::singleShot(30s, this, &FakeFileChooser::leave);
        QObject::connect(&again_, &QTimer::timeout, this, &FakeFileChooser::respond);
        bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                   QDBusConnection::SubPath);
        bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    ~FakeFileChooser() override { leave(); }

    FakeFileChooser(const FakeFileChooser&) = delete;
    FakeFileChooser& operator=(const FakeFileChooser&) = delete;

    void leave() {
        bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        QDBusConnection::disconnectFromBus(bus_.name());
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QStringLiteral("Close")) {
            ++closed;
            return true;
        }
        if (!knowsHow) {
            return connection.send(message.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("no")));
        }
        title = message.arguments().value(1).toString();
        options = qdbus_cast<QVariantMap>(message.arguments().value(2));
        request = QStringLiteral("/org/freedesktop/portal/desktop/request/") +
                  message.service().mid(1).replace(u'.', u'_') + u'/' +
                  (choosesItsOwnPath ? QStringLiteral("own")
                                     : options.value(QStringLiteral("handle_token")).toString());
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        if (code && choosesItsOwnPath) {
            again_.start(50ms); // repeated, because nobody can see when the caller has learnt the path
        } else if (code) {
            respond();
        }
        if (whenAsked) {
            QTimer::singleShot(0, this, whenAsked);
        }
        return true;
    }

    void respond() {
        QDBusMessage signal = QDBusMessage::createSignal(
            request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal << *code << QVariantMap{{QStringLiteral("uris"), places}};
        bus_.send(signal);
    }

private:
    QDBusConnection bus_;
    QTimer again_;
};

SavePortalLinux::Answer ask() {
    return SavePortalLinux(PrivateBus::connect())
        .ask(QStringLiteral("Fenwhirl"), QStringLiteral("/home/camille/Documents"),
             QStringLiteral("rapport.txt"));
}

TEST(SavePortal, GivesThePlaceThatWasChosen) {
    const FakeFileChooser portal;
    const SavePortalLinux::Answer answer = ask();
    EXPECT_TRUE(answer.answered);
    EXPECT_EQ(answer.path, QStringLiteral("/home/camille/Mes rapports/rapport.txt"));
    EXPECT_EQ(portal.title, QStringLiteral("Fenwhirl"));
    EXPECT_EQ(portal.options.value(QStringLiteral("current_name")).toString(), QStringLiteral("rapport.txt"));
    EXPECT_EQ(portal.options.value(QStringLiteral("current_folder")).toByteArray(),
              QByteArray("/home/camille/Documents", 24)); // with its terminating zero
    EXPECT_EQ(portal.closed, 0);
}

TEST(SavePortal, HearsAPortalThatNamesItsRequestItself) {
    FakeFileChooser portal;
    portal.choosesItsOwnPath = true;
    EXPECT_EQ(ask().path, QStringLiteral("/home/camille/Mes rapports/rapport.txt"));
}

TEST(SavePortal, GivesNoPlaceWhenTheUserDeclines) {
    FakeFileChooser portal;
    portal.code = 1;
    portal.places.clear();
    const SavePortalLinux::Answer answer = ask();
    EXPECT_TRUE(answer.answered);
    EXPECT_EQ(answer.path, QString());
}

TEST(SavePortal, HasNotAskedWhereNoPortalCan) {
    EXPECT_FALSE(ask().answered);
    FakeFileChooser portal;
    portal.knowsHow = false;
    EXPECT_FALSE(ask().answered);
}

TEST(SavePortal, HasNotAskedWhenItsDialogCouldNotBeShown) {
    FakeFileChooser portal;
    portal.code = 2;
    EXPECT_FALSE(ask().answered);
}

TEST(SavePortal, HasNotAskedWhenThePortalLeaves) {
    FakeFileChooser portal;
    portal.code.reset();
    portal.whenAsked = [&portal] { portal.leave(); };
    EXPECT_FALSE(ask().answered);
}

TEST(SavePortal, TakesTheDialogAwayWhenTheProgramEnds) {
    FakeFileChooser portal;
    portal.code.reset();
    SavePortalLinux::Answer answer;
    QTimer::singleShot(0, &portal, [&] { answer = ask(); });
    portal.whenAsked = [] { QCoreApplication::quit(); };
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_TRUE(answer.answered);
    EXPECT_EQ(answer.path, QString());
    EXPECT_TRUE(waitUntil([&] { return portal.closed == 1; }));
}

class KeyCounter : public QWindow {
public:
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent* /*event*/) override { ++keys; }
};

TEST(SavePortal, KeepsInputFromTheProgramsWindowsWhileItAsks) {
    FakeFileChooser portal;
    portal.code.reset();
    KeyCounter window;
    const auto press = [&] {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &key);
    };
    bool asking = false;
    portal.whenAsked = [&] {
        asking = SavePortalLinux::isAsking();
        press();
        portal.code = 1;
        portal.respond();
    };
    static_cast<void>(ask());
    EXPECT_TRUE(asking);
    EXPECT_EQ(window.keys, 0);
    EXPECT_FALSE(SavePortalLinux::isAsking());
    press();
    EXPECT_EQ(window.keys, 1);
}

} // namespace

} // namespace Fenwhirl
