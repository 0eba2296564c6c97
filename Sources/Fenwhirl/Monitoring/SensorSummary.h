// What a list of temperatures says at a glance: the main temperature, the sensors to show first, the verdict.
//
// Pure functions on the readings of one poll; temperatures in degrees Celsius. Safe on every thread, but for
// nothing else than their arguments.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"
#include "FenwhirlCore/SMC.h"

#include <QList>

#include <optional>
#include <span>

// The main temperature: the first key of SensorNames::primaryKeys that has a reading (the order of that list
// decides, not the heat); else the hottest processor sensor (keys that begin with "TC", "Tp", "Te" or "Tf");
// else the hottest of all; nothing without readings.
[[nodiscard]] std::optional<double> primaryTemperature(std::span<const TemperatureReading> readings);

// At most six sensors: those of SensorNames::featuredKeys in that order, filled up with the hottest others;
// equally hot ones keep their order.
[[nodiscard]] QList<SensorState> featuredSensors(const QList<SensorState>& sensors);

// The verdict; a threshold counts from exactly its value on. Normal without a temperature.
[[nodiscard]] HealthStatus healthStatus(std::optional<double> primaryCelsius, double warmThreshold,
                                        double hotThreshold);
