// One fan: how its speed follows a target, and how the firmware chooses the target of an automatic fan. Pure
// functions of plain values.

#pragma once

namespace simulated {

struct FanLimits {
    double minimumRPM = 0;
    double maximumRPM = 0;
};

// The firmware's own curve: the minimum up to `startCelsius`, the maximum from `fullCelsius` on, a straight
// line in between. With `restsWhenCool`, a resting fan starts at 5 °C below the start, and a turning one
// comes to rest only at 15 °C below it.
struct AutomaticCurve {
    double startCelsius = 65;
    double fullCelsius = 96;
    bool restsWhenCool = false;
};

// The speed that the firmware chooses at this temperature. `turning` says whether the fan has been turning so
// far.
[[nodiscard]] double automaticTarget(const AutomaticCurve& curve, const FanLimits& limits, double celsius,
                                     bool turning);

// The speed after `seconds` on the way from `rpm` to `targetRPM`. It approaches the target within a second or
// two, but gains and loses speed no faster than the rotor's inertia allows. The motor cannot exceed its
// maximum: with a higher target the fan ends at the maximum.
[[nodiscard]] double stepFan(double rpm, double targetRPM, const FanLimits& limits, double seconds);

} // namespace simulated
