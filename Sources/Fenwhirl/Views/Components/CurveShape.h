#pragma once

#include <QList>
#include <QPointF>
#include <QPolygonF>

#include <optional>

// What a fan's temperature curve looks like, in degrees Celsius and shares of the fan's range: pure
// functions, any thread.
//
// Points have the temperature as x and the speed as y, 0 for the fan's minimum and 1 for its maximum. The
// axis runs from 20 to 105 °C; what lies beyond it, or is no number, counts as the nearest end.

namespace Fenwhirl {

inline constexpr double coldestCelsius = 20.0;
inline constexpr double hottestCelsius = 105.0;
inline constexpr double handBackCelsius = 92.0; // from here on every fan is the firmware's

struct CurveShape {
    double startTemp = 0.0; // at or below it the fan runs at its minimum
    double maxTemp = 0.0;   // at or above it at its maximum; at least one degree is between the two
    // Whether the main temperature drives it: the limits are about that one, and on the axis of another
    // sensor they would be wrong.
    bool isLimited = false;
    double alertAt = 0.0; // where heat protection begins; no number: it is off
};

// A temperature on the axis.
[[nodiscard]] double onCurveAxis(double celsius);

// Where heat protection takes over from the curve, if it does so before the firmware.
[[nodiscard]] std::optional<double> protectedFrom(const CurveShape& shape);

// The speed that the setting alone asks for.
[[nodiscard]] double settingFraction(const CurveShape& shape, double celsius);

// The setting from one temperature to another, as a line.
[[nodiscard]] QPolygonF settingLine(const CurveShape& shape, double from, double to);

// The speeds that are really asked for: with the step to the maximum where heat protection begins, and ending
// where the firmware takes over.
[[nodiscard]] QPolygonF lineInForce(const CurveShape& shape);

// Where the setting goes on without being in force; from = to where it is in force to the end.
[[nodiscard]] double inForceUntil(const CurveShape& shape);

// The place of a temperature on the line in force: on the maximum while heat protection drives the fan,
// nowhere where nothing is asked for or no temperature is known.
[[nodiscard]] std::optional<QPointF> placeOnCurve(const CurveShape& shape, double celsius, bool isProtecting);

// Whether the maximum is set at a temperature at which the fan does not yet leave its minimum.
[[nodiscard]] bool isMaximumWithoutEffect(const CurveShape& shape);

// The temperatures that are written below an axis of so many points, coldest first. Those that come nearer to
// another one than `least` points give way: first the alert threshold to the 92, then 80, 40 and 60.
[[nodiscard]] QList<double> axisNumbers(const CurveShape& shape, double width, double least);

} // namespace Fenwhirl
