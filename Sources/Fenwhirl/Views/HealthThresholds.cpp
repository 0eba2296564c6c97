#include "Fenwhirl/Views/HealthThresholds.h"

#include <algorithm>

namespace Fenwhirl {

namespace {

constexpr double distance = 5;
constexpr double highestHot = 105;
constexpr double lowestWarm = 55;

} // namespace

HealthThresholds withWarm(HealthThresholds thresholds, double warm) {
    thresholds.warm = warm;
    if (thresholds.hot < warm + distance) {
        thresholds.hot = std::min(warm + distance, highestHot);
    }
    return thresholds;
}

HealthThresholds withHot(HealthThresholds thresholds, double hot) {
    thresholds.hot = hot;
    if (thresholds.warm > hot - distance) {
        thresholds.warm = std::max(hot - distance, lowestWarm);
    }
    return thresholds;
}

} // namespace Fenwhirl
