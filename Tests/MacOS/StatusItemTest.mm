#include "Fenwhirl/Platform/Desktop/StatusItem.h"

#import "MacTest.h"

#include <QCoreApplication>
#include <QImage>
#include <QPainter>

namespace Fenwhirl {

using StatusItemTest = MacTest;
using testing::ElementsAre;

namespace {

void paint(QPainter& painter, const QRectF& bounds, const QColor& color) {
    painter.fillRect(bounds, color);
}

std::unique_ptr<StatusItem> make() {
    return beforeTheEventLoop([] { return StatusItem::create(paint); });
}

NSWindow* itemWindow() {
    return FakeMac::statusItems().at(0).button.window;
}

void choose(NSMenuItem* item) {
    FakeMac::sendAction(item.action, item.target, item);
}

} // namespace

TEST_F(StatusItemTest, IsATemplateSymbolBesideATextOfFixedWidth) {
    const auto item = make();
    ASSERT_EQ(FakeMac::statusItems().size(), 1U);
    NSStatusItem* native = FakeMac::statusItems()[0];
    EXPECT_EQ(native.length, NSVariableStatusItemLength);
    EXPECT_EQ(QString::fromNSString(native.button.image.symbolName), QStringLiteral("fan"));
    EXPECT_TRUE([native.button.image isTemplate]);
    EXPECT_EQ(native.button.imagePosition, NSImageLeft);
    EXPECT_TRUE(native.button.font.hasFixedDigits);
    EXPECT_EQ(native.button.font.pointSize, 14);
    EXPECT_EQ(native.button.font.weight, NSFontWeightRegular);
    beforeTheEventLoop([&] { item->setText(QStringLiteral("2 400 tr/min · 63 °C"), QStringLiteral("63°")); });
    EXPECT_EQ(QString::fromNSString(native.button.title), QStringLiteral("2 400 tr/min · 63 °C"));
}

TEST_F(StatusItemTest, UsesOurDrawingWhenTheSystemHasNoFanSymbol) {
    FakeMac::settings().symbols = {};
    const auto item = make();
    NSImage* image = FakeMac::statusItems().at(0).button.image;
    ASSERT_NE(image, nil);
    EXPECT_TRUE([image isTemplate]);
    EXPECT_EQ(image.size.width, 18);
    EXPECT_EQ(image.size.height, 18);
    const QImage drawing =
        QImage::fromData(static_cast<const uchar*>(image.data.bytes), static_cast<int>(image.data.length));
    EXPECT_EQ(drawing.size(), QSize(36, 36));
}

TEST_F(StatusItemTest, IsRemovedWithItsOwner) {
    auto item = make();
    beforeTheEventLoop([&] { item.reset(); });
    EXPECT_TRUE(FakeMac::statusItems().empty());
    EXPECT_THAT(FakeMac::journal(), ElementsAre("-[NSStatusBar removeStatusItem:]"));
}

TEST_F(StatusItemTest, ReportsItsPositionFromTheTopOfTheFirstScreen) {
    FakeMac::settings().screens = {NSRect{{0, 0}, {1440, 900}}, NSRect{{1440, -180}, {1920, 1080}}};
    const auto item = make();
    NSStatusBarButton* button = FakeMac::statusItems().at(0).button;
    std::vector<QRect> places;
    QObject::connect(item.get(), &StatusItem::activated,
                     [&](const QRect& place) { places.push_back(place); });
    FakeMac::sendAction(button.action, button.target, button);
    button.window.frame = NSRect{{3000, 876}, {60, 24}}; // on the second screen
    FakeMac::sendAction(button.action, button.target, button);
    EXPECT_THAT(places, ElementsAre(QRect(1000, 0, 60, 24), QRect(3000, 0, 60, 24)));
}

TEST_F(StatusItemTest, HasNoTargetLeftWhenItIsGone) {
    auto item = make();
    NSStatusItem* native = FakeMac::statusItems().at(0);
    NSStatusBarButton* button = native.button;
    ASSERT_NE(button.target, nil);
    item.reset();
    @autoreleasepool {
    }
    // The action of a click that was still in the event queue.
    FakeMac::sendAction(button.action, button.target, button);
}

TEST_F(StatusItemTest, IsQuietWithoutAButton) {
    FakeMac::settings().hasStatusButton = false;
    const auto item = make();
    EXPECT_FALSE(item->isPlaced());
    item->setText(QStringLiteral("63 °C"), {});
    EXPECT_EQ(FakeMac::statusItems().size(), 1U);
}

TEST_F(StatusItemTest, IsMarkedWhileThePanelIsOpen) {
    const auto item = make();
    NSStatusBarButton* button = FakeMac::statusItems().at(0).button;
    item->setOpen(true);
    EXPECT_FALSE(button.isHighlighted) << "the click is not over yet";
    QCoreApplication::processEvents();
    EXPECT_TRUE(button.isHighlighted);
    item->setOpen(false);
    beforeTheEventLoop([] { QCoreApplication::processEvents(); });
    EXPECT_FALSE(button.isHighlighted);
}

TEST_F(StatusItemTest, IsPlacedWhereItCanBeSeen) {
    const auto item = make();
    NSStatusItem* native = FakeMac::statusItems().at(0);
    EXPECT_TRUE(beforeTheEventLoop([&] { return item->isPlaced(); }));
    native.button.window.occlusionState = 0; // behind the notch
    EXPECT_FALSE(item->isPlaced());
    native.button.window.occlusionState = NSWindowOcclusionStateVisible;
    native.visible = NO; // removed from the menu bar by the user
    EXPECT_FALSE(item->isPlaced());
    native.visible = YES;
    native.button.window = nil;
    EXPECT_FALSE(item->isPlaced());
}

TEST_F(StatusItemTest, ARightClickOpensTheMenuBelowIt) {
    const auto item = make();
    std::vector<QString> chosen;
    const auto entry = [&](const QString& text, std::optional<bool> isCurrent = {}) {
        return StatusMenuEntry{text, [&chosen, text] { chosen.push_back(text); }, isCurrent};
    };
    beforeTheEventLoop([&] {
        item->setMenu({entry(QStringLiteral("Silencieux"), true),
                       entry(QStringLiteral("Max"), false),
                       {},
                       entry(QStringLiteral("Ouvrir Fenwhirl")),
                       entry(QStringLiteral("Quitter"))});
    });
    int timesOpened = 0;
    FakeMac::settings().whileMenuIsOpen = [&](NSMenu* menu, NSPoint corner) {
        ++timesOpened;
        EXPECT_EQ(corner.x, 1000);
        EXPECT_EQ(corner.y, 876); // the item's lower edge, measured from the bottom of the screen
        EXPECT_TRUE(FakeMac::statusItems().at(0).button.isHighlighted);
        NSArray<NSMenuItem*>* items = menu.itemArray;
        ASSERT_EQ(items.count, 5U);
        EXPECT_EQ(QString::fromNSString(items[0].title), QStringLiteral("Silencieux"));
        EXPECT_EQ(items[0].state, NSControlStateValueOn);
        EXPECT_EQ(items[1].state, NSControlStateValueOff);
        EXPECT_TRUE(items[2].isSeparatorItem);
        EXPECT_EQ(items[3].state, NSControlStateValueOff);
        item->setMenu({entry(QStringLiteral("Beenden"))}); // the language changes while the menu is open
        choose(items[1]);
        choose(items[4]);
    };
    bool clicked = false;
    QObject::connect(item.get(), &StatusItem::activated, [&] { clicked = true; });
    EXPECT_FALSE(FakeMac::pressIn(itemWindow(), NSEventMaskRightMouseDown)) << "the press is used";
    EXPECT_THAT(chosen, ElementsAre(QStringLiteral("Max"), QStringLiteral("Quitter")));
    EXPECT_FALSE(FakeMac::statusItems().at(0).button.isHighlighted);
    EXPECT_FALSE(clicked);
    FakeMac::settings().whileMenuIsOpen = [&](NSMenu* menu, NSPoint) {
        ++timesOpened;
        ASSERT_EQ(menu.itemArray.count, 1U);
        EXPECT_EQ(QString::fromNSString(menu.itemArray[0].title), QStringLiteral("Beenden"));
    };
    EXPECT_FALSE(FakeMac::pressIn(itemWindow(), NSEventMaskLeftMouseDown, NSEventModifierFlagControl));
    EXPECT_EQ(timesOpened, 2);
}

TEST_F(StatusItemTest, OtherPressesOpenNoMenu) {
    const auto item = make();
    FakeMac::settings().whileMenuIsOpen = [](NSMenu*, NSPoint) { ADD_FAILURE() << "a menu opened"; };
    EXPECT_TRUE(FakeMac::pressIn(itemWindow(), NSEventMaskRightMouseDown)) << "there are no entries yet";
    item->setMenu({{.text = QStringLiteral("Quitter"), .choose = [] {}}});
    EXPECT_TRUE(FakeMac::pressIn(itemWindow()));
    EXPECT_TRUE(FakeMac::pressIn(itemWindow(), NSEventMaskLeftMouseDown, NSEventModifierFlagCommand));
    NSWindow* other = [[NSWindow alloc] init];
    EXPECT_TRUE(FakeMac::pressIn(other, NSEventMaskRightMouseDown));
    EXPECT_TRUE(FakeMac::pressIn(nil, NSEventMaskRightMouseDown));
    FakeMac::statusItems().at(0).button.window = nil; // removed from the menu bar
    EXPECT_TRUE(FakeMac::pressIn(nil, NSEventMaskRightMouseDown));
}

TEST_F(StatusItemTest, TheMenuClosesAnOpenPanelFirst) {
    const auto item = make();
    item->setMenu({{.text = QStringLiteral("Quitter"), .choose = [] {}}});
    std::vector<std::string> order;
    QObject::connect(item.get(), &StatusItem::activated, [&] {
        order.emplace_back("panel");
        item->setOpen(false);
    });
    FakeMac::settings().whileMenuIsOpen = [&](NSMenu*, NSPoint) { order.emplace_back("menu"); };
    item->setOpen(true);
    FakeMac::pressIn(itemWindow(), NSEventMaskRightMouseDown);
    EXPECT_THAT(order, ElementsAre("panel", "menu"));
    beforeTheEventLoop([] { QCoreApplication::processEvents(); });
}

TEST_F(StatusItemTest, AChoiceThatComesTooLateReachesNothing) {
    auto item = make();
    bool chosen = false;
    item->setMenu({{.text = QStringLiteral("Quitter"), .choose = [&] { chosen = true; }}});
    NSMenu* menu = nil;
    FakeMac::settings().whileMenuIsOpen = [&](NSMenu* shown, NSPoint) { menu = shown; };
    FakeMac::pressIn(itemWindow(), NSEventMaskRightMouseDown);
    NSMenuItem* late = menu.itemArray[0];
    id target = late.target;
    ASSERT_NE(target, nil);
    beforeTheEventLoop([&] { item.reset(); });
    EXPECT_EQ(FakeMac::eventMonitors(), 0U);
    FakeMac::sendAction(late.action, target, late);
    EXPECT_FALSE(chosen);
}

TEST_F(StatusItemTest, LivesWithoutAMonitorOfPresses) {
    FakeMac::settings().makesMonitors = false;
    const auto item = make();
    EXPECT_EQ(FakeMac::statusItems().size(), 1U);
}

} // namespace Fenwhirl
