#include "Fenwhirl/Views/Components/ChartScale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr double marginDegrees = 3.0;
constexpr double leastSpanDegrees = 10.0;
constexpr double designedHeight = 140.0;
constexpr double mostLines = 8.0;
constexpr double numberDistance = 13.0;
constexpr double greatestNumber = 999.0;

// The step for a range that fills a plot of the designed height with texts of the designed size.
double stepFor(double span) {
    constexpr double narrow = 22.0;
    constexpr double medium = 50.0;
    if (span <= narrow) {
        return 5.0;
    }
    if (span <= medium) {
        return 10.0;
    }
    double step = 20.0;
    while (span / step > mostLines) {
        step *= 2.0;
    }
    return step;
}

// Halves the step until there are two lines: one line alone is no scale.
double withTwoLines(double step, ChartRange range) {
    constexpr double smallest = 5.0;
    while (step > smallest && std::ceil(range.low / step) * step + step > range.top) {
        step /= 2.0;
    }
    return step;
}

} // namespace

std::optional<ChartRange> chartRange(const QList<double>& values) {
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -smallest;
    int usable = 0;
    for (const double value : values) {
        if (!std::isfinite(value)) {
            continue;
        }
        smallest = std::min(smallest, value);
        largest = std::max(largest, value);
        ++usable;
    }
    if (usable < 2) {
        return std::nullopt;
    }
    const double low = smallest - marginDegrees;
    const ChartRange range{low, std::max(largest + marginDegrees, low + leastSpanDegrees)};
    if (!std::isfinite(range.span()) || range.span() < leastSpanDegrees / 2.0) {
        return std::nullopt;
    }
    return range;
}

QList<ChartLine> chartLines(ChartRange range, double plotHeight, double textScale,
                            std::optional<double> threshold) {
    const double degreesPerPoint = range.span() / plotHeight;
    const double step = withTwoLines(stepFor(degreesPerPoint * designedHeight * textScale), range);
    const bool showsThreshold = threshold && range.low <= *threshold && *threshold <= range.top;
    QList<ChartLine> lines;
    const double first = std::ceil(range.low / step);
    const double last = std::floor(range.top / step);
    for (int i = 0; i <= last - first; ++i) {
        const double celsius = (first + i) * step;
        const double away =
            showsThreshold ? std::abs(celsius - *threshold) : std::numeric_limits<double>::infinity();
        if (away == 0.0) {
            continue;
        }
        lines.append(
            {celsius,
             away / degreesPerPoint >= numberDistance * textScale && std::abs(celsius) <= greatestNumber,
             false});
        if (celsius + step == celsius) {
            break; // the step is below the precision of a double
        }
    }
    if (showsThreshold) {
        lines.append({*threshold, std::abs(*threshold) <= greatestNumber, true});
    }
    return lines;
}

} // namespace Fenwhirl
