#include "Fenwhirl/Views/Components/FilledRows.h"

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

// A rectangle from edge to edge, both rounded to whole points. An edge at the end of the row is not rounded.
QRectF place(double left, double right, double rowEnd, double top, double height) {
    constexpr double hairsBreadth = 0.01;
    const double first = std::round(left);
    const double last = right > rowEnd - hairsBreadth ? rowEnd : std::round(right);
    return {first, top, std::max(0.0, last - first), height};
}

// The index behind the last item of each row.
QList<qsizetype> rowEnds(const QList<double>& naturalWidths, double width, double spacing) {
    QList<qsizetype> ends;
    qsizetype begin = 0;
    while (begin < naturalWidths.size()) {
        double used = naturalWidths[begin];
        qsizetype end = begin + 1;
        while (end < naturalWidths.size() && used + spacing + naturalWidths[end] <= width) {
            used += spacing + naturalWidths[end];
            ++end;
        }
        ends.append(end);
        begin = end;
    }

    // A single item would fill the whole last row.
    const qsizetype count = naturalWidths.size();
    const qsizetype rows = ends.size();
    if (rows >= 2 && ends[rows - 2] == count - 1) {
        const qsizetype aboveBegin = rows >= 3 ? ends[rows - 3] : 0;
        const bool bothFit = naturalWidths[count - 2] + spacing + naturalWidths[count - 1] <= width;
        if (count - 1 - aboveBegin >= 3 && bothFit) {
            --ends[rows - 2];
        }
    }
    return ends;
}

} // namespace

QList<QRectF> filledRows(const QList<double>& naturalWidths, double width, double rowHeight, double spacing) {
    QList<QRectF> places;
    double y = 0.0;
    qsizetype begin = 0;
    for (const qsizetype end : rowEnds(naturalWidths, width, spacing)) {
        double used = static_cast<double>(end - begin - 1) * spacing;
        for (qsizetype i = begin; i < end; ++i) {
            used += std::min(naturalWidths[i], width);
        }
        const double extra = std::max(0.0, width - used) / static_cast<double>(end - begin);
        double x = 0.0;
        for (qsizetype i = begin; i < end; ++i) {
            const double itemWidth = std::min(naturalWidths[i], width) + extra;
            places.append(place(x, x + itemWidth, width, y, rowHeight));
            x += itemWidth + spacing;
        }
        y += rowHeight + spacing;
        begin = end;
    }
    return places;
}

QList<QRectF> filledRow(const QList<double>& naturalWidths, double width, double height) {
    QList<QRectF> places;
    const double natural = std::accumulate(naturalWidths.begin(), naturalWidths.end(), 0.0);
    const double share =
        (width - natural) / static_cast<double>(std::max<qsizetype>(1, naturalWidths.size()));
    double x = 0.0;
    for (const double naturalWidth : naturalWidths) {
        const double itemWidth = std::max(0.0, naturalWidth + share);
        places.append(place(x, x + itemWidth, width, 0.0, height));
        x += itemWidth;
    }
    return places;
}

qsizetype neighbour(const QList<QRectF>& places, qsizetype from, int columns, int rows) {
    if (from < 0 || from >= places.size()) {
        return from;
    }
    if (columns != 0) {
        return std::clamp<qsizetype>(from + columns, 0, places.size() - 1);
    }
    const QRectF& here = places[from];
    qsizetype nearest = from;
    double nearestRow = 0.0;
    double nearestMiddle = 0.0;
    for (qsizetype i = 0; i < places.size(); ++i) {
        const double rowDistance = (places[i].top() - here.top()) * rows;
        const double middleDistance = std::abs(places[i].center().x() - here.center().x());
        if (rowDistance <= 0) {
            continue;
        }
        if (nearest == from || rowDistance < nearestRow ||
            (rowDistance == nearestRow && middleDistance < nearestMiddle)) {
            nearest = i;
            nearestRow = rowDistance;
            nearestMiddle = middleDistance;
        }
    }
    return nearest;
}

} // namespace Fenwhirl
