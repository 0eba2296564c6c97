#include "Fenwhirl/Views/Components/PathData.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

QPainterPath pathOf(const char* data) {
    const auto path = painterPath(QString::fromLatin1(data));
    EXPECT_TRUE(path.has_value()) << data;
    return path.value_or(QPainterPath());
}

TEST(PathData, LinesAbsoluteAndRelative) {
    EXPECT_EQ(pathOf("M1 2L4 2V6H1Z").boundingRect(), QRectF(1, 2, 3, 4));
    EXPECT_EQ(pathOf("M1 2l3 0v4h-3z").boundingRect(), QRectF(1, 2, 3, 4));
}

TEST(PathData, PairsAfterAMoveAreLines) {
    EXPECT_EQ(pathOf("M1 1 3 1 3 5").boundingRect(), QRectF(1, 1, 2, 4));
    EXPECT_EQ(pathOf("m1 1 2 0 0 4").boundingRect(), QRectF(1, 1, 2, 4));
}

TEST(PathData, NumbersNeedNoSeparatorWhereTheyCannotBeMistaken) {
    EXPECT_EQ(pathOf("M-.5.5L1.5-.5").boundingRect(), QRectF(-0.5, -0.5, 2, 1));
}

TEST(PathData, TwoHalfCirclesMakeACircle) {
    const QPainterPath circle = pathOf("M10.8 12a1.2 1.2 0 1 0 2.4 0a1.2 1.2 0 1 0 -2.4 0Z");
    EXPECT_NEAR(circle.boundingRect().width(), 2.4, 0.01);
    EXPECT_NEAR(circle.boundingRect().height(), 2.4, 0.01);
    EXPECT_TRUE(circle.contains(QPointF(12, 12)));
    EXPECT_FALSE(circle.contains(QPointF(13.3, 12)));
}

TEST(PathData, TheFlagsOfAnArcChooseItsCenterAndDirection) {
    // A quarter of a circle around (0, 10), clockwise on screen from the top to the right.
    const QPainterPath quarter = pathOf("M0 0A10 10 0 0 1 10 10");
    EXPECT_NEAR(quarter.pointAtPercent(0.5).x(), 7.07, 0.02);
    EXPECT_NEAR(quarter.pointAtPercent(0.5).y(), 2.93, 0.02);
    // With the other direction flag, an arc between the same points bulges to the other side.
    const QPainterPath other = pathOf("M0 0A10 10 0 0 0 10 10");
    EXPECT_NEAR(other.pointAtPercent(0.5).x(), 2.93, 0.02);
    EXPECT_NEAR(other.pointAtPercent(0.5).y(), 7.07, 0.02);
    // The large arc takes the long way: three quarters of a circle around (10, 0).
    const QPainterPath large = pathOf("M0 0A10 10 0 1 1 10 10");
    EXPECT_NEAR(large.boundingRect().right(), 20.0, 0.05);
    EXPECT_NEAR(large.boundingRect().top(), -10.0, 0.05);
}

TEST(PathData, RadiiTooSmallForTheirEndsGrow) {
    EXPECT_NEAR(pathOf("M0 0A1 1 0 0 1 10 0").boundingRect().height(), 5.0, 0.05);
}

TEST(PathData, CurvesEndWhereTheySay) {
    EXPECT_EQ(pathOf("M0 0C1 2 3 4 5 6").currentPosition(), QPointF(5, 6));
    EXPECT_EQ(pathOf("M1 1q1 2 3 4").currentPosition(), QPointF(4, 5));
}

TEST(PathData, WhatIsNoPathIsRefused) {
    for (const char* data : {"L1 1", "M1", "M1 1X2", "M1 1A1 2 45 0 1 3 3", "M1 1A1 1 0 2 1 3 3", "M1 1Z5 5",
                             "5 5", "M1 1Lx y"}) {
        EXPECT_FALSE(painterPath(QString::fromLatin1(data)).has_value()) << data;
    }
    EXPECT_TRUE(pathOf("").isEmpty());
}

TEST(PathData, NumbersAreReadTheSameInEveryLocale) {
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(pathOf("M1.5 2.5L3.5 2.5").boundingRect().left(), 1.5);
    QLocale::setDefault(QLocale::c());
}

} // namespace

} // namespace Fenwhirl
