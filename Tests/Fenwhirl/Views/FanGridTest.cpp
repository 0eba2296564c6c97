// The grid of the fans' cards: the number of columns, and the width and height of the cards.

#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QQuickItem>

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>

namespace Fenwhirl {

namespace {

FanSetting settingOf(FanModeKind mode) {
    FanSetting setting;
    setting.mode = mode;
    return setting;
}

// The cards of the fans page, in order, with the window at this width.
QList<QRect> cards(Stage& stage, int width) {
    const QSize size(width, 2400);
    stage.window().resize(size);
    EXPECT_TRUE(waitUntil([&] { return stage.window().contentItem()->size() == size; }));
    static_cast<void>(stage.window().grabWindow()); // forces a layout
    QList<QRect> places;
    for (const QAccessibleInterface* group : stage.all(QAccessible::Grouping)) {
        if (group->text(QAccessible::Name).startsWith(QStringLiteral("Ventilateur"))) {
            places.append(group->rect());
        }
    }
    return places;
}

// The width that the sidebar and the page's margins take from the window.
constexpr int widthOutsideCards = 208 + 2 * 18;
// The same in narrow windows.
constexpr int narrowWidthOutsideCards = 184 + 2 * 18;

int columnsOf(const QList<QRect>& places) {
    return static_cast<int>(std::count_if(places.begin(), places.end(), [&](const QRect& place) {
        return place.top() == places.first().top();
    }));
}

TEST(FanGrid, HasAColumnMoreWhereItHasRoomForIt) {
    Stage stage;
    stage.world.smc.addOlderFans(10);
    stage.showPage(Page::fans);
    // A column needs at least 340 points, and 18 lie between two columns.
    for (const auto& [width, columns] :
         {std::pair(698, 2), std::pair(1055, 2), std::pair(1056, 3), std::pair(1413, 3), std::pair(1414, 4),
          std::pair(1771, 4), std::pair(1772, 5), std::pair(1884, 5)}) {
        // In windows of 944 and more, the sidebar is 24 wider.
        const QList<QRect> places =
            cards(stage, width + (width < 700 ? narrowWidthOutsideCards : widthOutsideCards));
        ASSERT_EQ(places.size(), 10);
        EXPECT_EQ(columnsOf(places), columns) << width;
        EXPECT_NEAR(places.first().width(), (width - (columns - 1) * 18) / columns, 1) << width;
        EXPECT_GE(places.first().width(), 340) << width;
    }
    EXPECT_EQ(columnsOf(cards(stage, 697 + narrowWidthOutsideCards)), 1);
}

TEST(FanGrid, ComesOutEven) {
    for (const auto& [fans, columns] :
         {std::pair(2, 2), std::pair(3, 3), std::pair(4, 4), std::pair(5, 5), std::pair(6, 3),
          std::pair(7, 4), std::pair(8, 4), std::pair(10, 5)}) {
        Stage stage;
        stage.world.smc.addOlderFans(fans);
        stage.showPage(Page::fans);
        const QList<QRect> places = cards(stage, 2560);
        ASSERT_EQ(places.size(), fans);
        EXPECT_EQ(columnsOf(places), columns) << fans;
        EXPECT_NEAR(places.first().width(), (1884.0 - (columns - 1) * 18) / columns, 1) << fans;
    }
}

TEST(FanGrid, EndsAtThePagesEdgeWhateverDoesNotDivide) {
    Stage stage;
    stage.world.smc.addOlderFans(3);
    stage.showPage(Page::fans);
    for (const int width : {1056, 1057, 1058, 1059, 1060, 1061}) {
        const QList<QRect> places = cards(stage, width + widthOutsideCards);
        ASSERT_EQ(places.size(), 3);
        EXPECT_EQ(places.at(2).right() - places.at(0).left() + 1, width);
        EXPECT_EQ(places.at(1).left() - places.at(0).right() - 1, 18) << width;
        EXPECT_EQ(places.at(2).left() - places.at(1).right() - 1, 18) << width;
    }
}

TEST(FanGrid, KeepsOneColumnsWidthForASingleFan) {
    Stage stage;
    stage.world.smc.setNumber("FNum", "ui8 ", 1);
    stage.showPage(Page::fans);
    ASSERT_EQ(cards(stage, 1040).size(), 1);
    EXPECT_EQ(cards(stage, 1040).first().width(), 389);
    EXPECT_EQ(cards(stage, 1700).first().width(), (1700 - widthOutsideCards - 18) / 2);
}

TEST(FanGrid, MakesTheCardsOfARowEquallyHigh) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(1, settingOf(FanModeKind::sensor));
    stage.showPage(Page::fans);
    const QList<QRect> places = cards(stage, 1040);
    ASSERT_EQ(places.size(), 2);
    EXPECT_EQ(places.at(0).height(), 481); // the height of a card that follows a sensor
    EXPECT_EQ(places.at(1).height(), 481);
    stage.monitor().setSetting(1, settingOf(FanModeKind::constant));
    EXPECT_EQ(cards(stage, 1040).at(0).height(), 295);
    stage.monitor().setSetting(1, FanSetting());
    EXPECT_EQ(cards(stage, 1040).at(0).height(), 237);
}

} // namespace

} // namespace Fenwhirl
