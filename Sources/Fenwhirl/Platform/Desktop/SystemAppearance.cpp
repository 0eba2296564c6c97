#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"

#include <utility>

void SystemAppearance::setDark(bool dark) {
    if (std::exchange(dark_, dark) != dark)
        Q_EMIT changed();
}

void SystemAppearance::setReducedMotion(bool reduced) {
    if (std::exchange(reducedMotion_, reduced) != reduced)
        Q_EMIT changed();
}
