#pragma once

#include "Fenwhirl/Views/Components/ChartScale.h"

#include <QColor>
#include <QList>
#include <QPolygonF>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

#include <limits>
#include <optional>

// A series of temperatures as a line over a tinted area, with a scale: QML type `LineChart`.
//
//   LineChart { values: history; column: 24; lineColor: Theme.accent; fillColor: Theme.chartFill; ... }
//
// The numbers of the scale are at the left edge, in a column of their own that the line never enters; the
// plot takes the rest. The lines of the scale are at round temperatures, aligned to whole pixels. The alert
// threshold is a dashed line if the range includes it. A dot marks the newest value, at the right edge. The
// dot, the width of the line and the outer halves of numbers reach beyond the plot, so the item keeps `inset`
// points free on every side and its owner gives it negative margins of the same size. HistoryChart.qml does
// so, and adds captions and a cursor. With fewer than two values there is no scale: five plain lines span the
// plot and the column. Changes are not animated.

namespace Fenwhirl {

class LineChart : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<double> values READ values WRITE setValues NOTIFY valuesChanged FINAL)
    Q_PROPERTY(double inset MEMBER inset_ NOTIFY plotChanged FINAL)
    // Width of the scale's column; 0 for no numbers.
    Q_PROPERTY(double column MEMBER column_ NOTIFY plotChanged FINAL)
    // In degrees Celsius; NaN for none.
    Q_PROPERTY(double threshold MEMBER threshold_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(double textScale MEMBER textScale_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(bool endDot MEMBER endDot_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor lineColor MEMBER lineColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor fillColor MEMBER fillColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor gridColor MEMBER gridColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor numberColor MEMBER numberColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor thresholdColor MEMBER thresholdColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor thresholdNumberColor MEMBER thresholdNumberColor_ NOTIFY styleChanged FINAL)
    // The colour of the surface below the chart, and of the ring that sets the dot off from the line.
    Q_PROPERTY(QColor surfaceColor MEMBER surfaceColor_ NOTIFY styleChanged FINAL)
    // Whether there are enough values for a line.
    Q_PROPERTY(bool hasLine READ hasLine NOTIFY hasLineChanged FINAL)

public:
    explicit LineChart(QQuickItem* parent = nullptr);

    // The points of the values in a plot of the given size, y pointing down: the first value at the left
    // edge, the last at the right one, over the range that chartRange returns. Empty if it returns none.
    // Values that are not finite are left out, and their positions stay free. Pure.
    [[nodiscard]] static QPolygonF points(const QList<double>& values, double width, double height);

    [[nodiscard]] const QList<double>& values() const { return values_; }

    void setValues(const QList<double>& values);

    [[nodiscard]] bool hasLine() const { return range_.has_value(); }

    // The plot in the item's coordinates; without a line it includes the column.
    [[nodiscard]] QRectF plot() const;
    // The point of a value in the item's coordinates; empty for a value that is not finite.
    [[nodiscard]] std::optional<QPointF> pointAt(qsizetype index) const;

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void valuesChanged();
    void styleChanged();
    void plotChanged();
    void hasLineChanged();

private:
    [[nodiscard]] double pixelsPerPoint() const;
    // Rounds to the nearest whole pixel of the screen.
    [[nodiscard]] double snapped(double length) const;
    // The thickness of a hairline: one point, rounded to whole pixels.
    [[nodiscard]] double hairline() const;
    void drawPlainLines(QPainter& painter, QSizeF plot) const;
    void drawLines(QPainter& painter, const QList<ChartLine>& lines, QSizeF plot) const;
    void drawNumbers(QPainter& painter, const QList<ChartLine>& lines, double plotHeight) const;
    void drawThreshold(QPainter& painter, const QList<ChartLine>& lines, QSizeF plot) const;
    [[nodiscard]] double lineTop(double celsius, double plotHeight) const;

    QList<double> values_;
    std::optional<ChartRange> range_; // of the values
    double inset_ = 0.0;
    double column_ = 0.0;
    double threshold_ = std::numeric_limits<double>::quiet_NaN();
    double textScale_ = 1.0;
    bool endDot_ = true;
    QColor lineColor_;
    QColor fillColor_;
    QColor gridColor_;
    QColor numberColor_;
    QColor thresholdColor_;
    QColor thresholdNumberColor_;
    QColor surfaceColor_;
};

} // namespace Fenwhirl
