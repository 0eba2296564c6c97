#include "Fenwhirl/Monitoring/FanSetting.h"

#include "Fenwhirl/Monitoring/RawValues.h"
#include "FenwhirlCore/NumberText.h"

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

constexpr RawValueTable<FanModeKind, 3> modeWords = {
    {{FanModeKind::automatic, "auto"}, {FanModeKind::constant, "constant"}, {FanModeKind::sensor, "sensor"}}};

// Not written with std::clamp, which is undefined for a fan that reports a maximum below its minimum. In that
// case the maximum wins.
std::optional<std::int64_t> constantTarget(double wanted, double minRPM, double maxRPM) {
    if (std::isnan(wanted) || std::isnan(minRPM) || std::isnan(maxRPM)) {
        return std::nullopt; // the comparisons below would silently pick one of the other two
    }
    const double atLeastMinimum = wanted > minRPM ? wanted : minRPM;
    return NumberText::exactWhole(atLeastMinimum < maxRPM ? atLeastMinimum : maxRPM);
}

double drivingCelsius(const std::string& sensorKey, std::span<const TemperatureReading> temperatures,
                      std::optional<double> primaryCelsius) {
    if (!sensorKey.empty()) {
        const auto found = std::ranges::find(temperatures, sensorKey, &TemperatureReading::key);
        if (found != temperatures.end()) {
            return found->celsius;
        }
    }
    return primaryCelsius.value_or(0);
}

std::optional<std::int64_t> curveTarget(const FanSetting& setting, double celsius, double minRPM,
                                        double maxRPM) {
    constexpr double stepRPM = 50;
    double span = setting.maxTemp - setting.startTemp;
    if (span < 1) {
        span = 1;
    }
    // NaN passes both comparisons and is rejected by exactWhole.
    double fraction = (celsius - setting.startTemp) / span;
    if (fraction <= 0) {
        fraction = 0;
    } else if (fraction > 1) {
        fraction = 1;
    }
    const double rpm = minRPM + (maxRPM - minRPM) * fraction;
    return NumberText::exactWhole(std::round(rpm / stepRPM) * stepRPM);
}

} // namespace

std::string_view rawValue(FanModeKind mode) {
    return rawValueIn(modeWords, mode);
}

std::optional<FanModeKind> fanModeFromRawValue(std::string_view text) {
    return caseIn(modeWords, text);
}

std::optional<std::int64_t> targetRPM(const FanSetting& setting, double minRPM, double maxRPM,
                                      std::span<const TemperatureReading> temperatures,
                                      std::optional<double> primaryCelsius) {
    switch (setting.mode) {
    case FanModeKind::automatic:
        return std::nullopt;
    case FanModeKind::constant:
        return constantTarget(setting.constantRPM, minRPM, maxRPM);
    case FanModeKind::sensor:
        return curveTarget(setting, drivingCelsius(setting.sensorKey, temperatures, primaryCelsius), minRPM,
                           maxRPM);
    }
    return std::nullopt;
}

} // namespace Fenwhirl
