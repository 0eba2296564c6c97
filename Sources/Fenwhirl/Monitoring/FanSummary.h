// Summarises a list of fans: the average speed, the text of the status item, the fans' names.
//
// Pure functions of the published fans; speeds are in revolutions per minute. Main thread, because the texts
// are in the interface language.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"

#include <QList>
#include <QString>

#include <optional>

namespace Fenwhirl {

// The mean of the fans' current speeds; 0 without fans.
[[nodiscard]] double averageFanSpeed(const QList<FanState>& fans);

// "2 400 tr/min · 63 °C"; only one part when the other is unknown; the program's name when both are.
[[nodiscard]] QString statusItemText(const QList<FanState>& fans, std::optional<double> primaryCelsius);

// A single fan has no number, two fans are the left (index 0) and the right one, more are numbered from 1.
[[nodiscard]] QString fanDisplayName(const FanState& fan, qsizetype fanCount);

} // namespace Fenwhirl
