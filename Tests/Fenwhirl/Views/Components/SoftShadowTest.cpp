#include "Fenwhirl/Views/Components/SoftShadow.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

constexpr int blur = 20;
const QImage shadow = softShadow({200, 161}, 12, blur, QColor(10, 20, 30, 200));

int alphaAt(int x, int y) {
    return qAlpha(shadow.pixel(x, y));
}

TEST(SoftShadow, IsWholeInTheMiddleAndGoneAtTheRim) {
    EXPECT_EQ(alphaAt(100, 80), 200);
    EXPECT_LT(alphaAt(0, 80), 8);
    EXPECT_LT(alphaAt(100, 0), 8);
    EXPECT_EQ(alphaAt(0, 0), 0);
}

TEST(SoftShadow, IsHalfAtTheEdgeOfWhatCastsIt) {
    EXPECT_NEAR(alphaAt(blur, 80), 104, 6);
    EXPECT_NEAR(alphaAt(blur - 1, 80), 96, 6);
}

TEST(SoftShadow, FallsOffLikeAGaussianBlur) {
    for (int x = 0; x < 60; ++x) {
        const double coverage = 0.5 * std::erfc(-(x + 0.5 - blur) / (blur / 2.0 * std::sqrt(2.0)));
        EXPECT_NEAR(alphaAt(x, 80), 200 * coverage, 1.0) << x;
    }
}

TEST(SoftShadow, IsTheSameOnAllSides) {
    for (int y = 0; y < shadow.height(); ++y) {
        for (int x = 0; x < shadow.width(); ++x) {
            ASSERT_EQ(shadow.pixel(x, y), shadow.pixel(shadow.width() - 1 - x, y));
            ASSERT_EQ(shadow.pixel(x, y), shadow.pixel(x, shadow.height() - 1 - y));
        }
    }
}

TEST(SoftShadow, ANarrowOneHasNoHoles) {
    const QImage narrow = softShadow({30, 30}, 12, 20, Qt::black);
    EXPECT_EQ(narrow.size(), QSize(30, 30));
    EXPECT_GE(qAlpha(narrow.pixel(15, 15)), qAlpha(narrow.pixel(0, 15)));
}

} // namespace

} // namespace Fenwhirl
