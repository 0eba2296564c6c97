// What the temperature keys of a machine show while its thermal network changes.
//
// Each sensor belongs to one node of the network. It shows its recorded value when the node is as warm as it
// was at the recording, and follows the node from there. A sensor that was recorded cooler than its node
// follows it more weakly. Values that were not temperatures on the real machine (-127 for a missing sensor,
// distances to a limit, switches) never change.

#pragma once

#include "SimulatedMac/MachineTable.h"
#include "SimulatedMac/ThermalModel.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace simulated {

struct Sensor {
    std::size_t keyIndex = 0; // position in the machine's table
    FourCC code = 0;
    ThermalNode node = ThermalNode::board;
    double recordedCelsius = 0;
    double gain = 1;           // kelvin shown per kelvin of the node
    bool wholeDegrees = false; // a digital sensor without fraction bits
};

// The room temperature that the recording suggests.
[[nodiscard]] double recordedRoomCelsius(const MachineTable& table);

// The temperature of the processor die at the recording: the median of the sensors on it. Absent when the
// table has none.
[[nodiscard]] std::optional<double> recordedDieCelsius(const MachineTable& table);

// The sensors of a machine that follow the network; `reference` is its state at the recording.
[[nodiscard]] std::vector<Sensor> movingSensors(const MachineTable& table, const ThermalState& reference,
                                                double roomCelsius);

// The temperature that a sensor shows at the simulated time `seconds`. A real sensor is never quite still, so
// each one varies a little and smoothly, in the same way in every run.
[[nodiscard]] double sensorCelsius(const Sensor& sensor, const ThermalState& reference,
                                   const ThermalState& state, double seconds);

// The speed that a fan's key shows. A real fan never turns quite evenly, so the speed varies a little. A
// resting fan shows 0.
[[nodiscard]] double shownRPM(unsigned fan, double rpm, double seconds);

} // namespace simulated
