// The physical Mac: its thermal network, its fans and its sensors, simulated together.
//
// `MacModel` contains what never changes, `MacState` what does, and `MacInputs` what acts from outside;
// `advance` is the only operation that changes the state. All are plain values that use no clock, files or
// randomness, so that a run can be repeated exactly.

#pragma once

#include "SimulatedMac/FanFirmware.h"
#include "SimulatedMac/FanModel.h"
#include "SimulatedMac/MachineProfile.h"
#include "SimulatedMac/MachineTable.h"
#include "SimulatedMac/SensorModel.h"
#include "SimulatedMac/ThermalModel.h"

#include <array>
#include <optional>
#include <vector>

namespace simulated {

struct Heat {
    double processorWatts = 0;
    double graphicsWatts = 0;
};

struct MacModel {
    MachinePowers powers;
    ThermalParameters thermal;
    AutomaticCurve curve;
    ThermalState reference; // the network at the moment of the recording
    Heat recorded;          // the heat that keeps it there
    Heat idle;              // of a computer that does nothing
    std::vector<Sensor> sensors;
};

struct FanState {
    double rpm = 0;
    double targetRPM = 0; // the speed that the fan is approaching
};

struct MacState {
    double seconds = 0; // simulated time
    ThermalState thermal;
    double controlCelsius = 0; // the hotter die's temperature, smoothed: what the automatic curve follows
    unsigned fanCount = 0;
    std::array<FanState, FanFirmware::maxFanCount> fans{};
};

struct FanInput {
    FanLimits limits;
    std::optional<double> manualTargetRPM; // absent = automatic
};

struct MacInputs {
    Heat heat;
    bool asleep = false; // no heat, fans at rest
    std::array<FanInput, FanFirmware::maxFanCount> fans{};
};

// The model of a machine, fitted so that its steady state matches its recorded values.
[[nodiscard]] MacModel makeModel(const MachineTable& table);

// The state at the moment of the recording.
[[nodiscard]] MacState recordedState(const MacModel& model, const MachineTable& table);

// Advances the state by `seconds`.
void advance(MacState& state, const MacModel& model, const MacInputs& inputs, double seconds);

// The fans' speed as a share of their maximum, averaged over all fans; 0 without fans.
[[nodiscard]] double airflow(const MacState& state, const MacInputs& inputs);

} // namespace simulated
