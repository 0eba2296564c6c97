// Temperatures as rows ready to be shown: a name, a text, a bar.
//
// Threads: main thread only. Roles: those of ShownSensor, by the same names.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"
#include "Fenwhirl/Views/RowList.h"

#include <QList>
#include <QtQml/qqmlregistration.h>

// What one row shows of a sensor.
struct ShownSensor {
    QString id; // by which it is known again
    QString name;
    QString temperature; // "63 °C"
    double fraction;     // of the bar, 0 to 1: full at 100 °C
    bool hot;            // 80 °C or more, whatever the user's own thresholds are
    double peak;   // where the bar was in the last ten minutes; 0 unless 2 °C or more above the reading
    bool peakHot;  // as `hot`, for the peak
    QString range; // "55 – 71 °C": between which it was in that time

    bool operator==(const ShownSensor&) const = default;
};

[[nodiscard]] ShownSensor shown(const SensorState& sensor);

// By shown name, ascending, compared as plain strings; sensors of the same name stay in their order.
[[nodiscard]] QList<ShownSensor> shownSortedByName(const QList<SensorState>& sensors);

class SensorList : public RowList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the machine view")

public:
    explicit SensorList(QObject* parent = nullptr);

    void setSensors(const QList<ShownSensor>& sensors);
};
