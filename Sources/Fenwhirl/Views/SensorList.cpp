#include "Fenwhirl/Views/SensorList.h"

#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Localization/SensorLabel.h"
#include "Fenwhirl/Views/Components/SensorBar.h"

#include <algorithm>

ShownSensor shown(const SensorState& sensor) {
    return {
        .name = SensorLabel::name(sensor.id),
        .temperature = NumberFormat::temperatureText(sensor.celsius),
        .fraction = Fenwhirl::sensorBarFraction(sensor.celsius),
        .hot = Fenwhirl::sensorBarIsHot(sensor.celsius),
    };
}

QList<ShownSensor> shownSortedByName(const QList<SensorState>& sensors) {
    QList<ShownSensor> rows;
    rows.reserve(sensors.size());
    for (const SensorState& sensor : sensors)
        rows.append(shown(sensor));
    std::stable_sort(rows.begin(), rows.end(), [](const ShownSensor& left, const ShownSensor& right) {
        return left.name < right.name;
    });
    return rows;
}

SensorList::SensorList(QObject* parent) : RowList({"name", "temperature", "fraction", "hot"}, parent) {}

void SensorList::setSensors(const QList<ShownSensor>& sensors) {
    QList<QVariantList> rows;
    rows.reserve(sensors.size());
    for (const ShownSensor& sensor : sensors)
        rows.append({sensor.name, sensor.temperature, sensor.fraction, sensor.hot});
    setRows(rows);
}
