// How a Mac warms up and cools down: a thermal network of five nodes, each with one temperature.
//
//      processor die ──┐
//                      ├── heat sink ── air moved by the fans
//      graphics die ───┘       │
//            │                 │
//            └────── logic board ── enclosure ── room
//
// Heat enters at the dies, spreads along the conductances and leaves into the room, whose temperature is
// constant. A die follows its power within a second or two, the heat sink within half a minute, the enclosure
// within minutes. Everything here is a pure function of plain values; the caller owns state and time.

#pragma once

#include <array>
#include <cstddef>

namespace simulated {

enum class ThermalNode : std::size_t { die, graphics, sink, board, enclosure };
inline constexpr std::size_t thermalNodeCount = 5;

// One value per node, indexed by the node's number.
using PerNode = std::array<double, thermalNodeCount>;

constexpr double& at(PerNode& values, ThermalNode node) {
    return values[static_cast<std::size_t>(node)];
}

constexpr double at(const PerNode& values, ThermalNode node) {
    return values[static_cast<std::size_t>(node)];
}

// The constants of one machine. Conductances are in watts per kelvin, capacities in joules per kelvin.
struct ThermalParameters {
    double roomCelsius = 24;
    PerNode capacity{};
    double dieToSink = 0;
    double graphicsToSink = 0;
    double dieToBoard = 0;
    double graphicsToBoard = 0;
    double sinkToBoard = 0;
    double boardToEnclosure = 0;
    double enclosureToRoom = 0;
    double sinkToRoomStill = 0;    // with no fan turning
    double sinkToRoomFullFlow = 0; // with every fan at its maximum
};

// What acts on the network during a step.
struct ThermalInputs {
    double processorWatts = 0; // requested; throttling may grant less
    double graphicsWatts = 0;
    double airflow = 0; // 0 = fans at rest … 1 = all at their maximum
};

struct ThermalState {
    PerNode celsius{};
};

// The share of the requested power that a die gets at this temperature: 1 below 97 °C, falling to 0.1 at 102
// °C. A die therefore settles near 100 °C, however much power is requested.
[[nodiscard]] double grantedPower(double dieCelsius);

// The conductance from the heat sink to the room at an airflow of 0…1.
[[nodiscard]] double sinkConductance(const ThermalParameters& parameters, double airflow);

// The state after `seconds` (0 or more). The interval is split into steps short enough to be stable.
[[nodiscard]] ThermalState step(ThermalState state, const ThermalParameters& parameters,
                                const ThermalInputs& inputs, double seconds);

// The temperatures that constant inputs lead to, without throttling: the steady state of the network, solved
// directly.
[[nodiscard]] ThermalState balance(const ThermalParameters& parameters, const ThermalInputs& inputs);

} // namespace simulated
