#include "SimulatedMac/MachineProfile.h"

#include <algorithm>
#include <array>

namespace simulated {

namespace {

struct NamedPowers {
    std::string_view machine;
    MachinePowers powers;
};

// A machine without a row gets the defaults of MachinePowers.
constexpr auto knownPowers = std::to_array<NamedPowers>({
    {"AppleSilicon", {.processorWatts = 38, .graphicsWatts = 22}},
    {"MacBook10,1", {.processorWatts = 7, .graphicsWatts = 0}},
    {"MacBookAir7,2", {.processorWatts = 20, .graphicsWatts = 0}},
    {"MacBookAir8,1", {.processorWatts = 12, .graphicsWatts = 0}},
    {"MacBookPro11,4", {.processorWatts = 47, .graphicsWatts = 0}},
    {"MacBookPro13,3", {.processorWatts = 45, .graphicsWatts = 35}},
    {"MacBookPro16,1", {.processorWatts = 65, .graphicsWatts = 50}},
    {"MacBookPro5,1", {.processorWatts = 30, .graphicsWatts = 20}},
    {"MacPro6,1", {.processorWatts = 130, .graphicsWatts = 220}},
    {"MacPro7,1", {.processorWatts = 205, .graphicsWatts = 0}},
    {"Macmini8,1", {.processorWatts = 65, .graphicsWatts = 0}},
    {"iMac11,2", {.processorWatts = 73, .graphicsWatts = 40}},
    {"iMac19,1", {.processorWatts = 95, .graphicsWatts = 100}},
});

// The temperature differences at full power, in kelvin, that determine the conductances.
constexpr double dieAboveSink = 28;
constexpr double sinkAboveRoomFullFlow = 44;
constexpr double fanlessSinkAboveRoom = 42;

// Time constants: half a minute for the heat sink, a minute and a half for the board, four minutes for the
// enclosure.
constexpr double dieSeconds = 1.2;
constexpr double sinkSeconds = 30;
constexpr double boardSeconds = 90;
constexpr double enclosureSeconds = 240;

} // namespace

MachinePowers machinePowers(std::string_view machineName) {
    const auto* found = std::find_if(knownPowers.begin(), knownPowers.end(),
                                     [&](const NamedPowers& entry) { return entry.machine == machineName; });
    return found == knownPowers.end() ? MachinePowers{} : found->powers;
}

ThermalParameters thermalParameters(const MachinePowers& powers, double roomCelsius, bool hasFans) {
    // The two dies are hardly ever at full power together, so the shared heat sink is sized for less than the
    // sum.
    const double shared = powers.processorWatts + 0.6 * powers.graphicsWatts;
    // A machine without a graphics die still has the node, which must not have a capacity of 0.
    const double graphics = std::max(powers.graphicsWatts, powers.processorWatts / 4);

    ThermalParameters parameters;
    parameters.roomCelsius = roomCelsius;
    parameters.dieToSink = powers.processorWatts / dieAboveSink;
    parameters.graphicsToSink = graphics / dieAboveSink;
    parameters.dieToBoard = powers.processorWatts / 400;
    parameters.graphicsToBoard = graphics / 400;
    parameters.sinkToBoard = shared / 150;
    parameters.boardToEnclosure = shared / 100;
    parameters.enclosureToRoom = shared / 30;
    parameters.sinkToRoomFullFlow = shared / (hasFans ? sinkAboveRoomFullFlow : fanlessSinkAboveRoom);
    parameters.sinkToRoomStill = parameters.sinkToRoomFullFlow * (hasFans ? 0.25 : 1.0);

    at(parameters.capacity, ThermalNode::die) = dieSeconds * parameters.dieToSink;
    at(parameters.capacity, ThermalNode::graphics) = dieSeconds * parameters.graphicsToSink;
    at(parameters.capacity, ThermalNode::sink) = sinkSeconds * parameters.sinkToRoomFullFlow * 0.6;
    at(parameters.capacity, ThermalNode::board) =
        boardSeconds * (parameters.sinkToBoard + parameters.boardToEnclosure);
    at(parameters.capacity, ThermalNode::enclosure) =
        enclosureSeconds * (parameters.boardToEnclosure + parameters.enclosureToRoom);
    return parameters;
}

double processorWattsFor(const ThermalParameters& parameters, double dieCelsius, double graphicsWatts,
                         double airflow) {
    // The network is linear, so two points determine the line.
    const auto dieAt = [&](double watts) {
        const ThermalState state = balance(
            parameters, {.processorWatts = watts, .graphicsWatts = graphicsWatts, .airflow = airflow});
        return at(state.celsius, ThermalNode::die);
    };
    const double cold = dieAt(0);
    const double perWatt = dieAt(1) - cold;
    return std::max(0.0, (dieCelsius - cold) / perWatt);
}

AutomaticCurve automaticCurveThrough(double recordedCelsius, double recordedShare) {
    constexpr double noticeable = 0.02;
    AutomaticCurve curve;
    if (recordedShare < noticeable) {
        // The fans were at their minimum, so the curve starts above the recorded temperature.
        curve.startCelsius = std::max(65.0, std::min(90.0, recordedCelsius + 4));
    } else {
        const double start =
            (recordedCelsius - recordedShare * curve.fullCelsius) / (1.0 - std::min(0.9, recordedShare));
        curve.startCelsius = std::max(45.0, std::min(90.0, start));
    }
    return curve;
}

} // namespace simulated
