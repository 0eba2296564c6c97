#include "Fenwhirl/Monitoring/SensorRecord.h"

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

constexpr std::chrono::duration<double> window{600};
constexpr std::chrono::duration<double> spanLength{30};

} // namespace

void SensorRecord::moveTo(std::int64_t span) {
    if (span_ == span) {
        return;
    }
    for (auto sensor = sensors_.begin(); sensor != sensors_.end();) {
        bool isEmpty = true;
        for (std::int64_t passed = std::max(*span_ + 1, span - spans + 1); passed <= span; ++passed) {
            (*sensor)[static_cast<std::size_t>(passed % spans)] = {};
        }
        for (const Range& range : *sensor) {
            isEmpty = isEmpty && range.lowest > range.highest;
        }
        // A sensor that is no longer read is removed.
        sensor = isEmpty ? sensors_.erase(sensor) : std::next(sensor);
    }
    span_ = span;
}

void SensorRecord::add(QList<SensorState>& sensors, std::chrono::duration<double> now) {
    const auto span = static_cast<std::int64_t>(std::floor(now / spanLength));
    if (!span_ || now - lastAdded_ > window || now < lastAdded_ || span < 0) {
        sensors_.clear();
        span_ = std::max<std::int64_t>(span, 0);
    }
    moveTo(std::max<std::int64_t>(span, 0));
    lastAdded_ = now;

    for (SensorState& sensor : sensors) {
        sensor.lowestCelsius = sensor.celsius;
        sensor.highestCelsius = sensor.celsius;
        if (!std::isfinite(sensor.celsius)) {
            continue;
        }
        auto& ranges = sensors_[sensor.id];
        const auto celsius = static_cast<float>(sensor.celsius);
        Range& running = ranges[static_cast<std::size_t>(*span_ % spans)];
        running.lowest = std::min(running.lowest, celsius);
        running.highest = std::max(running.highest, celsius);
        for (const Range& range : ranges) {
            sensor.lowestCelsius = std::min(sensor.lowestCelsius, static_cast<double>(range.lowest));
            sensor.highestCelsius = std::max(sensor.highestCelsius, static_cast<double>(range.highest));
        }
    }
}

} // namespace Fenwhirl
