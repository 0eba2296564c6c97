// Temperatures as rows ready for display, each with a name, a text and a bar.
//
// Threads: main thread only. Roles: the members of SensorListEntry except `id`, under the same names.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"
#include "Fenwhirl/Views/RowList.h"

#include <QList>
#include <QtQml/qqmlregistration.h>

namespace Fenwhirl {

// What one row shows of a sensor.
struct SensorListEntry {
    QString id; // the SMC key; identifies the sensor across readings
    QString name;
    QString temperature; // "63 °C"
    double fraction;     // filled part of the bar, 0 to 1; full at 100 °C
    bool hot;            // 80 °C or more, independent of the user's thresholds
    double peak;         // highest `fraction` in ten minutes; 0 unless 2 °C or more above the reading
    bool peakHot;        // like `hot`, for the peak
    QString range;       // "55 – 71 °C": the lowest and highest in that time

    bool operator==(const SensorListEntry&) const = default;
};

[[nodiscard]] SensorListEntry shown(const SensorState& sensor);

// Sorted by displayed name, ascending, compared as plain strings; sensors of the same name keep their order.
[[nodiscard]] QList<SensorListEntry> shownSortedByName(const QList<SensorState>& sensors);

class SensorList : public Fenwhirl::RowList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the machine view")

public:
    explicit SensorList(QObject* parent = nullptr);

    void setSensors(const QList<SensorListEntry>& sensors);
};

} // namespace Fenwhirl
