// The records of the last poll that the monitor publishes.

#pragma once

#include <QString>

#include <optional>

namespace Fenwhirl {

// One fan of the last poll.
struct FanState {
    int id; // the SMC's zero-based fan index
    double rpm;
    double minRPM;
    double maxRPM;
    double target;              // the speed in rpm that the SMC is steering to
    bool isMaximumKnown = true; // whether the SMC reported `maxRPM`; otherwise it is a guess
    // The speed that this program last told the fan to run at; absent while the fan is left to macOS, and
    // after a refusal.
    std::optional<double> requestedRPM = std::nullopt;

    bool operator==(const FanState&) const = default;
};

// One temperature sensor of the last poll.
struct SensorState {
    QString id; // the SMC key, four characters
    double celsius;
    double lowestCelsius = celsius; // in the last ten minutes
    double highestCelsius = celsius;

    bool operator==(const SensorState&) const = default;
};

// The assessment of the main temperature.
enum class HealthStatus { normal, warm, hot };

// "Mac en bonne santé", "Les ventilateurs travaillent", "Ferme des applications", in the interface language.
[[nodiscard]] QString detail(HealthStatus status);
// "Tout est normal", "Le Mac est chaud", "Surchauffe", in the interface language.
[[nodiscard]] QString word(HealthStatus status);

} // namespace Fenwhirl
