#include "Fenwhirl/Platform/Desktop/StatusItemLinux.h"
#include "Fenwhirl/Platform/Desktop/SystemAppearanceLinux.h"
#include "PrivateBus.h"
#include "Support/WaitUntil.h"

#include <QCursor>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVirtualObject>
#include <QPainter>
#include <QSignalSpy>

#include <array>
#include <gtest/gtest.h>
#include <sys/prctl.h>

namespace Fenwhirl {

namespace {

// During its lifetime this process goes by another program's name.
class Disguise {
public:
    explicit Disguise(const char* name) {
        prctl(PR_GET_NAME, own_.data());
        prctl(PR_SET_NAME, name);
    }

    ~Disguise() { prctl(PR_SET_NAME, own_.data()); }

    Disguise(const Disguise&) = delete;
    Disguise& operator=(const Disguise&) = delete;

private:
    std::array<char, 16> own_{};
};

// A desktop's watcher: it knows whether a host is present and which items are registered.
class FakeWatcher : public QDBusVirtualObject {
public:
    bool hasHost = true;
    QStringList items;

    FakeWatcher() : bus_(PrivateBus::connect()) {
        bus_.registerVirtualObject(StatusNotifierHost::watcherPath(), this);
        bus_.interface()->registerService(StatusNotifierHost::watcherService(),
                                          QDBusConnectionInterface::ReplaceExistingService,
                                          QDBusConnectionInterface::AllowReplacement);
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
        if (message.member() == QStringLiteral("Get")) {
            connection.send(message.createReply(QVariant::fromValue(QDBusVariant(hasHost))));
        } else if (message.member() == QStringLiteral("RegisterStatusNotifierItem")) {
            items.append(message.arguments().value(0).toString());
        }
        return true;
    }

    // A property of the newest item, as a host would read it.
    [[nodiscard]] QVariant property(const QString& name) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            items.last(), QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        call << QStringLiteral("org.kde.StatusNotifierItem") << name;
        const QDBusPendingReply<QDBusVariant> reply = asyncReply(call);
        return reply.value().variant();
    }

    // All properties of the newest item, read at once.
    [[nodiscard]] QVariantMap properties() {
        QDBusMessage call = QDBusMessage::createMethodCall(
            items.last(), QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
        call << QStringLiteral("org.kde.StatusNotifierItem");
        const QDBusPendingReply<QVariantMap> reply = asyncReply(call);
        return reply.value();
    }

    // Calls a method of the newest item's menu and returns the answer.
    QVariantList askMenu(const QString& method, const QVariantList& arguments) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            items.last(), qvariant_cast<QDBusObjectPath>(property(QStringLiteral("Menu"))).path(),
            QStringLiteral("com.canonical.dbusmenu"), method);
        call.setArguments(arguments);
        return asyncReply(call).reply().arguments();
    }

    void choose(int id) {
        static_cast<void>(askMenu(QStringLiteral("Event"),
                                  {id, QStringLiteral("clicked"),
                                   QVariant::fromValue(QDBusVariant(QString())), QVariant::fromValue(0U)}));
    }

    // Activates the newest item and returns the reply.
    QDBusMessage activate(int x, int y) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            items.last(), QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.kde.StatusNotifierItem"),
            QStringLiteral("Activate"));
        call << x << y;
        return finished(call).reply();
    }

    // Whether no menu answers at this path.
    bool refuses(const QString& path) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            items.last(), path, QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("AboutToShow"));
        call << 0;
        return finished(call).isError();
    }

private:
    QDBusPendingCall finished(const QDBusMessage& call) {
        QDBusPendingCall pending = bus_.asyncCall(call);
        EXPECT_TRUE(waitUntil([&] { return pending.isFinished(); }));
        return pending;
    }

    QDBusPendingCall asyncReply(const QDBusMessage& call) {
        QDBusPendingCall pending = finished(call);
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
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
    EXPECT_TRUE(item->isPlaced());
}

TEST(StatusItem, AppearsOnlyWhenItMayIfItWasPostponed) {
    FakeWatcher watcher;
    int drawn = 0;
    const SymbolPainter count = [&drawn](QPainter&, const QRectF&, const QColor&) { ++drawn; };
    StatusItemLinux item(count, PrivateBus::connect(),
                         std::make_unique<SystemAppearanceLinux>(PrivateBus::connect()));
    item.postpone();
    item.setText(QStringLiteral("63 °C"), QStringLiteral("63°"));
    StatusItemLinux other(drawSquare, PrivateBus::connect(),
                          std::make_unique<SystemAppearanceLinux>(PrivateBus::connect()));
    ASSERT_TRUE(waitUntil([&] { return !watcher.items.isEmpty(); })); // the other, which asked later
    EXPECT_EQ(watcher.items.size(), 1);
    EXPECT_FALSE(item.isPlaced());
    EXPECT_EQ(drawn, 0);
    item.appear();
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 2; }));
    EXPECT_TRUE(item.isPlaced());
    EXPECT_GT(drawn, 0);
}

TEST(StatusItem, WaitsForAHostThatComesLate) {
    FakeWatcher watcher;
    watcher.hasHost = false;
    const auto item = makeItem();
    QSignalSpy placed(item.get(), &StatusItem::placedChanged);
    ASSERT_TRUE(waitUntil([&] { return !placed.isEmpty(); }));
    EXPECT_FALSE(item->isPlaced());
    EXPECT_TRUE(watcher.items.isEmpty());
    watcher.setHost(true);
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
    EXPECT_TRUE(item->isPlaced());
}

TEST(StatusItem, IsAnnouncedAnewWhenTheHostWasLostAndCameBack) {
    FakeWatcher watcher;
    const auto item = makeItem();
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
    watcher.setHost(false);
    ASSERT_TRUE(waitUntil([&] { return !item->isPlaced(); }));
    watcher.setHost(true);
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 2; }));
    EXPECT_TRUE(item->isPlaced());
}

TEST(StatusItem, FollowsAWatcherThatStartsLater) {
    const auto item = makeItem();
    QSignalSpy placed(item.get(), &StatusItem::placedChanged);
    ASSERT_TRUE(waitUntil([&] { return !placed.isEmpty(); }));
    EXPECT_FALSE(item->isPlaced());
    FakeWatcher watcher;
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
}

TEST(StatusItem, IsAnnouncedAnewToAWatcherThatTookOver) {
    FakeWatcher first;
    const auto item = makeItem();
    ASSERT_TRUE(waitUntil([&] { return first.items.size() == 1; }));
    FakeWatcher second;
    ASSERT_TRUE(waitUntil([&] { return second.items.size() == 1; }));
    EXPECT_TRUE(item->isPlaced());
}

const QString wholeText = QStringLiteral("2 400 tr/min · 63 °C");
const QString temperature = QStringLiteral("63°");

// An item with a text under a host. A `Disguise` makes this process pass for a certain host.
class StatusItemOnHost : public testing::Test {
protected:
    FakeWatcher watcher;
    std::unique_ptr<StatusItemLinux> item;

    void show() {
        item = makeItem();
        item->setText(wholeText, temperature);
        ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
    }

    // Whether the item has a label property at all, which some hosts cannot handle.
    [[nodiscard]] bool hasLabel() { return watcher.properties().contains(QStringLiteral("XAyatanaLabel")); }

    [[nodiscard]] QString text(const char* property) {
        return watcher.property(QString::fromLatin1(property)).toString();
    }

    [[nodiscard]] StatusNotifierPixmaps icons() {
        return qdbus_cast<StatusNotifierPixmaps>(watcher.property(QStringLiteral("IconPixmap")));
    }

    [[nodiscard]] QString menu() {
        return watcher.property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
    }
};

TEST_F(StatusItemOnHost, AnyHostSaysItsWholeTextAndHasTheTemperatureInASquare) {
    show();
    EXPECT_EQ(text("Title"), wholeText);
    EXPECT_EQ(text("IconAccessibleDesc"), wholeText);
    EXPECT_EQ(text("Status"), QStringLiteral("Active"));
    EXPECT_FALSE(hasLabel()) << "it would be there twice";
    EXPECT_TRUE(watcher.items.last().startsWith(QStringLiteral("org.kde.StatusNotifierItem-")));
    const auto tip = qdbus_cast<StatusNotifierToolTip>(watcher.property(QStringLiteral("ToolTip")));
    EXPECT_EQ(tip.title, wholeText);
    const StatusNotifierPixmaps pixmaps = icons();
    ASSERT_EQ(pixmaps.size(), 5);
    EXPECT_EQ(pixmaps.at(0).height, 22);
    EXPECT_EQ(pixmaps.at(4).height, 48);
    for (const StatusNotifierPixmap& icon : pixmaps) {
        EXPECT_EQ(icon.width, icon.height); // panels squeeze wider icons
        EXPECT_EQ(icon.bytes.size(), 4 * icon.width * icon.height);
    }
    const QByteArray before = pixmaps.at(0).bytes;
    item->setText(wholeText, QStringLiteral("64°"));
    EXPECT_NE(icons().at(0).bytes, before);
    EXPECT_EQ(menu(), QStringLiteral("/NO_DBUSMENU"));
    EXPECT_EQ(watcher.property(QStringLiteral("WindowId")).metaType(), QMetaType::fromType<int>());
    EXPECT_EQ(watcher.activate(300, 10).type(), QDBusMessage::ReplyMessage);
}

TEST_F(StatusItemOnHost, WaybarAndMateHaveTheTemperatureInAnIconAsWideAsItNeeds) {
    for (const char* program : {"waybar", "notification-area-applet"}) {
        const Disguise disguise(program);
        watcher.items.clear();
        show();
        for (const StatusNotifierPixmap& icon : icons()) {
            EXPECT_GT(icon.width, icon.height * 2) << program;
            EXPECT_EQ(icon.bytes.size(), 4 * icon.width * icon.height);
        }
        EXPECT_FALSE(hasLabel()) << program;
    }
}

TEST_F(StatusItemOnHost, GnomeHasTheWholeTextAsALabelBesideTheSymbolAlone) {
    const Disguise disguise("gnome-shell");
    show();
    EXPECT_TRUE(hasLabel());
    EXPECT_EQ(text("XAyatanaLabel"), wholeText);
    EXPECT_EQ(text("XAyatanaLabelGuide"), wholeText);
    EXPECT_TRUE(watcher.items.last().startsWith(u':')) << "the connection's own name";
    const StatusNotifierPixmaps pixmaps = icons();
    ASSERT_FALSE(pixmaps.isEmpty());
    EXPECT_EQ(pixmaps.at(0).width, 22);
    item->setText(wholeText, QStringLiteral("64°"));
    EXPECT_EQ(icons().at(0).bytes, pixmaps.at(0).bytes) << "no temperature is in it";
    // GNOME's bar is dark even while windows are light, so the symbol's first opaque pixel is white.
    const QByteArray& bytes = pixmaps.at(0).bytes;
    const int middle = 4 * (7 * 22 + 7);
    EXPECT_EQ(bytes.mid(middle, 4), QByteArray("\xff\xff\xff\xff"));
}

TEST_F(StatusItemOnHost, GnomeFindsAMenuAndActivationFails) {
    const Disguise disguise("gnome-shell");
    show();
    EXPECT_EQ(menu(), QStringLiteral("/StatusNotifierItem/Menu"));
    QSignalSpy activated(item.get(), &StatusItem::activated);
    const QDBusMessage answer = watcher.activate(300, 10);
    EXPECT_EQ(answer.type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(answer.errorName().contains(QStringLiteral("g_2dio_2derror_2dquark.Code19")));
    EXPECT_EQ(activated.count(), 1) << "but it is heard";
}

TEST_F(StatusItemOnHost, AnotherHostLooksAnew) {
    show();
    const Disguise disguise("waybar");
    FakeWatcher second;
    ASSERT_TRUE(waitUntil([&] { return second.items.size() == 1; }));
    const auto now = qdbus_cast<StatusNotifierPixmaps>(second.property(QStringLiteral("IconPixmap")));
    EXPECT_GT(now.at(0).width, now.at(0).height);
}

TEST(StatusItem, DrawsATemperatureThatComesAgainOnlyOnce) {
    FakeWatcher watcher;
    int drawn = 0;
    const auto count = [&drawn](QPainter&, const QRectF&, const QColor&) { ++drawn; };
    StatusItemLinux item(count, PrivateBus::connect(),
                         std::make_unique<SystemAppearanceLinux>(PrivateBus::connect()));
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
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
    StatusNotifierItem item(PrivateBus::connect(), {}, std::chrono::hours(1));
    QSignalSpy labelled(&item, &StatusNotifierItem::XAyatanaNewLabel);
    QSignalSpy told(&item, &StatusNotifierItem::NewToolTip);
    QSignalSpy named(&item, &StatusNotifierItem::NewTitle);
    item.setText(QStringLiteral("2 400 tr/min"));
    EXPECT_EQ(told.count(), 1);
    item.setText(QStringLiteral("2 401 tr/min"));
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(item.title(), QStringLiteral("2 401 tr/min")); // for a host that reads the property
    item.setIcons({statusIcon(drawSquare, temperature, 22, true, StatusIconShape::square)});
    item.setText(QStringLiteral("2 402 tr/min"));
    EXPECT_EQ(told.count(), 2);
    EXPECT_EQ(named.count(), 2);
    EXPECT_EQ(labelled.count(), 0);
}

TEST(StatusNotifierItem, HasAQuietTextAndTellsItsHostWithTheNextOne) {
    StatusNotifierItem item(PrivateBus::connect(), {}, std::chrono::milliseconds(0));
    QSignalSpy told(&item, &StatusNotifierItem::NewToolTip);
    item.setText(QStringLiteral("2 400 tr/min"));
    item.setTextQuietly(QStringLiteral("2 401 tr/min"));
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(item.title(), QStringLiteral("2 401 tr/min"));
    EXPECT_EQ(item.toolTip().title, QStringLiteral("2 401 tr/min"));
    item.setText(QStringLiteral("2 401 tr/min"));
    EXPECT_EQ(told.count(), 2);
}

TEST_F(StatusItemOnHost, AHostThatAsksReadsASlightlyDifferentTextToo) {
    show();
    const QString other = QStringLiteral("2 401 tr/min · 63 °C");
    item->setText(other, temperature, StatusItem::TextChange::slight);
    EXPECT_EQ(text("Title"), other);
    const QByteArray before = icons().at(0).bytes;
    item->setText(wholeText, QStringLiteral("64°"), StatusItem::TextChange::slight);
    EXPECT_NE(icons().at(0).bytes, before) << "another temperature is never slight";
}

TEST(StatusNotifierItem, TellsEachTextAtOnceWhereItIsWrittenIntoTheBar) {
    StatusNotifierItem item(PrivateBus::connect(), {.text = StatusHostQuirks::Text::asLabel},
                            std::chrono::hours(1));
    QSignalSpy labelled(&item, &StatusNotifierItem::XAyatanaNewLabel);
    for (const char* text : {"2 400 tr/min", "2 401 tr/min", "2 401 tr/min"}) {
        item.setText(QString::fromLatin1(text));
    }
    ASSERT_EQ(labelled.count(), 2) << "one word for one change";
    EXPECT_EQ(labelled.at(1).at(0).toString(), QStringLiteral("2 401 tr/min"));
}

TEST(StatusNotifierItem, TellsTheHostAgainAfterThePause) {
    StatusNotifierItem item(PrivateBus::connect(), {}, std::chrono::milliseconds(0));
    QSignalSpy told(&item, &StatusNotifierItem::NewToolTip);
    QSignalSpy named(&item, &StatusNotifierItem::NewTitle);
    item.setText(QStringLiteral("2 400 tr/min"));
    item.setText(QStringLiteral("2 401 tr/min"));
    item.setText(QStringLiteral("2 401 tr/min"));
    EXPECT_EQ(told.count(), 2);
    EXPECT_EQ(named.count(), 1) << "one word for one change";
}

// A menu of two choices, a separator and an action, which records what is chosen.
StatusMenu threeChoices(QStringList& chosen) {
    const auto note = [&chosen](const char* name) {
        return [&chosen, name] { chosen.append(QString::fromLatin1(name)); };
    };
    return {{.text = QStringLiteral("Auto"), .choose = note("auto"), .isCurrent = false},
            {.text = QStringLiteral("Max_1"), .choose = note("max"), .isCurrent = true},
            {},
            {.text = QStringLiteral("Quitter"), .choose = note("quit")}};
}

StatusMenuLayout layoutOf(FakeWatcher& watcher) {
    const QVariantList answer =
        watcher.askMenu(QStringLiteral("GetLayout"), {0, -1, QVariant::fromValue(QStringList())});
    return qdbus_cast<StatusMenuLayout>(answer.value(1).value<QDBusArgument>());
}

TEST(StatusItem, OffersItsMenuToTheHostAndDoesWhatIsChosen) {
    FakeWatcher watcher;
    QStringList chosen;
    const auto item = makeItem();
    item->setMenu(threeChoices(chosen));
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
    EXPECT_FALSE(watcher.property(QStringLiteral("ItemIsMenu")).toBool()); // a click still opens the panel
    const StatusMenuLayout menu = layoutOf(watcher);
    EXPECT_EQ(menu.properties.value(QStringLiteral("children-display")), QStringLiteral("submenu"));
    ASSERT_EQ(menu.children.size(), 4);
    const auto entry = [&menu](qsizetype row) { return menu.children.at(row).properties; };
    EXPECT_EQ(entry(0).value(QStringLiteral("label")), QStringLiteral("Auto"));
    EXPECT_EQ(entry(0).value(QStringLiteral("toggle-type")), QStringLiteral("radio"));
    EXPECT_EQ(entry(0).value(QStringLiteral("toggle-state")), 0);
    EXPECT_EQ(entry(1).value(QStringLiteral("label")), QStringLiteral("Max__1")); // no access key is marked
    EXPECT_EQ(entry(1).value(QStringLiteral("toggle-state")), 1);
    EXPECT_EQ(entry(2), QVariantMap({{QStringLiteral("type"), QStringLiteral("separator")}}));
    EXPECT_EQ(entry(3), QVariantMap({{QStringLiteral("label"), QStringLiteral("Quitter")}}));
    for (const int id : {menu.children.at(3).id, menu.children.at(0).id, menu.children.at(2).id, 0, 99, -1}) {
        watcher.choose(id);
    }
    EXPECT_EQ(chosen, QStringList({QStringLiteral("quit"), QStringLiteral("auto")}));
}

TEST(StatusItem, TellsTheHostOfAnotherMenu) {
    FakeWatcher watcher;
    QStringList chosen;
    const auto item = makeItem();
    item->setMenu(threeChoices(chosen));
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
    const auto revision = [&watcher] {
        return watcher.askMenu(QStringLiteral("GetLayout"), {0, 1, QVariant::fromValue(QStringList())})
            .value(0)
            .toUInt();
    };
    const uint before = revision();
    item->setMenu({{.text = QStringLiteral("Neuf")}});
    EXPECT_GT(revision(), before);
    ASSERT_EQ(layoutOf(watcher).children.size(), 1);
    watcher.choose(1); // an entry without an action
    watcher.choose(4); // an entry that no longer exists
    EXPECT_EQ(chosen, QStringList());
}

TEST(StatusItem, ScrollingOverItDoesNothing) {
    StatusNotifierItem item(PrivateBus::connect());
    QSignalSpy activated(&item, &StatusNotifierItem::activated);
    item.Scroll(120, QStringLiteral("vertical"));
    EXPECT_EQ(activated.count(), 0);
}

TEST_F(StatusItemOnHost, GnomeGetsNoMenuBecauseItWouldOpenItInsteadOfThePanel) {
    const Disguise disguise("gnome-shell");
    show();
    QStringList chosen;
    item->setMenu(threeChoices(chosen));
    const QString path = qvariant_cast<QDBusObjectPath>(watcher.property(QStringLiteral("Menu"))).path();
    EXPECT_EQ(path, QStringLiteral("/StatusNotifierItem/Menu"));
    EXPECT_TRUE(watcher.refuses(path));
}

TEST(StatusItem, TellsWhereItWasClicked) {
    FakeWatcher watcher;
    const auto item = makeItem();
    ASSERT_TRUE(waitUntil([&] { return watcher.items.size() == 1; }));
    QSignalSpy activated(item.get(), &StatusItem::activated);
    watcher.activate(300, 10);
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.at(0).at(0).toRect().topLeft(), QPoint(300, 10));
}

TEST(StatusNotifierItem, HandsTheDesktopsPermissionOnWithTheOneClickItIsFor) {
    StatusNotifierItem item(PrivateBus::connect());
    QSignalSpy activated(&item, &StatusNotifierItem::activated);
    item.ProvideXdgActivationToken(QStringLiteral("permission"));
    item.SecondaryActivate(1, 2);
    item.Activate(1, 2);
    ASSERT_EQ(activated.count(), 2);
    EXPECT_EQ(activated.at(0).at(1).toString(), QStringLiteral("permission"));
    EXPECT_EQ(activated.at(1).at(1).toString(), QString());
}

TEST_F(StatusItemOnHost, MateTellsNoPositionSoThePointersIsUsed) {
    const Disguise disguise("notification-area-applet");
    show();
    QCursor::setPos(500, 7);
    QSignalSpy activated(item.get(), &StatusItem::activated);
    static_cast<void>(watcher.activate(0, 25));
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.at(0).at(0).toRect().topLeft(), QPoint(500, 7));
}

} // namespace

} // namespace Fenwhirl
