#include "SimulatedMac/ThermalModel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace simulated {

namespace {

constexpr double throttleStartCelsius = 97;
constexpr double throttleBandKelvin = 5;
constexpr double leastGrant = 0.1;

// Well below the shortest time constant (a die's, over a second), even when throttling makes the system
// stiffer.
constexpr double longestThermalStepSeconds = 0.02;

using Matrix = std::array<PerNode, thermalNodeCount>;

void connect(Matrix& matrix, ThermalNode a, ThermalNode b, double conductance) {
    const auto i = static_cast<std::size_t>(a);
    const auto j = static_cast<std::size_t>(b);
    matrix[i][i] += conductance;
    matrix[j][j] += conductance;
    matrix[i][j] -= conductance;
    matrix[j][i] -= conductance;
}

void connectToRoom(Matrix& matrix, ThermalNode node, double conductance) {
    const auto i = static_cast<std::size_t>(node);
    matrix[i][i] += conductance;
}

// This matrix times the temperatures above the room's gives the heat that leaves each node.
Matrix conductanceMatrix(const ThermalParameters& parameters, double airflow) {
    Matrix matrix{};
    connect(matrix, ThermalNode::die, ThermalNode::sink, parameters.dieToSink);
    connect(matrix, ThermalNode::graphics, ThermalNode::sink, parameters.graphicsToSink);
    connect(matrix, ThermalNode::die, ThermalNode::board, parameters.dieToBoard);
    connect(matrix, ThermalNode::graphics, ThermalNode::board, parameters.graphicsToBoard);
    connect(matrix, ThermalNode::sink, ThermalNode::board, parameters.sinkToBoard);
    connect(matrix, ThermalNode::board, ThermalNode::enclosure, parameters.boardToEnclosure);
    connectToRoom(matrix, ThermalNode::enclosure, parameters.enclosureToRoom);
    connectToRoom(matrix, ThermalNode::sink, sinkConductance(parameters, airflow));
    return matrix;
}

} // namespace

double grantedPower(double dieCelsius) {
    const double above = (dieCelsius - throttleStartCelsius) / throttleBandKelvin;
    return 1.0 - (1.0 - leastGrant) * std::min(1.0, std::max(0.0, above));
}

double sinkConductance(const ThermalParameters& parameters, double airflow) {
    // Forced convection grows somewhat more slowly than the flow; 0.8 is the usual exponent for turbulent
    // air.
    const double flow = std::min(1.0, std::max(0.0, airflow));
    return parameters.sinkToRoomStill +
           (parameters.sinkToRoomFullFlow - parameters.sinkToRoomStill) * std::pow(flow, 0.8);
}

ThermalState step(ThermalState state, const ThermalParameters& parameters, const ThermalInputs& inputs,
                  double seconds) {
    if (!(seconds > 0)) {
        return state;
    }
    const Matrix matrix = conductanceMatrix(parameters, inputs.airflow);
    const auto steps = static_cast<std::int64_t>(std::ceil(seconds / longestThermalStepSeconds));
    const double stepSeconds = seconds / static_cast<double>(steps);
    for (std::int64_t done = 0; done < steps; ++done) {
        PerNode heat{};
        for (std::size_t i = 0; i < thermalNodeCount; ++i) {
            for (std::size_t j = 0; j < thermalNodeCount; ++j) {
                heat[i] -= matrix[i][j] * (state.celsius[j] - parameters.roomCelsius);
            }
        }
        at(heat, ThermalNode::die) +=
            inputs.processorWatts * grantedPower(at(state.celsius, ThermalNode::die));
        at(heat, ThermalNode::graphics) +=
            inputs.graphicsWatts * grantedPower(at(state.celsius, ThermalNode::graphics));
        for (std::size_t i = 0; i < thermalNodeCount; ++i) {
            state.celsius[i] += heat[i] / parameters.capacity[i] * stepSeconds;
        }
    }
    return state;
}

ThermalState balance(const ThermalParameters& parameters, const ThermalInputs& inputs) {
    Matrix matrix = conductanceMatrix(parameters, inputs.airflow);
    PerNode heat{};
    at(heat, ThermalNode::die) = inputs.processorWatts;
    at(heat, ThermalNode::graphics) = inputs.graphicsWatts;
    // Elimination without pivoting is stable here: each row's diagonal is at least the sum of its other
    // entries.
    for (std::size_t pivot = 0; pivot < thermalNodeCount; ++pivot) {
        for (std::size_t row = pivot + 1; row < thermalNodeCount; ++row) {
            const double factor = matrix[row][pivot] / matrix[pivot][pivot];
            for (std::size_t column = pivot; column < thermalNodeCount; ++column) {
                matrix[row][column] -= factor * matrix[pivot][column];
            }
            heat[row] -= factor * heat[pivot];
        }
    }
    ThermalState state;
    for (std::size_t row = thermalNodeCount; row-- > 0;) {
        double rise = heat[row];
        for (std::size_t column = row + 1; column < thermalNodeCount; ++column) {
            rise -= matrix[row][column] * (state.celsius[column] - parameters.roomCelsius);
        }
        state.celsius[row] = parameters.roomCelsius + rise / matrix[row][row];
    }
    return state;
}

} // namespace simulated
