#pragma once

#include <QList>
#include <QPointF>
#include <QPolygonF>

#include <optional>

// The shape of a fan's temperature curve, in degrees Celsius and fractions of the fan's range. Pure
// functions; any thread.
//
// Points have the temperature as x and the speed as y, 0 for the fan's minimum and 1 for its maximum. The
// axis runs from 20 to 105 °C. A temperature beyond it counts as the nearest end, and NaN as the lower one.

namespace Fenwhirl {

inline constexpr double coldestCelsius = 20.0;
inline constexpr double hottestCelsius = 105.0;
inline constexpr double handBackCelsius = 92.0; // from here on the firmware controls every fan

struct CurveShape {
    double startTemp = 0.0; // at or below it the fan runs at its minimum
    double maxTemp = 0.0;   // at or above it at its maximum; drawn at least one degree above the start
    // Whether the main temperature drives the fan. The limits apply to that temperature; on the axis of
    // another sensor they would be wrong.
    bool isLimited = false;
    double alertAt = 0.0; // where heat protection begins; NaN if it is off
};

// Limits a temperature to the axis.
[[nodiscard]] double onCurveAxis(double celsius);

// Where heat protection takes over from the curve, if it does so before the firmware.
[[nodiscard]] std::optional<double> protectedFrom(const CurveShape& shape);

// The speed that the setting alone requests.
[[nodiscard]] double settingFraction(const CurveShape& shape, double celsius);

// The line of the setting from one temperature to another.
[[nodiscard]] QPolygonF settingLine(const CurveShape& shape, double from, double to);

// The line of the speeds that are actually requested: it steps to the maximum where heat protection begins,
// and ends where the firmware takes over.
[[nodiscard]] QPolygonF lineInForce(const CurveShape& shape);

// Up to which temperature the setting is in force: the end of the axis if nothing overrides it.
[[nodiscard]] double inForceUntil(const CurveShape& shape);

// The point of a temperature on the line in force: on the maximum while heat protection drives the fan. Empty
// where no speed is requested or the temperature is unknown.
[[nodiscard]] std::optional<QPointF> pointOnCurve(const CurveShape& shape, double celsius, bool isProtecting);

// Whether the maximum is set at a temperature below the one from which the speed rises.
[[nodiscard]] bool isMaximumWithoutEffect(const CurveShape& shape);

// The numbers below an axis of `width` points, coldest first. A number nearer than `least` points to a more
// important one is left out; the order of importance is 92, the alert threshold, 60, 40, 80.
[[nodiscard]] QList<double> axisNumbers(const CurveShape& shape, double width, double least);

} // namespace Fenwhirl
