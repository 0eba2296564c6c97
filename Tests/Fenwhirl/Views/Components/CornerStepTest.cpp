#include "Fenwhirl/Views/Components/Theme.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(CornerStep, IsOneWhereEveryRadiusIsWholePixels) {
    EXPECT_EQ(cornerStep(1, true), 1);
    EXPECT_EQ(cornerStep(2, true), 1);
    EXPECT_EQ(cornerStep(3, true), 1);
}

TEST(CornerStep, LeadsToWholePixelsBetweenTwoScales) {
    EXPECT_EQ(cornerStep(1.5, true), 2);
    EXPECT_EQ(cornerStep(2.5, true), 2);
    EXPECT_EQ(cornerStep(1.25, true), 4);
    EXPECT_EQ(cornerStep(1.75, true), 4);
    EXPECT_EQ(cornerStep(4.0 / 3.0, true), 3);
}

TEST(CornerStep, ChangesNothingWhereItWouldChangeTooMuchOrIsNotNeeded) {
    EXPECT_EQ(cornerStep(1.1, true), 1);
    EXPECT_EQ(cornerStep(1.5, false), 1);
}

} // namespace

} // namespace Fenwhirl
