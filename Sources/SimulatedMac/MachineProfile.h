// What a key table does not tell about its Mac: how much heat it makes and how its cooling is laid out.
//
// The powers are the makers' published design powers, rounded; everything else follows from the idea that a
// Mac is built so that its processor, at full power and with the fans at full speed, stays somewhat below the
// temperature at which it must slow down, and exceeds it with the fans at their minimum.

#pragma once

#include "SimulatedMac/FanModel.h"
#include "SimulatedMac/ThermalModel.h"

#include <string_view>

namespace simulated {

struct MachinePowers {
    double processorWatts = 45; // at full load
    double graphicsWatts = 0;   // of a graphics processor with its own die; 0 = none
};

// The powers of a machine by its name; those of a mid-sized notebook when it is not known.
[[nodiscard]] MachinePowers machinePowers(std::string_view machineName);

// The network of a machine with these powers. `hasFans` false: a larger passive heat sink instead.
[[nodiscard]] ThermalParameters thermalParameters(const MachinePowers& powers, double roomCelsius,
                                                  bool hasFans);

// The constant processor power at which the die settles at `dieCelsius`.
[[nodiscard]] double processorWattsFor(const ThermalParameters& parameters, double dieCelsius,
                                       double graphicsWatts, double airflow);

// The automatic curve of a machine that was seen at `recordedCelsius` with its fans `recordedShare` of the
// way from minimum to maximum: the curve passes through that point.
[[nodiscard]] AutomaticCurve automaticCurveThrough(double recordedCelsius, double recordedShare);

} // namespace simulated
