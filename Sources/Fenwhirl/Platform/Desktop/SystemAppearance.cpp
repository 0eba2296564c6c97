#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Fenwhirl {

void SystemAppearance::setDark(bool dark) {
    if (std::exchange(dark_, dark) != dark) {
        Q_EMIT changed();
    }
}

void SystemAppearance::setReducedMotion(bool reduced) {
    if (std::exchange(reducedMotion_, reduced) != reduced) {
        Q_EMIT changed();
    }
}

void SystemAppearance::setTextScale(double scale) {
    const double allowed = std::isnan(scale) ? 1.0 : std::clamp(scale, smallestTextScale, largestTextScale);
    if (std::exchange(textScale_, allowed) != allowed) {
        Q_EMIT changed();
    }
}

} // namespace Fenwhirl
