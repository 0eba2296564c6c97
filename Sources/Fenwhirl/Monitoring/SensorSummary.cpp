#include "Fenwhirl/Monitoring/SensorSummary.h"

#include "FenwhirlCore/SensorNames.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Fenwhirl {

namespace {

constexpr qsizetype featuredCount = 6;

bool isProcessorKey(const std::string& key) {
    constexpr std::array<std::string_view, 4> prefixes = {"TC", "Tp", "Te", "Tf"};
    return std::ranges::any_of(prefixes, [&](std::string_view prefix) { return key.starts_with(prefix); });
}

// The highest value among the readings whose keys `counts` accepts.
template <typename Predicate>
std::optional<double> hottest(std::span<const TemperatureReading> readings, Predicate counts) {
    std::optional<double> result;
    for (const TemperatureReading& reading : readings) {
        if (counts(reading.key) && (!result || reading.celsius > *result)) {
            result = reading.celsius;
        }
    }
    return result;
}

} // namespace

std::optional<double> primaryTemperature(std::span<const TemperatureReading> readings) {
    for (const std::string_view key : SensorNames::primaryKeys) {
        const auto found = std::ranges::find(readings, key, &TemperatureReading::key);
        if (found != readings.end()) {
            return found->celsius;
        }
    }
    if (const auto processor = hottest(readings, isProcessorKey)) {
        return processor;
    }
    return hottest(readings, [](const std::string&) { return true; });
}

QList<SensorState> featuredSensors(const QList<SensorState>& sensors) {
    QList<SensorState> chosen;
    for (const std::string_view key : SensorNames::featuredKeys) {
        const QLatin1StringView id(key.data(), static_cast<qsizetype>(key.size()));
        const auto found = std::ranges::find(sensors, id, &SensorState::id);
        if (found != sensors.end()) {
            chosen.append(*found);
            if (chosen.size() == featuredCount) {
                return chosen;
            }
        }
    }

    QList<SensorState> rest;
    for (const SensorState& sensor : sensors) {
        if (std::ranges::find(chosen, sensor.id, &SensorState::id) == chosen.end()) {
            rest.append(sensor);
        }
    }
    std::ranges::stable_sort(rest, std::ranges::greater(), &SensorState::celsius);
    chosen.append(rest.first(std::min(rest.size(), featuredCount - chosen.size())));
    return chosen;
}

HealthStatus healthStatus(std::optional<double> primaryCelsius, double warmThreshold, double hotThreshold) {
    if (!primaryCelsius) {
        return HealthStatus::normal;
    }
    if (*primaryCelsius >= hotThreshold) {
        return HealthStatus::hot;
    }
    return *primaryCelsius >= warmThreshold ? HealthStatus::warm : HealthStatus::normal;
}

} // namespace Fenwhirl
