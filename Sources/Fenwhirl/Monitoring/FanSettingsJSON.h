// The stored form of the fans' settings: a JSON text.
//
// {"0":{"mode":"sensor","constantRPM":3000,"sensorKey":"TC0P","startTemp":50,"maxTemp":90},"1":{…}}
//
// Members are named by the fan's index in decimal. All five fields are required; others are
// ignored. Pure; any thread.

#pragma once

#include "Fenwhirl/Monitoring/FanSetting.h"

#include <QByteArray>

#include <optional>

namespace Fenwhirl {

// Absent when a number is not finite, because JSON cannot represent it.
[[nodiscard]] std::optional<QByteArray> encodeFanSettings(const FanSettings& settings);

// Absent for anything that does not have exactly this form, even if only one of many fans is invalid, and for
// a text of implausible size.
[[nodiscard]] std::optional<FanSettings> decodeFanSettings(const QByteArray& json);

} // namespace Fenwhirl
