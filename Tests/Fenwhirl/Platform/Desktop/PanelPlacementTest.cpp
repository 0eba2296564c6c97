#include "Fenwhirl/Platform/Desktop/PanelPlacement.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

const QRect screen(0, 24, 1280, 776);
const QSize panel(340, 500);

TEST(PanelPlacement, HangsUnderAnItemInTheUpperHalfCentredOnIt) {
    EXPECT_EQ(panelPosition(QRect(600, 0, 40, 24), panel, screen), QPoint(600 + 20 - 170, 24 + 8));
}

TEST(PanelPlacement, StandsOnAnItemInTheLowerHalf) {
    EXPECT_EQ(panelPosition(QRect(600, 780, 40, 20), panel, screen), QPoint(450, 780 - 8 - 500));
}

TEST(PanelPlacement, StaysInsideTheScreen) {
    EXPECT_EQ(panelPosition(QRect(1270, 0, 10, 24), panel, screen).x(), 1280 - 340 - 8);
    EXPECT_EQ(panelPosition(QRect(2, 30, 10, 10), panel, screen).x(), 8);
    // A panel taller than the screen shows its top.
    EXPECT_EQ(panelPosition(QRect(600, 780, 40, 20), QSize(340, 2000), screen).y(), 24 + 8);
}

TEST(PanelPlacement, OpensAtAPointWhereOnlyThePointerIsKnown) {
    EXPECT_EQ(panelPosition(QRect(QPoint(700, 40), QSize(0, 0)), panel, screen), QPoint(530, 48));
}

TEST(PanelPlacement, GoesIntoTheCornerWhenNothingIsKnown) {
    EXPECT_EQ(panelPosition(QRect(), panel, screen), QPoint(1280 - 340 - 8, 24 + 8));
}

TEST(PanelPlacement, WorksOnASecondScreen) {
    const QRect second(1280, 0, 1920, 1080);
    EXPECT_EQ(panelPosition(QRect(3190, 1060, 10, 20), panel, second),
              QPoint(1280 + 1920 - 340 - 8, 1060 - 8 - 500));
}

TEST(PanelPlacement, CountsFromTheTopWhereTheSystemCountsFromTheBottom) {
    // A menu bar 24 points high on a screen of 800: its items begin at 776.
    EXPECT_EQ(fromBottomLeftOrigin(QRectF(900, 776, 60, 24), 800), QRect(900, 0, 60, 24));
    // The same on a screen above the first one, and on one to its left whose bottom is lower.
    EXPECT_EQ(fromBottomLeftOrigin(QRectF(100, 1676, 60, 24), 800), QRect(100, -900, 60, 24));
    EXPECT_EQ(fromBottomLeftOrigin(QRectF(-500, 576, 60, 24), 800), QRect(-500, 200, 60, 24));
}

} // namespace

} // namespace Fenwhirl
