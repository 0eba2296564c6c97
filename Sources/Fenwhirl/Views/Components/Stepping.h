#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The values that a slider or a stepper can take: QML singleton `Stepping`, also available as plain
// functions.
//
// A range runs from `from` to `to`, with a grid of the multiples of `stepSize`. Both ends are always
// reachable, even when they do not lie on the grid (a fan from 1210 to 5777 in steps of 50 has 1210, 1250,
// 1300 … 5750 and 5777). A step size that is not above 0 allows every value; an empty or reversed range has
// the single value `from`. NaN counts as `from`.

namespace Fenwhirl {

// The reachable value nearest to `value`.
[[nodiscard]] double nearestStep(double value, double from, double to, double stepSize);

// The value after `steps` steps (downwards when negative) from `value`, which need not be on the grid.
[[nodiscard]] double valueAfterSteps(double value, double from, double to, double stepSize, int steps);

// Whether a stepper may go one step up (`direction` 1) or down (-1): not when that would leave the range.
// From outside the range, a step back towards it is possible.
[[nodiscard]] bool canStep(double value, double from, double to, double stepSize, int direction);

// The position of the value in its range, 0 to 1.
[[nodiscard]] double rangeFraction(double value, double from, double to);

class Stepping : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] double nearest(double value, double from, double to, double stepSize) const {
        return nearestStep(value, from, to, stepSize);
    }

    Q_INVOKABLE [[nodiscard]] double after(double value, double from, double to, double stepSize,
                                           int steps) const {
        return valueAfterSteps(value, from, to, stepSize, steps);
    }

    Q_INVOKABLE [[nodiscard]] bool possible(double value, double from, double to, double stepSize,
                                            int direction) const {
        return canStep(value, from, to, stepSize, direction);
    }

    Q_INVOKABLE [[nodiscard]] double fraction(double value, double from, double to) const {
        return rangeFraction(value, from, to);
    }
};

} // namespace Fenwhirl
