#include "Fenwhirl/Views/SensorList.h"

#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Localization/SensorLabel.h"

#include <algorithm>

namespace {

constexpr double fullBarCelsius = 100;
constexpr double hotBarCelsius = 80;

QList<int> changedRoles(const ShownSensor& before, const ShownSensor& after) {
    QList<int> roles;
    if (before.name != after.name)
        roles.append(SensorList::NameRole);
    if (before.temperature != after.temperature)
        roles.append(SensorList::TemperatureRole);
    if (before.fraction != after.fraction)
        roles.append(SensorList::FractionRole);
    if (before.hot != after.hot)
        roles.append(SensorList::HotRole);
    return roles;
}

} // namespace

ShownSensor shown(const SensorState& sensor) {
    return {
        .name = SensorLabel::name(sensor.id),
        .temperature = NumberFormat::temperatureText(sensor.celsius),
        .fraction = std::min(sensor.celsius / fullBarCelsius, 1.0),
        .hot = sensor.celsius >= hotBarCelsius,
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

void SensorList::setSensors(const QList<ShownSensor>& sensors) {
    const int before = count();
    const int after = static_cast<int>(sensors.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        rows_.resize(after);
        endRemoveRows();
    }
    for (int row = 0; row < count(); ++row) {
        const QList<int> roles = changedRoles(rows_.at(row), sensors.at(row));
        if (roles.isEmpty())
            continue;
        rows_[row] = sensors.at(row);
        Q_EMIT dataChanged(index(row), index(row), roles);
    }
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        rows_ += sensors.mid(before);
        endInsertRows();
    }
    if (after != before)
        Q_EMIT countChanged();
}

int SensorList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SensorList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ShownSensor& sensor = rows_.at(index.row());
    switch (role) {
    case NameRole:
        return sensor.name;
    case TemperatureRole:
        return sensor.temperature;
    case FractionRole:
        return sensor.fraction;
    case HotRole:
        return sensor.hot;
    default:
        return {};
    }
}

QHash<int, QByteArray> SensorList::roleNames() const {
    return {
        {NameRole, "name"}, {TemperatureRole, "temperature"}, {FractionRole, "fraction"}, {HotRole, "hot"}};
}
