// The cards of the fans: how many stand beside each other, how wide and how high they are.

#include "Stage.h"

#include <QQuickItem>

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>

namespace {

FanSetting settingOf(FanModeKind mode) {
    FanSetting setting;
    setting.mode = mode;
    return setting;
}

// The cards of the page of fans in a window of that width, in their order.
QList<QRect> cards(Stage& stage, int width) {
    const QSize size(width, 2400);
    stage.window().resize(size);
    EXPECT_TRUE(MonitorHarness::waitUntil([&] { return stage.window().contentItem()->size() == size; }));
    static_cast<void>(stage.window().grabWindow()); // lays everything out
    QList<QRect> places;
    for (const QAccessibleInterface* group : stage.all(QAccessible::Grouping)) {
        if (group->text(QAccessible::Name).startsWith(QStringLiteral("Ventilateur")))
            places.append(group->rect());
    }
    return places;
}

// Of the window's width the sidebar and the page's edges take so much.
constexpr int besideCards = 208 + 2 * 18;

TEST(FanGrid, HasAColumnMoreWhereItHasRoomForIt) {
    Stage stage;
    stage.world.smc.addOlderFans(4);
    stage.showPage(Page::fans);
    for (const auto& [width, columns] :
         {std::pair(715, 1), std::pair(716, 2), std::pair(1094, 2), std::pair(1095, 3), std::pair(1600, 3)}) {
        const QList<QRect> places = cards(stage, width + besideCards);
        ASSERT_EQ(places.size(), 4);
        EXPECT_EQ(std::count_if(places.begin(), places.end(),
                                [&](const QRect& place) { return place.top() == places.first().top(); }),
                  columns)
            << width;
        EXPECT_NEAR(places.first().width(), (width - (columns - 1) * 18) / columns, 1) << width;
        EXPECT_EQ(places.last().top() - places.first().top(),
                  (columns == 1 ? 3 : 1) * (places.first().height() + 18));
    }
}

TEST(FanGrid, EndsAtThePagesEdgeWhateverDoesNotDivide) {
    Stage stage;
    stage.world.smc.addOlderFans(3);
    stage.showPage(Page::fans);
    for (const int width : {1096, 1097, 1098, 1099, 1100, 1101}) {
        const QList<QRect> places = cards(stage, width + besideCards);
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
    EXPECT_EQ(cards(stage, 1700).first().width(), (1700 - besideCards - 18) / 2);
}

TEST(FanGrid, MakesTheCardsOfARowEquallyHigh) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(1, settingOf(FanModeKind::sensor));
    stage.showPage(Page::fans);
    const QList<QRect> places = cards(stage, 1040);
    ASSERT_EQ(places.size(), 2);
    EXPECT_EQ(places.at(0).height(), 481); // of a card that follows a sensor
    EXPECT_EQ(places.at(1).height(), 481);
    stage.monitor().setSetting(1, settingOf(FanModeKind::constant));
    EXPECT_EQ(cards(stage, 1040).at(0).height(), 295);
    stage.monitor().setSetting(1, FanSetting());
    EXPECT_EQ(cards(stage, 1040).at(0).height(), 237);
}

} // namespace
