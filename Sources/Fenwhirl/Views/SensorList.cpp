#include "Fenwhirl/Views/SensorList.h"

#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Localization/SensorLabel.h"
#include "Fenwhirl/Views/Components/SensorBar.h"

#include <algorithm>

namespace Fenwhirl {

namespace {

// In °C. A peak less than this above the reading says nothing.
constexpr double leastPeakDistance = 2.0;

} // namespace

SensorListEntry shown(const SensorState& sensor) {
    const bool hasPeak = sensor.highestCelsius - sensor.celsius >= leastPeakDistance;
    return {
        .id = sensor.id,
        .name = SensorLabel::name(sensor.id),
        .temperature = NumberFormat::temperatureText(sensor.celsius),
        .fraction = sensorBarFraction(sensor.celsius),
        .hot = sensorBarIsHot(sensor.celsius),
        .peak = hasPeak ? sensorBarFraction(sensor.highestCelsius) : 0.0,
        .peakHot = sensorBarIsHot(sensor.highestCelsius),
        .range = NumberFormat::rangeText(NumberFormat::degreesText(sensor.lowestCelsius),
                                         NumberFormat::temperatureText(sensor.highestCelsius)),
    };
}

QList<SensorListEntry> shownSortedByName(const QList<SensorState>& sensors) {
    QList<SensorListEntry> rows;
    rows.reserve(sensors.size());
    for (const SensorState& sensor : sensors) {
        rows.append(shown(sensor));
    }
    std::stable_sort(rows.begin(), rows.end(), [](const SensorListEntry& left, const SensorListEntry& right) {
        return left.name < right.name;
    });
    return rows;
}

SensorList::SensorList(QObject* parent)
    : RowList({"name", "temperature", "fraction", "hot", "peak", "peakHot", "range"}, parent) {}

void SensorList::setSensors(const QList<SensorListEntry>& sensors) {
    QList<Row> rows;
    rows.reserve(sensors.size());
    for (const SensorListEntry& sensor : sensors) {
        rows.append({sensor.id,
                     {sensor.name, sensor.temperature, sensor.fraction, sensor.hot, sensor.peak,
                      sensor.peakHot, sensor.range}});
    }
    setRows(rows);
}

} // namespace Fenwhirl
