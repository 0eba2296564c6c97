#pragma once

// How a temperature is shown as a bar in the lists of sensors.
//
// The bar is full at 100 degrees and takes the warning colour from 80 degrees on. Both are fixed: they
// express what is warm for a chip, whatever thresholds the user has chosen for the warnings. Temperatures in
// degrees Celsius. Pure.

namespace Fenwhirl {

inline constexpr double sensorBarHotCelsius = 80.0;
inline constexpr double sensorBarFullCelsius = 100.0;

[[nodiscard]] constexpr bool sensorBarIsHot(double celsius) {
    return celsius >= sensorBarHotCelsius;
}

// The filled share of the bar, 0 to 1; 0 below zero degrees and for NaN.
[[nodiscard]] constexpr double sensorBarFraction(double celsius) {
    const double fraction = celsius / sensorBarFullCelsius;
    return fraction > 0.0 ? (fraction < 1.0 ? fraction : 1.0) : 0.0;
}

} // namespace Fenwhirl
