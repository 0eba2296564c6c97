// How the user wants one fan to be driven, and which speed that means at a given temperature.
//
// Speeds are in revolutions per minute, temperatures in degrees Celsius. Plain values, safe on every thread.

#pragma once

#include "FenwhirlCore/SMC.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Fenwhirl {

enum class FanModeKind {
    automatic, // macOS controls the fan; no target is sent
    constant,  // held at `constantRPM`, within the fan's own range
    sensor,    // follows a line between `startTemp` and `maxTemp`
};

inline constexpr std::array<FanModeKind, 3> allFanModeKinds = {FanModeKind::automatic, FanModeKind::constant,
                                                               FanModeKind::sensor};

// The value in the stored settings: "auto", "constant" or "sensor".
[[nodiscard]] std::string_view rawValue(FanModeKind mode);
[[nodiscard]] std::optional<FanModeKind> fanModeFromRawValue(std::string_view text);

struct FanSetting {
    FanModeKind mode = FanModeKind::automatic;
    double constantRPM = 3000;
    std::string sensorKey; // the sensor that drives the curve; empty means the main temperature
    double startTemp = 50; // at or below it the fan runs at its minimum
    double maxTemp = 90;   // at or above it the fan runs at its maximum

    bool operator==(const FanSetting&) const = default;
};

// By zero-based fan index. A fan without an entry is treated as if it had the default setting.
using FanSettings = std::map<int, FanSetting>;

// The speed that the setting requests, in whole rpm; absent when the fan is to be automatic, that is in
// automatic mode and when the numbers involved are not finite. Constant: clamped to the fan's range (the
// maximum wins) and truncated. Sensor: linear between minimum and maximum, rounded to the nearest 50 rpm; a
// span below 1 °C is taken as 1 °C. A missing sensor falls back to the main temperature, and a missing main
// temperature to 0 °C.
[[nodiscard]] std::optional<std::int64_t> targetRPM(const FanSetting& setting, double minRPM, double maxRPM,
                                                    std::span<const TemperatureReading> temperatures,
                                                    std::optional<double> primaryCelsius);

} // namespace Fenwhirl
