#include "Fenwhirl/Views/Components/WindowCorners.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(WindowCorners, KeepWhatTheRoundShapeTouchesAndNothingElse) {
    constexpr int radius = 14;
    const QRegion region = roundedRegion({340, 100}, radius);
    for (int y = 0; y < radius; ++y) {
        for (int x = 0; x < radius; ++x) {
            // The pixel's corner that is nearest to the centre of the circle.
            const int dx = radius - x - 1;
            const int dy = radius - y - 1;
            const bool touched = dx * dx + dy * dy < radius * radius;
            EXPECT_EQ(region.contains(QPoint(x, y)), touched) << x << ", " << y;
            EXPECT_EQ(region.contains(QPoint(339 - x, 99 - y)), touched) << x << ", " << y;
        }
    }
    EXPECT_TRUE(region.contains(QPoint(0, 50)));
    EXPECT_EQ(region.boundingRect(), QRect(0, 0, 340, 100));
}

TEST(WindowCorners, NeedNoMoreRoomThanThereIs) {
    EXPECT_EQ(roundedRegion({10, 4}, 14).boundingRect(), QRect(0, 0, 10, 4));
    EXPECT_TRUE(roundedRegion({0, 0}, 14).isEmpty());
    EXPECT_EQ(roundedRegion({10, 10}, 0), QRegion(0, 0, 10, 10));
}

} // namespace

} // namespace Fenwhirl
