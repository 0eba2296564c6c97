#pragma once

#include <QList>
#include <QObject>
#include <QRectF>
#include <QtQml/qqmlregistration.h>

#include <numeric>

// Lays out items in rows that fill a width: QML singleton `FilledRows`.
//
// Items go into a row as long as their natural widths fit with the spacing between them. The last row gets a
// second item from the row above if it would have one only and that row keeps at least two. The items of a row
// share its remaining width equally, so that both of its ends are flush. An item wider than the width
// gets a row of its own and is limited to the width. Items begin and end on whole points, so that their edges
// are sharp. All lengths are in points. Pure functions; any thread.

namespace Fenwhirl {

[[nodiscard]] QList<QRectF> filledRows(const QList<double>& naturalWidths, double width, double rowHeight,
                                       double spacing);

// Lays out all items in one row of the given width: each gets its natural width plus an equal share of what
// is left over, or minus an equal share of what is missing. None gets narrower than 0.
[[nodiscard]] QList<QRectF> filledRow(const QList<double>& naturalWidths, double width, double height);

// The item to which an arrow key leads: with `columns` the one before (-1) or after (1) in reading order,
// with `rows` the one in the row above (-1) or below (1) whose centre is nearest. `from` itself if there is
// none.
[[nodiscard]] qsizetype neighbour(const QList<QRectF>& places, qsizetype from, int columns, int rows);

class FilledRows : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] QList<QRectF> places(const QList<double>& naturalWidths, double width,
                                                   double rowHeight, double spacing) const {
        return filledRows(naturalWidths, width, rowHeight, spacing);
    }

    Q_INVOKABLE [[nodiscard]] QList<QRectF> singleRow(const QList<double>& naturalWidths, double width,
                                                      double height) const {
        return filledRow(naturalWidths, width, height);
    }

    Q_INVOKABLE [[nodiscard]] int neighbour(const QList<QRectF>& places, int from, int columns,
                                            int rows) const {
        return static_cast<int>(Fenwhirl::neighbour(places, from, columns, rows));
    }

    Q_INVOKABLE [[nodiscard]] double sum(const QList<double>& widths) const {
        return std::accumulate(widths.begin(), widths.end(), 0.0);
    }

    Q_INVOKABLE [[nodiscard]] double height(const QList<QRectF>& places) const {
        return places.isEmpty() ? 0.0 : places.last().bottom();
    }
};

} // namespace Fenwhirl
