// Keeps the two thresholds of the health verdict apart when the user moves one of them.
//
// Temperatures in degrees Celsius. Pure functions.

#pragma once

namespace Fenwhirl {

struct HealthThresholds {
    double warm;
    double hot;

    bool operator==(const HealthThresholds&) const = default;
};

// Sets the warm threshold. The hot one is raised if necessary to stay at least 5 °C above it, but never
// beyond 105 °C.
[[nodiscard]] HealthThresholds withWarm(HealthThresholds thresholds, double warm);

// Sets the hot threshold. The warm one is lowered if necessary to stay at least 5 °C below it, but never
// under 55 °C. That floor deliberately lies below the range of the warm slider: a pushed threshold may go
// further than one that the user sets.
[[nodiscard]] HealthThresholds withHot(HealthThresholds thresholds, double hot);

} // namespace Fenwhirl
