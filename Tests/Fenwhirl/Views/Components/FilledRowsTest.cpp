#include "Fenwhirl/Views/Components/FilledRows.h"

#include <cmath>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(FilledRows, ARowsItemsShareWhatIsLeftOverAndItsEndsLieFlush) {
    const QList<QRectF> places = filledRows({40, 60}, 126, 28, 6);
    ASSERT_EQ(places.size(), 2);
    EXPECT_EQ(places[0], QRectF(0, 0, 50, 28));
    EXPECT_EQ(places[1], QRectF(56, 0, 70, 28));
    EXPECT_DOUBLE_EQ(places[1].right(), 126);
}

TEST(FilledRows, AnItemThatDoesNotFitBeginsANewRow) {
    const QList<QRectF> places = filledRows({60, 60, 30}, 120, 28, 6);
    ASSERT_EQ(places.size(), 3);
    EXPECT_EQ(places[0], QRectF(0, 0, 120, 28));
    EXPECT_EQ(places[1].topLeft(), QPointF(0, 34));
    EXPECT_EQ(places[2].right(), 120);
}

TEST(FilledRows, TheLastRowHasNoSingleItemWhereTheOneAboveCanSpareOne) {
    const QList<QRectF> places = filledRows({30, 30, 30, 50}, 120, 28, 6);
    ASSERT_EQ(places.size(), 4);
    EXPECT_EQ(places[1].top(), 0);
    EXPECT_EQ(places[1].right(), 120);
    EXPECT_EQ(places[2].topLeft(), QPointF(0, 34));
    EXPECT_EQ(places[3].top(), 34);
    EXPECT_EQ(places[3].right(), 120);
}

TEST(FilledRows, ASingleLastItemStaysAloneWhereTwoWouldNotFitOrTheRowAboveHasOnlyTwo) {
    EXPECT_EQ(filledRows({30, 30, 40, 100}, 120, 28, 6)[2].top(), 0);
    EXPECT_EQ(filledRows({40, 40, 60}, 120, 28, 6)[1].top(), 0);
    // The row above it is the second one.
    const QList<QRectF> three = filledRows({100, 50, 50, 60}, 120, 28, 6);
    EXPECT_EQ(three[2].top(), 34);
    EXPECT_EQ(three[3].top(), 68);
}

TEST(FilledRows, ARowThatFitsExactlyIsNotBroken) {
    const QList<QRectF> places = filledRows({57, 57}, 120, 28, 6);
    ASSERT_EQ(places.size(), 2);
    EXPECT_EQ(places[1].top(), 0);
}

TEST(FilledRows, AnItemWiderThanTheRowIsCutToIt) {
    const QList<QRectF> places = filledRows({500, 20}, 100, 28, 6);
    ASSERT_EQ(places.size(), 2);
    EXPECT_EQ(places[0], QRectF(0, 0, 100, 28));
    EXPECT_EQ(places[1].top(), 34);
}

TEST(FilledRows, ItemsBeginAndEndOnWholePoints) {
    const QList<QRectF> chips = filledRows({41, 60, 33}, 200.5, 28, 6);
    const QList<QRectF> segments = filledRow({30.3, 70.2, 110.9}, 300, 28);
    for (const QList<QRectF>& places : {chips, segments}) {
        ASSERT_EQ(places.size(), 3);
        for (const QRectF& place : places) {
            EXPECT_EQ(place.left(), std::round(place.left()));
        }
        EXPECT_EQ(places[0].right(), std::round(places[0].right()));
        EXPECT_EQ(places[1].right(), std::round(places[1].right()));
    }
    EXPECT_EQ(chips[1].left() - chips[0].right(), 6);
    EXPECT_EQ(chips[2].right(), 200.5);
    EXPECT_EQ(segments[1].left(), segments[0].right());
    EXPECT_EQ(segments[2].right(), 300);
}

TEST(FilledRows, NoItemsTakeNoPlaces) {
    EXPECT_TRUE(filledRows({}, 100, 28, 6).isEmpty());
    EXPECT_TRUE(filledRow({}, 100, 28).isEmpty());
}

TEST(FilledRow, EachItemGetsItsTextAndAnEqualShareOfTheRest) {
    const QList<QRectF> places = filledRow({30, 70, 110}, 300, 28);
    ASSERT_EQ(places.size(), 3);
    EXPECT_EQ(places[0], QRectF(0, 0, 60, 28));
    EXPECT_EQ(places[1], QRectF(60, 0, 100, 28));
    EXPECT_EQ(places[2], QRectF(160, 0, 140, 28));
}

TEST(FilledRow, TooLittleRoomIsSharedToo) {
    const QList<QRectF> places = filledRow({50, 100}, 100, 28);
    ASSERT_EQ(places.size(), 2);
    EXPECT_DOUBLE_EQ(places[0].width(), 25);
    EXPECT_DOUBLE_EQ(places[1].width(), 75);
}

TEST(Neighbour, LeftAndRightFollowTheReadingOrderAndStopAtItsEnds) {
    const QList<QRectF> places = filledRows({60, 60, 60}, 126, 28, 6); // two above, one below
    EXPECT_EQ(neighbour(places, 0, 1, 0), 1);
    EXPECT_EQ(neighbour(places, 1, 1, 0), 2);
    EXPECT_EQ(neighbour(places, 2, 1, 0), 2);
    EXPECT_EQ(neighbour(places, 1, -1, 0), 0);
    EXPECT_EQ(neighbour(places, 0, -1, 0), 0);
}

TEST(Neighbour, UpAndDownLeadToTheNearestInTheNextRow) {
    // 0 1
    // 2 3
    // 4
    const QList<QRectF> places = filledRows({60, 60, 60, 60, 60}, 126, 28, 6);
    EXPECT_EQ(neighbour(places, 1, 0, 1), 3);
    EXPECT_EQ(neighbour(places, 0, 0, 1), 2);
    EXPECT_EQ(neighbour(places, 3, 0, 1), 4);
    EXPECT_EQ(neighbour(places, 4, 0, 1), 4);
    EXPECT_EQ(neighbour(places, 3, 0, -1), 1);
    EXPECT_EQ(neighbour(places, 1, 0, -1), 1);
}

TEST(Neighbour, NothingLeadsToNothing) {
    EXPECT_EQ(neighbour({}, 0, 1, 0), 0);
    EXPECT_EQ(neighbour({}, -1, 0, 1), -1);
}

} // namespace

} // namespace Fenwhirl
