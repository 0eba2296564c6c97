#pragma once

#include <QList>

#include <optional>

// The scale of a chart of temperatures: the range that it shows, and the lines drawn in it.
//
// Temperatures in degrees Celsius, lengths in points, y pointing down. Pure functions; any thread.

namespace Fenwhirl {

struct ChartRange {
    double low;
    double top; // above low

    [[nodiscard]] double span() const { return top - low; }

    bool operator==(const ChartRange&) const = default;
};

// From 3 degrees below the smallest value to 3 above the largest, and over at least 10 degrees, so that a
// quiet machine looks quiet. Values that are not finite are ignored. Empty if fewer than two remain, or if
// they are too large to be told apart.
[[nodiscard]] std::optional<ChartRange> chartRange(const QList<double>& values);

struct ChartLine {
    double celsius;
    bool numbered;  // false where the number of the threshold takes the space, or above 999
    bool threshold; // the alert threshold

    bool operator==(const ChartLine&) const = default;
};

// The lines of a plot of that height, ascending: at whole multiples of 5 in a range of up to 22 degrees, of
// 10 in one of up to 50, of 20 above, and of more where 20 would give too many. Larger texts leave room for
// fewer lines, but there are never fewer than two. A threshold inside the range replaces a line at the same
// temperature and suppresses the numbers nearer than 13 points (at the designed text size); it is the last of
// the lines. No number has more than four characters.
[[nodiscard]] QList<ChartLine> chartLines(ChartRange range, double plotHeight, double textScale,
                                          std::optional<double> threshold);

} // namespace Fenwhirl
