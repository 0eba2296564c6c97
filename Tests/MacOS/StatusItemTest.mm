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

} // namespace Fenwhirl
