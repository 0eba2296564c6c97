#include "Fenwhirl/Views/Components/Stepping.h"

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

double bounded(double value, double from, double to) {
    // Not std::clamp: NaN fails the comparison and becomes `from`.
    return value > from ? std::min(value, to) : from;
}

} // namespace

double nearestStep(double value, double from, double to, double stepSize) {
    if (!(to > from)) {
        return from;
    }
    const double inside = bounded(value, from, to);
    if (!(stepSize > 0.0)) {
        return inside;
    }
    const double onGrid = std::clamp(std::round(inside / stepSize) * stepSize, from, to);
    const double nearestEnd = to - inside < inside - from ? to : from;
    return std::abs(inside - nearestEnd) < std::abs(inside - onGrid) ? nearestEnd : onGrid;
}

double valueAfterSteps(double value, double from, double to, double stepSize, int steps) {
    const double step = stepSize > 0.0 ? stepSize : (to - from) / 100.0;
    const double goal = nearestStep(bounded(value, from, to) + steps * step, from, to, stepSize);
    const bool moved = steps > 0 ? goal > value : goal < value;
    // Close to an end that is off the grid, the nearest value may be the current one; the step then goes to
    // the end itself.
    return moved || steps == 0 ? goal : (steps > 0 ? std::max(to, from) : from);
}

bool canStep(double value, double from, double to, double stepSize, int direction) {
    return direction > 0 ? value + stepSize <= to : value - stepSize >= from;
}

double rangeFraction(double value, double from, double to) {
    return to > from ? (bounded(value, from, to) - from) / (to - from) : 0.0;
}

} // namespace Fenwhirl
