// Temperatures: which keys are sensors, and what they read.

#include "FenwhirlCore/SMC.h"
#include "FenwhirlCore/SMCValue.h"

#include <unordered_set>

namespace Fenwhirl {

namespace {

// Both bounds are exclusive. At discovery, 1 °C or less means that the sensor is absent. Later, a real sensor
// may cool down that far and must not vanish. No part of a computer works at 130 °C: a key that reads so high
// is not a temperature.
constexpr double discoveryLowestCelsius = 1;
constexpr double readingLowestCelsius = 0;
constexpr double highestCelsius = 130;

bool isTemperatureType(std::uint32_t type) {
    return type == SMC::fourCC("sp78") || type == SMC::fourCC("flt ");
}

} // namespace

std::vector<std::string> SMC::discoverTemperatureKeys() {
    std::vector<std::string> keys;
    std::unordered_set<std::string> known;
    const std::uint64_t end = keyIndexEnd();
    for (std::uint64_t index = 0; index < end && !shouldStop(); ++index) {
        const auto key = keyAt(static_cast<std::uint32_t>(index));
        if (!key || !key->starts_with('T') || known.contains(*key)) {
            continue;
        }
        const auto keyInfo = info(*key);
        if (!keyInfo || !isTemperatureType(keyInfo->type)) {
            continue;
        }
        const auto value = read(*key, *keyInfo);
        const auto celsius = value ? value->number() : std::nullopt;
        if (celsius && *celsius > discoveryLowestCelsius && *celsius < highestCelsius) {
            known.insert(*key);
            keys.push_back(*key);
        }
    }
    return keys;
}

std::vector<TemperatureReading> SMC::readTemperatures(std::span<const std::string> keys) {
    std::vector<TemperatureReading> readings;
    readings.reserve(keys.size());
    for (const std::string& key : keys) {
        if (shouldStop()) {
            break;
        }
        const auto celsius = readValue(key);
        if (celsius && *celsius > readingLowestCelsius && *celsius < highestCelsius) {
            readings.push_back({.key = key, .celsius = *celsius});
        }
    }
    return readings;
}

} // namespace Fenwhirl
