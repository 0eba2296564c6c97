#include "Fenwhirl/Views/Components/FilledRows.h"

#include <gtest/gtest.h>

using Fenwhirl::filledRow;
using Fenwhirl::filledRows;
using Fenwhirl::neighbour;

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
