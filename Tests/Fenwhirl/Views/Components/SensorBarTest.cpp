#include "Fenwhirl/Views/Components/SensorBar.h"

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

TEST(SensorBar, TurnsHotAtEightyDegrees) {
    EXPECT_TRUE(sensorBarIsHot(80.0));
    EXPECT_FALSE(sensorBarIsHot(79.9));
    EXPECT_FALSE(sensorBarIsHot(std::numeric_limits<double>::quiet_NaN()));
}

TEST(SensorBar, IsFullAtAHundredDegrees) {
    EXPECT_DOUBLE_EQ(sensorBarFraction(31.0), 0.31);
    EXPECT_DOUBLE_EQ(sensorBarFraction(100.0), 1.0);
    EXPECT_DOUBLE_EQ(sensorBarFraction(130.0), 1.0);
    EXPECT_DOUBLE_EQ(sensorBarFraction(-5.0), 0.0);
    EXPECT_DOUBLE_EQ(sensorBarFraction(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

} // namespace

} // namespace Fenwhirl
