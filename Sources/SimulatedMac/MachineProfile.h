// What a key table does not say about its Mac: how much heat it produces and how its cooling is built.
//
// The powers are the vendors' published design powers, rounded. Everything else follows from one assumption.
// A Mac is built so that its processor, at full power and with the fans at full speed, stays somewhat below
// the temperature at which it must slow down, and exceeds that temperature with the fans at their minimum.

#pragma once

#include "SimulatedMac/FanModel.h"
#include "SimulatedMac/ThermalModel.h"

#include <string_view>

namespace simulated {

struct MachinePowers {
    double processorWatts = 45; // at full load
    double graphicsWatts = 0;   // of a graphics processor with its own die; 0 = none
};

// The powers of the machine of that name; those of a mid-sized notebook when it is unknown.
[[nodiscard]] MachinePowers machinePowers(std::string_view machineName);

// The thermal network of a machine with these powers. Without fans, it has a larger passive heat sink
// instead.
[[nodiscard]] ThermalParameters thermalParameters(const MachinePowers& powers, double roomCelsius,
                                                  bool hasFans);

// The constant processor power at which the die settles at `dieCelsius`.
[[nodiscard]] double processorWattsFor(const ThermalParameters& parameters, double dieCelsius,
                                       double graphicsWatts, double airflow);

// The automatic curve of a machine that was recorded at `recordedCelsius` with its fans `recordedShare` of
// the way from minimum to maximum. The curve passes through that point.
[[nodiscard]] AutomaticCurve automaticCurveThrough(double recordedCelsius, double recordedShare);

} // namespace simulated
