#pragma once

#include <QList>

#include <optional>

// What a series of temperatures is measured against: the range that a chart shows, and the lines drawn in it.
//
// Temperatures in degrees Celsius, lengths in points, y pointing down. Everything is pure; any thread.

namespace Fenwhirl {

struct ChartRange {
    double low;
    double top; // above low

    [[nodiscard]] double span() const { return top - low; }

    bool operator==(const ChartRange&) const = default;
};

// From 3 below the smallest value to 3 above the largest, and over at least 10 degrees, so that a quiet
// machine looks quiet. Values that are no numbers are left out; nothing with fewer than two that are, or
// where they are too large to be told apart.
[[nodiscard]] std::optional<ChartRange> chartRange(const QList<double>& values);

struct ChartLine {
    double celsius;
    bool numbered;  // false where a neighbour's number has the room
    bool threshold; // the alert's

    bool operator==(const ChartLine&) const = default;
};

// The lines of a plot of that height: whole multiples of 5 in a range of up to 22 degrees, of 10 in one of up
// to 50, of 20 above, and of more where 20 would give too many; ascending. Larger texts leave room for fewer,
// but never for fewer than two. A threshold inside the range replaces the line at its place and takes the
// numbers nearer than 13 points; it is the last of the lines. No number has more than four characters.
[[nodiscard]] QList<ChartLine> chartLines(ChartRange range, double plotHeight, double textScale,
                                          std::optional<double> threshold);

} // namespace Fenwhirl
