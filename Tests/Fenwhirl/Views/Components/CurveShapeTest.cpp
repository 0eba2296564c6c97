// Lines, positions and numbers of a fan's temperature curve.

#include "Fenwhirl/Views/Components/CurveShape.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

CurveShape ofSensor(double start, double max) {
    return {.startTemp = start, .maxTemp = max, .isLimited = false, .alertAt = none};
}

CurveShape ofMain(double start, double max, double alertAt = none) {
    return {.startTemp = start, .maxTemp = max, .isLimited = true, .alertAt = alertAt};
}

TEST(CurveShape, RisesFromTheOneTemperatureToTheOther) {
    EXPECT_EQ(lineInForce(ofSensor(40, 65)), QPolygonF({{20, 0}, {40, 0}, {65, 1}, {105, 1}}));
}

TEST(CurveShape, EndsWhereTheFirmwareTakesOver) {
    EXPECT_EQ(lineInForce(ofMain(50, 90)), QPolygonF({{20, 0}, {50, 0}, {90, 1}, {92, 1}}));
    EXPECT_EQ(inForceUntil(ofMain(50, 90)), 92);
    EXPECT_EQ(inForceUntil(ofSensor(50, 90)), 105);
    const QPolygonF beyond = settingLine(ofMain(65, 95), 92, 105);
    EXPECT_EQ(beyond, QPolygonF({{92, 0.9}, {95, 1}, {105, 1}}));
}

TEST(CurveShape, StepsToTheMaximumAtTheAlertThreshold) {
    EXPECT_EQ(lineInForce(ofMain(65, 95, 85)),
              QPolygonF({{20, 0}, {65, 0}, {85, 20.0 / 30.0}, {85, 1}, {92, 1}}));
    EXPECT_EQ(inForceUntil(ofMain(65, 95, 85)), 85);
    // Neither above the temperature at which the firmware takes over, nor for another sensor.
    EXPECT_EQ(lineInForce(ofMain(50, 90, 92)), lineInForce(ofMain(50, 90)));
    CurveShape other = ofSensor(50, 90);
    other.alertAt = 60;
    EXPECT_EQ(lineInForce(other), lineInForce(ofSensor(50, 90)));
}

TEST(CurveShape, AMaximumBelowTheStartIsAStepOfOneDegree) {
    EXPECT_EQ(lineInForce(ofSensor(75, 60)), QPolygonF({{20, 0}, {75, 0}, {76, 1}, {105, 1}}));
    EXPECT_TRUE(isMaximumWithoutEffect(ofSensor(75, 60)));
    EXPECT_EQ(lineInForce(ofSensor(80, 80)), QPolygonF({{20, 0}, {80, 0}, {81, 1}, {105, 1}}));
    EXPECT_FALSE(isMaximumWithoutEffect(ofSensor(80, 80)));
}

TEST(CurveShape, ThePresentTemperatureLiesOnTheLine) {
    EXPECT_EQ(pointOnCurve(ofMain(50, 90), 70, false), QPointF(70, 0.5));
    EXPECT_EQ(pointOnCurve(ofMain(50, 90), 12, false), QPointF(20, 0));
    EXPECT_EQ(pointOnCurve(ofSensor(50, 90), 130, false), QPointF(105, 1));
    EXPECT_EQ(pointOnCurve(ofSensor(50, 90), infinity, false), QPointF(105, 1));
    EXPECT_EQ(pointOnCurve(ofMain(50, 90), none, false), std::nullopt);
}

TEST(CurveShape, ThePresentTemperatureLiesOnTheMaximumWhileProtectionDrivesTheFan) {
    EXPECT_EQ(pointOnCurve(ofMain(65, 95, 85), 87, false), QPointF(87, 1));
    EXPECT_EQ(pointOnCurve(ofMain(65, 95, 85), 82, true), QPointF(82, 1)); // protection still drives the fan
    EXPECT_EQ(pointOnCurve(ofMain(65, 95, 85), 92, true), std::nullopt);   // no speed is requested any more
    EXPECT_EQ(pointOnCurve(ofSensor(65, 95), 95, false), QPointF(95, 1));
}

TEST(CurveShape, NumbersThatWouldTouchGiveWay) {
    using Numbers = QList<double>;
    EXPECT_EQ(axisNumbers(ofMain(50, 90), 305, 18), Numbers({40, 60, 80, 92}));
    EXPECT_EQ(axisNumbers(ofSensor(50, 90), 305, 18), Numbers({40, 60, 80}));
    EXPECT_EQ(axisNumbers(ofMain(50, 90, 85), 305, 18), Numbers({40, 60, 85, 92}));
    EXPECT_EQ(axisNumbers(ofMain(50, 90, 60), 305, 18), Numbers({40, 60, 80, 92}));
    EXPECT_EQ(axisNumbers(ofMain(50, 90, 90), 305, 18), Numbers({40, 60, 80, 92})); // too close to 92
    EXPECT_EQ(axisNumbers(ofMain(50, 90), 100, 18), Numbers({40, 60, 92}));
    EXPECT_EQ(axisNumbers(ofMain(50, 90), 60, 18), Numbers({60, 92}));
}

TEST(CurveShape, WhatIsNoNumberCountsAsTheNearestEnd) {
    for (const double start : {none, -infinity, infinity, 1e300}) {
        for (const double max : {none, -infinity, infinity, -1e300}) {
            for (const CurveShape& shape : {ofSensor(start, max), ofMain(start, max, infinity)}) {
                for (const QPointF point : lineInForce(shape)) {
                    EXPECT_TRUE(point.x() >= 20 && point.x() <= 105) << point.x();
                    EXPECT_TRUE(point.y() >= 0 && point.y() <= 1) << point.y();
                }
            }
        }
    }
}

} // namespace

} // namespace Fenwhirl
