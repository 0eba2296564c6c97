// Summarises a list of temperatures: the main temperature, the sensors to show first, the assessment.
//
// Pure functions of the readings of one poll; temperatures are in degrees Celsius. Safe on every thread.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"
#include "FenwhirlCore/SMC.h"

#include <QList>

#include <optional>
#include <span>

namespace Fenwhirl {

// The main temperature: the first key of SensorNames::primaryKeys that has a reading (the order of that list
// decides, not the temperature); otherwise the hottest processor sensor (keys that begin with "TC", "Tp",
// "Te" or "Tf"); otherwise the hottest of all; absent without readings.
[[nodiscard]] std::optional<double> primaryTemperature(std::span<const TemperatureReading> readings);

// At most six sensors: those of SensorNames::featuredKeys in that order, then the hottest of the others.
// Equally hot ones keep their order.
[[nodiscard]] QList<SensorState> featuredSensors(const QList<SensorState>& sensors);

// The assessment. A threshold is reached at exactly its value. Normal without a temperature.
[[nodiscard]] HealthStatus healthStatus(std::optional<double> primaryCelsius, double warmThreshold,
                                        double hotThreshold);

} // namespace Fenwhirl
