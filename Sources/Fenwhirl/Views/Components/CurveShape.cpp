#include "Fenwhirl/Views/Components/CurveShape.h"

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

constexpr double leastCurveSpanDegrees = 1.0;

double spanOf(const CurveShape& shape) {
    return std::max(onCurveAxis(shape.maxTemp) - onCurveAxis(shape.startTemp), leastCurveSpanDegrees);
}

} // namespace

double onCurveAxis(double celsius) {
    // Not std::clamp: NaN fails the comparison and becomes the lower end.
    return celsius > coldestCelsius ? std::min(celsius, hottestCelsius) : coldestCelsius;
}

std::optional<double> protectedFrom(const CurveShape& shape) {
    // Also nothing for NaN, for which the comparison is false.
    if (!shape.isLimited || !(shape.alertAt < handBackCelsius)) {
        return std::nullopt;
    }
    return onCurveAxis(shape.alertAt);
}

double settingFraction(const CurveShape& shape, double celsius) {
    return std::clamp((onCurveAxis(celsius) - onCurveAxis(shape.startTemp)) / spanOf(shape), 0.0, 1.0);
}

QPolygonF settingLine(const CurveShape& shape, double from, double to) {
    const double start = onCurveAxis(shape.startTemp);
    QPolygonF line;
    line.append({from, settingFraction(shape, from)});
    for (const double corner : {start, start + spanOf(shape)}) {
        if (corner > from && corner < to) {
            line.append({corner, settingFraction(shape, corner)});
        }
    }
    line.append({to, settingFraction(shape, to)});
    return line;
}

QPolygonF lineInForce(const CurveShape& shape) {
    const double until = shape.isLimited ? handBackCelsius : hottestCelsius;
    const std::optional<double> alert = protectedFrom(shape);
    if (!alert) {
        return settingLine(shape, coldestCelsius, until);
    }
    QPolygonF line = settingLine(shape, coldestCelsius, *alert);
    line.append({*alert, 1.0});
    line.append({until, 1.0});
    return line;
}

double inForceUntil(const CurveShape& shape) {
    if (!shape.isLimited) {
        return hottestCelsius;
    }
    return protectedFrom(shape).value_or(handBackCelsius);
}

std::optional<QPointF> pointOnCurve(const CurveShape& shape, double celsius, bool isProtecting) {
    if (std::isnan(celsius) || (shape.isLimited && celsius >= handBackCelsius)) {
        return std::nullopt;
    }
    const std::optional<double> alert = protectedFrom(shape);
    const bool atMaximum = isProtecting || (alert && celsius >= *alert);
    return QPointF(onCurveAxis(celsius), atMaximum ? 1.0 : settingFraction(shape, celsius));
}

bool isMaximumWithoutEffect(const CurveShape& shape) {
    return onCurveAxis(shape.maxTemp) < onCurveAxis(shape.startTemp);
}

QList<double> axisNumbers(const CurveShape& shape, double width, double least) {
    const double pointsPerDegree = width / (hottestCelsius - coldestCelsius);
    QList<double> numbers;
    const auto addUnlessTooNear = [&](double number) {
        const bool isFree = std::none_of(numbers.begin(), numbers.end(), [&](double other) {
            return std::abs(other - number) * pointsPerDegree < least;
        });
        if (isFree) {
            numbers.append(number);
        }
    };
    if (shape.isLimited) {
        numbers.append(handBackCelsius);
    }
    if (const std::optional<double> alert = protectedFrom(shape)) {
        addUnlessTooNear(*alert);
    }
    for (const double number : {60.0, 40.0, 80.0}) {
        addUnlessTooNear(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace Fenwhirl
