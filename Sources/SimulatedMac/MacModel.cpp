#include "SimulatedMac/MacModel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace simulated {

namespace {

// Fans and network affect each other; within this time each may treat the other as constant.
constexpr double longestSliceSeconds = 0.1;

// Time constant that smooths the temperature for the automatic curve, so that fans do not chase peaks.
constexpr double controlSmoothingSeconds = 8;

// The idle temperature assumed for a machine that was busy, and therefore warmer, when it was recorded.
constexpr double warmestIdleCelsius = 54;

// Graphics draw a little power even when nothing moves on the screen.
constexpr double idleGraphicsShare = 0.08;

} // namespace

MacModel makeModel(const MachineTable& table) {
    const KeyStore keys(table);
    const FanFirmware firmware(keys);
    double flow = 0;
    double share = 0;
    for (unsigned fan = 0; fan < firmware.count(); ++fan) {
        const FanLimits limits = firmware.limits(keys, fan);
        const double rpm = keys.number(fanKey(fan, "Ac")).value_or(0);
        const double target = keys.number(fanKey(fan, "Tg")).value_or(rpm);
        flow += rpm / std::max(1.0, limits.maximumRPM) / firmware.count();
        share += std::max(0.0, target - limits.minimumRPM) /
                 std::max(1.0, limits.maximumRPM - limits.minimumRPM) / firmware.count();
    }

    MacModel model;
    model.powers = machinePowers(table.name);
    const double room = recordedRoomCelsius(table);
    const double die = std::max(room + 6, recordedDieCelsius(table).value_or(50));
    model.thermal = thermalParameters(model.powers, room, firmware.count() > 0);
    model.curve = automaticCurveThrough(die, share);
    model.curve.restsWhenCool = firmware.hasUnlock();

    const double idleGraphics = idleGraphicsShare * model.powers.graphicsWatts;
    model.recorded = {.processorWatts = processorWattsFor(model.thermal, die, idleGraphics, flow),
                      .graphicsWatts = idleGraphics};
    model.idle = {.processorWatts =
                      processorWattsFor(model.thermal, std::min(die, warmestIdleCelsius), idleGraphics, flow),
                  .graphicsWatts = idleGraphics};
    model.reference = balance(model.thermal, {.processorWatts = model.recorded.processorWatts,
                                              .graphicsWatts = model.recorded.graphicsWatts,
                                              .airflow = flow});
    model.sensors = movingSensors(table, model.reference, room);
    return model;
}

MacState recordedState(const MacModel& model, const MachineTable& table) {
    const KeyStore keys(table);
    const FanFirmware firmware(keys);
    MacState state{.seconds = 0,
                   .thermal = model.reference,
                   .controlCelsius = at(model.reference.celsius, ThermalNode::die),
                   .fanCount = firmware.count()};
    for (unsigned fan = 0; fan < state.fanCount; ++fan) {
        FanState& one = state.fans[fan];
        one.rpm = keys.number(fanKey(fan, "Ac")).value_or(0);
        one.targetRPM = keys.number(fanKey(fan, "Tg")).value_or(one.rpm);
    }
    return state;
}

double airflow(const MacState& state, const MacInputs& inputs) {
    double flow = 0;
    for (unsigned fan = 0; fan < state.fanCount; ++fan) {
        flow += state.fans[fan].rpm / std::max(1.0, inputs.fans[fan].limits.maximumRPM) / state.fanCount;
    }
    return std::min(1.0, std::max(0.0, flow));
}

void advance(MacState& state, const MacModel& model, const MacInputs& inputs, double seconds) {
    if (!(seconds > 0)) {
        return;
    }
    const auto slices = static_cast<std::int64_t>(std::ceil(seconds / longestSliceSeconds));
    const double slice = seconds / static_cast<double>(slices);
    const double smoothing = 1.0 - std::exp(-slice / controlSmoothingSeconds);
    for (std::int64_t done = 0; done < slices; ++done) {
        const double die = at(state.thermal.celsius, ThermalNode::die);
        const double hottest = std::max(die, at(state.thermal.celsius, ThermalNode::graphics));
        state.controlCelsius += (hottest - state.controlCelsius) * smoothing;
        for (unsigned fan = 0; fan < state.fanCount; ++fan) {
            const FanInput& input = inputs.fans[fan];
            FanState& one = state.fans[fan];
            if (inputs.asleep) {
                one.targetRPM = 0;
            } else {
                one.targetRPM = input.manualTargetRPM.value_or(
                    automaticTarget(model.curve, input.limits, state.controlCelsius, one.targetRPM > 0));
            }
            one.rpm = stepFan(one.rpm, one.targetRPM, input.limits, slice);
        }
        state.thermal = step(state.thermal, model.thermal,
                             {.processorWatts = inputs.asleep ? 0 : inputs.heat.processorWatts,
                              .graphicsWatts = inputs.asleep ? 0 : inputs.heat.graphicsWatts,
                              .airflow = airflow(state, inputs)},
                             slice);
    }
    state.seconds += seconds;
}

} // namespace simulated
