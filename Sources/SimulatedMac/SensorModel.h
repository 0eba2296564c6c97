// What the temperature keys of a machine show while the thermal network moves.
//
// A sensor belongs to one lump of the network and keeps its distance: it shows its recorded value when the
// machine is as warm as it was at the recording, and from there follows its lump, a sensor that was recorded
// cooler more weakly. Values that were no temperature on the real machine (-127 for a missing sensor,
// distances to a limit, switches) stay exactly as they were.

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
    double gain = 1;           // kelvin shown per kelvin of the lump
    bool wholeDegrees = false; // a digital sensor without fraction bits
};

// The room temperature that the recording suggests.
[[nodiscard]] double recordedRoomCelsius(const MachineTable& table);

// The temperature of the processor die at the recording: the median of the sensors on it; absent when the
// table has none.
[[nodiscard]] std::optional<double> recordedDieCelsius(const MachineTable& table);

// The moving sensors of a machine whose network was in `reference` at the recording.
[[nodiscard]] std::vector<Sensor> movingSensors(const MachineTable& table, const ThermalState& reference,
                                                double roomCelsius);

// What a sensor shows. `seconds` is simulated time: a real sensor is never quite still, so each wanders a
// little, smoothly and by the same amounts in every run.
[[nodiscard]] double sensorCelsius(const Sensor& sensor, const ThermalState& reference,
                                   const ThermalState& state, double seconds);

// The speed that a fan's key shows: a wheel never turns quite evenly. A fan at rest shows 0.
[[nodiscard]] double shownRPM(unsigned fan, double rpm, double seconds);

} // namespace simulated
