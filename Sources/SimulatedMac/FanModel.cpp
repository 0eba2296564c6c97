#include "SimulatedMac/FanModel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace simulated {

namespace {

constexpr double approachSeconds = 0.7;
constexpr double longestFanStepSeconds = 0.1;
// A laptop blower needs about four seconds from rest to its maximum and coasts down more slowly.
constexpr double fullAccelerationSeconds = 4;
constexpr double fullCoastingSeconds = 6;
constexpr double restBelowStartKelvin = 5;
constexpr double stopBelowStartKelvin = 15;

double withinFan(double rpm, const FanLimits& limits) {
    return std::max(0.0, std::min(rpm, limits.maximumRPM));
}

} // namespace

double automaticTarget(const AutomaticCurve& curve, const FanLimits& limits, double celsius, bool turning) {
    const double restBelowStart = turning ? stopBelowStartKelvin : restBelowStartKelvin;
    if (curve.restsWhenCool && celsius < curve.startCelsius - restBelowStart) {
        return 0;
    }
    const double share = (celsius - curve.startCelsius) / (curve.fullCelsius - curve.startCelsius);
    return limits.minimumRPM + (limits.maximumRPM - limits.minimumRPM) * std::min(1.0, std::max(0.0, share));
}

double stepFan(double rpm, double targetRPM, const FanLimits& limits, double seconds) {
    if (!(seconds > 0)) {
        return rpm;
    }
    const double target = withinFan(targetRPM, limits);
    const auto steps = static_cast<std::int64_t>(std::ceil(seconds / longestFanStepSeconds));
    const double stepSeconds = seconds / static_cast<double>(steps);
    const double approach = 1.0 - std::exp(-stepSeconds / approachSeconds);
    const double mostGain = limits.maximumRPM / fullAccelerationSeconds * stepSeconds;
    const double mostLoss = limits.maximumRPM / fullCoastingSeconds * stepSeconds;
    for (std::int64_t done = 0; done < steps; ++done) {
        const double change = (target - rpm) * approach;
        rpm += std::max(-mostLoss, std::min(mostGain, change));
    }
    return rpm;
}

} // namespace simulated
