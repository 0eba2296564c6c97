#include "Fenwhirl/Views/Components/WheelSteps.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(WheelSteps, ANotchScrollsAsManyLinesAsTheSystemSays) {
    EXPECT_EQ(wheelDistance({}, {0, -120}, true, 3, 1), 72);
    EXPECT_EQ(wheelDistance({}, {0, 120}, true, 3, 1), -72);
    EXPECT_EQ(wheelDistance({}, {0, -120}, true, 5, 1), 120);
    EXPECT_EQ(wheelDistance({}, {0, -120}, true, 3, 2), 144);
}

TEST(WheelSteps, ATouchpadScrollsSmoothly) {
    EXPECT_EQ(wheelDistance({}, {0, -10}, true, 3, 1), 6);
    EXPECT_EQ(wheelDistance({0, -7}, {0, -10}, true, 3, 1), 7);
}

TEST(WheelSteps, UnitsOfADriverAreNoPoints) {
    EXPECT_EQ(wheelDistance({0, -15}, {0, -120}, false, 3, 1), 72);
}

TEST(WheelSteps, ASidewaysTurnScrollsNothing) {
    EXPECT_EQ(wheelDistance({9, 0}, {120, 0}, true, 3, 1), 0);
}

} // namespace

} // namespace Fenwhirl
