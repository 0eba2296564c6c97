#include "Fenwhirl/Monitoring/WholeNumber.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

TEST(WholeNumber, IsTruncatedTowardZero) {
    EXPECT_EQ(wholeNumber(2400.9), 2400);
    EXPECT_EQ(wholeNumber(-2400.9), -2400);
    EXPECT_EQ(wholeNumber(-0.5), 0);
}

TEST(WholeNumber, HoldsAllThatSixtyFourBitsHoldAndNothingElse) {
    using Limits = std::numeric_limits<std::int64_t>;
    const double beyond = std::ldexp(1, 63);
    EXPECT_EQ(wholeNumber(-beyond), Limits::min());
    EXPECT_EQ(wholeNumber(std::nextafter(beyond, 0)), Limits::max() - 1023);
    EXPECT_EQ(wholeNumber(beyond), std::nullopt);
    EXPECT_EQ(wholeNumber(std::nextafter(-beyond, -2 * beyond)), std::nullopt);
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(wholeNumber(value), std::nullopt);
    }
}
