// How the two thresholds of the health verdict keep their distance when the user moves one of them.
//
// Temperatures in degrees Celsius. Pure values.

#pragma once

struct HealthThresholds {
    double warm;
    double hot;

    bool operator==(const HealthThresholds&) const = default;
};

// The user set the warm threshold: the hot one stays at least 5 °C above it, but never beyond 105 °C.
[[nodiscard]] HealthThresholds withWarm(HealthThresholds thresholds, double warm);

// The user set the hot threshold: the warm one stays at least 5 °C below it, but never under 55 °C. That
// floor lies below what the warm slider itself offers, on purpose: a pushed threshold may go further than a
// set one.
[[nodiscard]] HealthThresholds withHot(HealthThresholds thresholds, double hot);
