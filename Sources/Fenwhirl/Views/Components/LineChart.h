#pragma once

#include <QColor>
#include <QList>
#include <QPolygonF>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// A series of temperatures as a line over a tinted area: QML type `LineChart`.
//
//   LineChart { values: history; lineColor: Theme.accent; fillColor: Theme.chartFill; gridColor:
//   Theme.stroke; ... }
//
// Five horizontal grid lines span the plot, the topmost and the lowest at its edges, on whole pixels. The
// newest value, at the right edge, carries a dot: it and the line's width reach beyond the plot, so the item
// keeps `inset` points free on every side and its owner gives it negative margins of the same size.
// HistoryChart.qml does, and adds the captions. With fewer than two values only the grid is drawn. Changes
// show at once.

namespace Fenwhirl {

class LineChart : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<double> values MEMBER m_values NOTIFY valuesChanged FINAL)
    Q_PROPERTY(double inset MEMBER m_inset NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor lineColor MEMBER m_lineColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor fillColor MEMBER m_fillColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor gridColor MEMBER m_gridColor NOTIFY styleChanged FINAL)
    // What the chart stands on; the ring that sets the dot off from the line has this colour.
    Q_PROPERTY(QColor surfaceColor MEMBER m_surfaceColor NOTIFY styleChanged FINAL)

public:
    explicit LineChart(QQuickItem* parent = nullptr);

    // Where the values lie in a plot of the given size, y pointing down: the first value at the left edge,
    // the last at the right one. The scale runs from 3 below the smallest value to 3 above the largest, and
    // over at least 10 degrees, so that a quiet machine looks quiet. Empty with fewer than two values. Values
    // that are no numbers are left out, their places kept. Pure.
    [[nodiscard]] static QPolygonF points(const QList<double>& values, double width, double height);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void valuesChanged();
    void styleChanged();

private:
    void drawGrid(QPainter& painter, double plotWidth, double plotHeight) const;

    QList<double> m_values;
    double m_inset = 0.0;
    QColor m_lineColor;
    QColor m_fillColor;
    QColor m_gridColor;
    QColor m_surfaceColor;
};

} // namespace Fenwhirl
