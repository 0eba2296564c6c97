#include "Fenwhirl/Views/Components/LineChart.h"

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(ChartPoints, NothingIsDrawnForFewerThanTwoValues) {
    EXPECT_TRUE(LineChart::points({}, 300, 140).isEmpty());
    EXPECT_TRUE(LineChart::points({50}, 300, 140).isEmpty());
}

TEST(ChartPoints, TwoEqualValuesLieAtThirtyPercentOfTheHeight) {
    // The scale is then 47 to 57: three degrees of margin, and a span of at least ten degrees.
    const QPolygonF points = LineChart::points({50, 50}, 300, 140);
    ASSERT_EQ(points.size(), 2);
    EXPECT_DOUBLE_EQ(points[0].x(), 0.0);
    EXPECT_DOUBLE_EQ(points[1].x(), 300.0);
    EXPECT_DOUBLE_EQ(points[0].y(), 140.0 - 0.3 * 140.0);
    EXPECT_DOUBLE_EQ(points[1].y(), 140.0 - 0.3 * 140.0);
}

TEST(ChartPoints, AWideSeriesKeepsThreeDegreesAboveAndBelow) {
    // 40 to 80, drawn on a scale from 37 to 83.
    const QPolygonF points = LineChart::points({40, 60, 80}, 200, 46);
    ASSERT_EQ(points.size(), 3);
    EXPECT_DOUBLE_EQ(points[0].y(), 43.0);
    EXPECT_DOUBLE_EQ(points[1].x(), 100.0);
    EXPECT_DOUBLE_EQ(points[1].y(), 23.0);
    EXPECT_DOUBLE_EQ(points[2].x(), 200.0);
    EXPECT_DOUBLE_EQ(points[2].y(), 3.0);
}

TEST(ChartPoints, FourDegreesOfSpreadAreJustTenDegreesOfScale) {
    const QPolygonF points = LineChart::points({50, 54}, 100, 100);
    ASSERT_EQ(points.size(), 2);
    EXPECT_DOUBLE_EQ(points[0].y(), 70.0);
    EXPECT_DOUBLE_EQ(points[1].y(), 30.0);
}

TEST(ChartPoints, ValuesThatAreNoNumbersAreLeftOutAndKeepTheirPlaces) {
    const QPolygonF points =
        LineChart::points({50, nan, 50, std::numeric_limits<double>::infinity()}, 300, 100);
    ASSERT_EQ(points.size(), 2);
    EXPECT_DOUBLE_EQ(points[0].x(), 0.0);
    EXPECT_DOUBLE_EQ(points[1].x(), 200.0);
    EXPECT_DOUBLE_EQ(points[1].y(), 70.0);
    EXPECT_TRUE(LineChart::points({nan, 50, nan}, 300, 100).isEmpty());
}

} // namespace

} // namespace Fenwhirl
