// What a list of fans says at a glance: the average speed, the text of the status item, a fan's name.
//
// Pure functions on the published fans; speeds in revolutions per minute. Main thread, because the texts are
// in the interface language.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"

#include <QList>
#include <QString>

#include <optional>

// The mean of the fans' current speeds; 0 without fans.
[[nodiscard]] double averageFanSpeed(const QList<FanState>& fans);

// "2 400 tr/min · 63 °C", either part alone when the other is unknown, the program's name when both are.
[[nodiscard]] QString statusItemText(const QList<FanState>& fans, std::optional<double> primaryCelsius);

// One fan needs no number, two are the left (index 0) and the right one, more are numbered from 1.
[[nodiscard]] QString fanDisplayName(const FanState& fan, qsizetype fanCount);
