// The stored form of the fans' settings: a JSON text.
//
// {"0":{"mode":"sensor","constantRPM":3000,"sensorKey":"TC0P","startTemp":50,"maxTemp":90},"1":{…}}
//
// Members are named by the fan's index in decimal; all five fields are needed and others are ignored. Pure;
// any thread.

#pragma once

#include "Fenwhirl/Monitoring/FanSetting.h"

#include <QByteArray>

#include <optional>

// Nothing when a number is not finite, because JSON has no such numbers.
[[nodiscard]] std::optional<QByteArray> encodeFanSettings(const FanSettings& settings);

// Nothing for anything that is not exactly such a text, also when only one fan of many is wrong, and for a
// text beyond any honest size.
[[nodiscard]] std::optional<FanSettings> decodeFanSettings(const QByteArray& json);
