#include "Fenwhirl/Platform/Desktop/StatusItemLinux.h"
#include "Fenwhirl/Platform/Desktop/SystemAppearanceLinux.h"
#include "PrivateBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVirtualObject>
#include <QPainter>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

// The watcher of a desktop: knows whether a host is there and who registered an item.
class FakeWatcher : public QDBusVirtualObject {
public:
    bool hasHost = true;
    QStringList items;

    FakeWatcher() : bus_(PrivateBus::connect()) {
        bus_.registerVirtualObject(StatusNotifierHost::watcherPath(), this);
        bus_.registerService(StatusNotifierHost::watcherService());
    }

    ~FakeWatcher() override {
        bus_.unregisterService(StatusNotifierHost::watcherService());
        QDBusConnection::disconnectFromBus(bus_.name());
    }

    FakeWatcher(const FakeWatcher&) = delete;
    FakeWatcher& operator=(const FakeWatcher&) = delete;

    void setHost(bool present) {
        hasHost = present;
        bus_.send(QDBusMessage::createSignal(StatusNotifierHost::watcherPath(),
                                             StatusNotifierHost::watcherService(),
                                             present ? QStringLiteral("StatusNotifierHostRegistered")
                                                     : QStringLiteral("StatusNotifierHostUnregistered")));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QStringLiteral("Get"))
            connection.send(message.createReply(QVariant::fromValue(QDBusVariant(hasHost))));
        else if (message.member() == QStringLiteral("RegisterStatusNotifierItem"))
            items.append(message.arguments().value(0).toString());
        return true;
    }

    // What a host would read of the newest item.
    [[nodiscard]] QVariant property(const QString& name) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            items.last(), QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        call << QStringLiteral("org.kde.StatusNotifierItem") << name;
        const QDBusPendingReply<QDBusVariant> reply = asyncReply(call);
        return reply.value().variant();
    }

    void activate(int x, int y) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            items.last(), QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.kde.StatusNotifierItem"),
            QStringLiteral("Activate"));
        call << x << y;
        asyncReply(call);
    }

private:
    QDBusPendingCall asyncReply(const QDBusMessage& call) {
        QDBusPendingCall pending = bus_.asyncCall(call);
        EXPECT_TRUE(PrivateBus::waitUntil([&] { return pending.isFinished(); }));
        EXPECT_FALSE(pending.isError()) << pending.error().message().toStdString();
        return pending;
    }

    QDBusConnection bus_;
};

void drawSquare(QPainter& painter, const QRectF& bounds, const QColor& color) {
    painter.fillRect(bounds, color);
}

std::unique_ptr<StatusItemLinux> makeItem() {
    return std::make_unique<StatusItemLinux>(drawSquare, PrivateBus::connect(),
                                             std::make_unique<SystemAppearanceLinux>(PrivateBus::connect()));
}

TEST(StatusItem, IsAnnouncedToAHostThatIsThere) {
    FakeWatcher watcher;
    const auto item = makeItem();
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
    EXPECT_TRUE(item->isPlaced());
}

TEST(StatusItem, WaitsForAHostThatComesLate) {
    FakeWatcher watcher;
    watcher.hasHost = false;
    const auto item = makeItem();
    QSignalSpy placed(item.get(), &StatusItem::placedChanged);
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return !placed.isEmpty(); }));
    EXPECT_FALSE(item->isPlaced());
    EXPECT_TRUE(watcher.items.isEmpty());
    watcher.setHost(true);
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
    EXPECT_TRUE(item->isPlaced());
}

TEST(StatusItem, IsAnnouncedAnewWhenTheHostWasLostAndCameBack) {
    FakeWatcher watcher;
    const auto item = makeItem();
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
    watcher.setHost(false);
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return !item->isPlaced(); }));
    watcher.setHost(true);
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 2; }));
    EXPECT_TRUE(item->isPlaced());
}

TEST(StatusItem, FollowsAWatcherThatStartsLater) {
    const auto item = makeItem();
    QSignalSpy placed(item.get(), &StatusItem::placedChanged);
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return !placed.isEmpty(); }));
    EXPECT_FALSE(item->isPlaced());
    FakeWatcher watcher;
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
}

TEST(StatusItem, SaysItsWholeTextAndDrawsTheShortOneIntoASquare) {
    FakeWatcher watcher;
    const auto item = makeItem();
    item->setText(QStringLiteral("2 400 tr/min · 63 °C"), QStringLiteral("63°"));
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
    EXPECT_EQ(watcher.property(QStringLiteral("Title")).toString(), QStringLiteral("2 400 tr/min · 63 °C"));
    EXPECT_EQ(watcher.property(QStringLiteral("Status")).toString(), QStringLiteral("Active"));
    const auto tip = qdbus_cast<StatusNotifierToolTip>(watcher.property(QStringLiteral("ToolTip")));
    EXPECT_EQ(tip.title, QStringLiteral("2 400 tr/min · 63 °C"));
    const auto icons = qdbus_cast<StatusNotifierPixmaps>(watcher.property(QStringLiteral("IconPixmap")));
    ASSERT_EQ(icons.size(), 5);
    EXPECT_EQ(icons.at(0).height, 22);
    EXPECT_EQ(icons.at(4).height, 48);
    for (const StatusNotifierPixmap& icon : icons) {
        EXPECT_EQ(icon.width, icon.height); // panels squeeze what is wider
        EXPECT_EQ(icon.bytes.size(), 4 * icon.width * icon.height);
    }
    EXPECT_EQ(watcher.property(QStringLiteral("IconAccessibleDesc")).toString(),
              QStringLiteral("2 400 tr/min · 63 °C"));
}

TEST(StatusItem, SaysThatItHasNoMenu) {
    FakeWatcher watcher;
    const auto item = makeItem();
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
    const QByteArray desktop = qgetenv("XDG_CURRENT_DESKTOP");
    const auto menu = [&watcher] {
        return watcher.property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
    };
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    EXPECT_EQ(menu(), QStringLiteral("/NO_DBUSMENU"));
    // Whose host takes that for an item that is not ready.
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    EXPECT_EQ(menu(), QStringLiteral("/StatusNotifierItem/Menu"));
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    EXPECT_EQ(watcher.property(QStringLiteral("WindowId")).metaType(), QMetaType::fromType<int>());
}

TEST(StatusItem, DrawsATemperatureThatComesAgainOnlyOnce) {
    FakeWatcher watcher;
    int drawn = 0;
    const auto count = [&drawn](QPainter&, const QRectF&, const QColor&) { ++drawn; };
    StatusItemLinux item(count, PrivateBus::connect(),
                         std::make_unique<SystemAppearanceLinux>(PrivateBus::connect()));
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
    item.setText(QStringLiteral("51 °C"), QStringLiteral("51°"));
    const auto icons = [&watcher] {
        return qdbus_cast<StatusNotifierPixmaps>(watcher.property(QStringLiteral("IconPixmap")));
    };
    const QByteArray first = icons().at(0).bytes;
    item.setText(QStringLiteral("61 °C"), QStringLiteral("61°"));
    EXPECT_NE(icons().at(0).bytes, first);
    const int before = drawn;
    item.setText(QStringLiteral("2 400 tr/min · 51 °C"), QStringLiteral("51°"));
    EXPECT_EQ(drawn, before);
    EXPECT_EQ(icons().at(0).bytes, first);
    EXPECT_EQ(watcher.property(QStringLiteral("Title")).toString(), QStringLiteral("2 400 tr/min · 51 °C"));
}

TEST(StatusNotifierItem, TellsTheHostOfATextSeldomWhileTheIconStays) {
    StatusNotifierItem item(PrivateBus::connect(), std::chrono::hours(1));
    QSignalSpy told(&item, &StatusNotifierItem::NewToolTip);
    QSignalSpy named(&item, &StatusNotifierItem::NewTitle);
    item.setText(QStringLiteral("2 400 tr/min"));
    EXPECT_EQ(told.count(), 1);
    item.setText(QStringLiteral("2 401 tr/min"));
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(item.title(), QStringLiteral("2 401 tr/min")); // for whoever asks
    item.setIcons({statusIcon(drawSquare, QStringLiteral("63°"), 22, true)});
    item.setText(QStringLiteral("2 402 tr/min"));
    EXPECT_EQ(told.count(), 2);
    EXPECT_EQ(named.count(), 2);
}

TEST(StatusNotifierItem, TellsTheHostAgainAfterThePause) {
    StatusNotifierItem item(PrivateBus::connect(), std::chrono::milliseconds(0));
    QSignalSpy told(&item, &StatusNotifierItem::NewToolTip);
    QSignalSpy named(&item, &StatusNotifierItem::NewTitle);
    item.setText(QStringLiteral("2 400 tr/min"));
    item.setText(QStringLiteral("2 401 tr/min"));
    item.setText(QStringLiteral("2 401 tr/min"));
    EXPECT_EQ(told.count(), 2);
    EXPECT_EQ(named.count(), 1) << "one word for one change";
}

TEST(StatusItem, TellsWhereItWasClicked) {
    FakeWatcher watcher;
    const auto item = makeItem();
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return watcher.items.size() == 1; }));
    QSignalSpy activated(item.get(), &StatusItem::activated);
    watcher.activate(300, 10);
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.at(0).at(0).toRect().topLeft(), QPoint(300, 10));
}

TEST(StatusIcon, HasTheTextUnderASmallerSymbol) {
    const QImage alone = statusIcon(drawSquare, {}, 44, true);
    const QImage both = statusIcon(drawSquare, QStringLiteral("63°"), 44, true);
    EXPECT_EQ(alone.size(), QSize(44, 44));
    EXPECT_EQ(both.size(), QSize(44, 44));
    // Opaque points in the lowest part of the symbol's place, and in that of the text.
    const auto ink = [](const QImage& image, const QRect& place) {
        int points = 0;
        for (int y = place.top(); y <= place.bottom(); ++y) {
            for (int x = place.left(); x <= place.right(); ++x)
                points += image.pixelColor(x, y).alpha() == 255 ? 1 : 0;
        }
        return points;
    };
    const QRect text(2, 26, 40, 16);
    const QRect symbol(16, 4, 12, 16);
    EXPECT_GT(ink(both, text), 40);
    EXPECT_EQ(ink(both, symbol), 12 * 16);
    EXPECT_LT(ink(alone, symbol), 12 * 16);
}

TEST(StatusIcon, AsATemplateIsBlackWithAMarginAndNothingElse) {
    const QImage image = templateSymbol(drawSquare, 2);
    EXPECT_EQ(image.size(), QSize(36, 36));
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(18, 18));
    EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
    EXPECT_EQ(image.pixelColor(18, 18), QColor(Qt::black));
}

TEST(StatusIcon, IsWhiteOnDarkAndDarkOnLight) {
    const auto middle = [](bool onDark) { return statusIcon(drawSquare, {}, 22, onDark).pixelColor(11, 11); };
    EXPECT_EQ(middle(true), QColor(Qt::white));
    EXPECT_LT(middle(false).lightness(), 64);
}

} // namespace
