// One fan: how its wheel follows a target, and how the firmware chooses the target while nobody else does.
// Pure functions on plain values.

#pragma once

namespace simulated {

struct FanLimits {
    double minimumRPM = 0;
    double maximumRPM = 0;
};

// The firmware's own curve: the minimum up to `startCelsius`, the maximum from `fullCelsius` on, a straight
// line between them. With `restsWhenCool` a fan stands still until 5 °C below the start, and one that turns
// comes to rest only 15 °C below it.
struct AutomaticCurve {
    double startCelsius = 65;
    double fullCelsius = 96;
    bool restsWhenCool = false;
};

// The speed that the firmware wants at this temperature of a fan that was turning or resting so far.
[[nodiscard]] double automaticTarget(const AutomaticCurve& curve, const FanLimits& limits, double celsius,
                                     bool turning);

// The speed `seconds` later on the way from `rpm` to `targetRPM`: it approaches the target within a second or
// two, but gains and loses speed no faster than the wheel's inertia lets it. A target beyond the maximum is
// what the motor cannot reach: it ends at the maximum.
[[nodiscard]] double stepFan(double rpm, double targetRPM, const FanLimits& limits, double seconds);

} // namespace simulated
