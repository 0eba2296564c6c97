#include "SimulatedMac/SensorModel.h"

#include "SimulatedMac/FourCC.h"
#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace simulated {

namespace {

struct NodeOfPrefix {
    char second;
    ThermalNode node;
};

// The node of a sensor, by the second letter of its key, on Macs with Intel processors.
constexpr std::array<NodeOfPrefix, 13> intelNodes{{
    {'C', ThermalNode::die},       // processor
    {'G', ThermalNode::graphics},  // graphics
    {'J', ThermalNode::graphics},  // second graphics module
    {'h', ThermalNode::sink},      // heat pipes
    {'B', ThermalNode::enclosure}, // batteries
    {'L', ThermalNode::enclosure}, // display
    {'s', ThermalNode::enclosure}, // palm rest, skin
    {'A', ThermalNode::enclosure}, // air
    {'a', ThermalNode::enclosure},
    {'O', ThermalNode::enclosure}, // optical drive
    {'K', ThermalNode::enclosure}, // keyboard
    {'N', ThermalNode::board},     // chipset
    {'P', ThermalNode::board},
}};

// The same on Macs with Apple's own processors, where cores and graphics share one die.
constexpr std::array<NodeOfPrefix, 7> appleSiliconNodes{{
    {'p', ThermalNode::die}, // performance cores
    {'e', ThermalNode::die}, // efficiency cores
    {'f', ThermalNode::die},
    {'g', ThermalNode::graphics},
    {'s', ThermalNode::enclosure},
    {'B', ThermalNode::enclosure},
    {'a', ThermalNode::enclosure},
}};

bool isAppleSilicon(const MachineTable& table) {
    return std::any_of(table.keys.begin(), table.keys.end(),
                       [](const KeyRecord& key) { return key.code == fourCC("Ftst"); });
}

ThermalNode nodeOf(FourCC code, bool appleSilicon) {
    const auto second = static_cast<char>(code >> 16);
    const auto fourth = static_cast<char>(code);
    // "Proximity" and heat-sink sensors sit beside the die that they are named after.
    if ((second == 'C' || second == 'G') && (fourth == 'P' || fourth == 'p' || fourth == 'H')) {
        return ThermalNode::sink;
    }
    const auto search = [&](const auto& nodes) {
        const auto* found = std::find_if(nodes.begin(), nodes.end(),
                                         [&](const NodeOfPrefix& entry) { return entry.second == second; });
        return found == nodes.end() ? ThermalNode::board : found->node;
    };
    return appleSilicon ? search(appleSiliconNodes) : search(intelNodes);
}

// The recorded temperature of a key; absent for other keys and for values that no part inside a computer has.
std::optional<double> recordedTemperature(const KeyRecord& key) {
    constexpr double lowest = 12;
    constexpr double highest = 110;
    if ((key.code >> 24) != 'T' || key.readResult != 0 ||
        (key.type != fourCC("sp78") && key.type != fourCC("flt "))) {
        return std::nullopt;
    }
    const auto celsius = decodeValue(key.type, key.bytes);
    return celsius && *celsius > lowest && *celsius < highest ? celsius : std::nullopt;
}

// A pseudorandom number in -1…1 that depends on its arguments alone.
double noise(std::uint32_t code, std::uint32_t step) {
    std::uint32_t hash = code * 0x9E3779B1U ^ step * 0x85EBCA77U;
    hash ^= hash >> 15;
    hash *= 0xC2B2AE3DU;
    hash ^= hash >> 13;
    return static_cast<double>(hash) / 2147483648.0 - 1.0;
}

double wander(FourCC code, double seconds) {
    constexpr double period = 4;
    // Wraps around, so that the step number and its successor fit into 32 bits.
    const double position = std::fmod(std::max(0.0, seconds) / period, 4294967295.0);
    const auto step = static_cast<std::uint32_t>(position);
    const double share = position - std::floor(position);
    return noise(code, step) * (1 - share) + noise(code, step + 1) * share;
}

} // namespace

double recordedRoomCelsius(const MachineTable& table) {
    constexpr double usual = 24;
    for (const KeyRecord& key : table.keys) {
        if (key.code == fourCC("TA0V")) { // the machine's own estimate of the ambient air
            const double celsius = recordedTemperature(key).value_or(usual);
            return celsius > 15 && celsius < 30 ? celsius : usual;
        }
    }
    return usual;
}

std::optional<double> recordedDieCelsius(const MachineTable& table) {
    const bool appleSilicon = isAppleSilicon(table);
    std::vector<double> dies;
    for (const KeyRecord& key : table.keys) {
        const auto celsius = recordedTemperature(key);
        if (celsius && nodeOf(key.code, appleSilicon) == ThermalNode::die) {
            dies.push_back(*celsius);
        }
    }
    if (dies.empty()) {
        return std::nullopt;
    }
    const auto middle = dies.begin() + static_cast<std::ptrdiff_t>((dies.size() - 1) / 2);
    std::nth_element(dies.begin(), middle, dies.end());
    return *middle;
}

std::vector<Sensor> movingSensors(const MachineTable& table, const ThermalState& reference,
                                  double roomCelsius) {
    constexpr double leastGain = 0.25;
    constexpr double mostGain = 1.2;
    const bool appleSilicon = isAppleSilicon(table);
    std::vector<Sensor> sensors;
    for (std::size_t i = 0; i < table.keys.size(); ++i) {
        const KeyRecord& key = table.keys[i];
        const auto celsius = recordedTemperature(key);
        if (!celsius) {
            continue;
        }
        Sensor sensor{.keyIndex = i,
                      .code = key.code,
                      .node = nodeOf(key.code, appleSilicon),
                      .recordedCelsius = *celsius,
                      .gain = 1,
                      .wholeDegrees = *celsius == std::floor(*celsius)};
        const double lumpRise = std::max(1.0, at(reference.celsius, sensor.node) - roomCelsius);
        sensor.gain = std::max(leastGain, std::min(mostGain, (*celsius - roomCelsius) / lumpRise));
        sensors.push_back(sensor);
    }
    return sensors;
}

double sensorCelsius(const Sensor& sensor, const ThermalState& reference, const ThermalState& state,
                     double seconds) {
    const bool onDie = sensor.node == ThermalNode::die || sensor.node == ThermalNode::graphics;
    const double change = at(state.celsius, sensor.node) - at(reference.celsius, sensor.node);
    const double celsius =
        sensor.recordedCelsius + sensor.gain * change + (onDie ? 0.4 : 0.1) * wander(sensor.code, seconds);
    return sensor.wholeDegrees ? std::round(celsius) : celsius;
}

double shownRPM(unsigned fan, double rpm, double seconds) {
    constexpr double unevenness = 0.0012; // of the speed
    constexpr double atRest = 20;
    return rpm < atRest ? 0 : rpm * (1 + unevenness * wander(fanKey(fan, "Ac"), seconds));
}

} // namespace simulated
