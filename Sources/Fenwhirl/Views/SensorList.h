// Temperatures as rows ready to be shown: a name, a text, a bar.
//
// Rows are updated in place: a reading that shows the same text and bar as before changes nothing, and views
// hear only of rows and roles that differ.
//
// Threads: main thread only.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqmlregistration.h>

// What one row shows of a sensor.
struct ShownSensor {
    QString name;
    QString temperature; // "63 °C"
    double fraction;     // of the bar, 0 to 1: full at 100 °C
    bool hot;            // 80 °C or more, whatever the user's own thresholds are

    bool operator==(const ShownSensor&) const = default;
};

[[nodiscard]] ShownSensor shown(const SensorState& sensor);

// By shown name, ascending, compared as plain strings; sensors of the same name stay in their order.
[[nodiscard]] QList<ShownSensor> shownSortedByName(const QList<SensorState>& sensors);

class SensorList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the machine view")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { NameRole = Qt::UserRole, TemperatureRole, FractionRole, HotRole };

    using QAbstractListModel::QAbstractListModel;

    void setSensors(const QList<ShownSensor>& sensors);

    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    QList<ShownSensor> rows_;
};
