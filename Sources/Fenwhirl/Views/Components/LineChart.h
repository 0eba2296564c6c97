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
// The scale's numbers stand at the left edge, in a column of their own that the line never enters; the plot
// takes the rest. Its lines lie at round temperatures, on whole pixels; the alert threshold is a dashed line
// where the range includes it. The newest value, at the right edge, carries a dot: it, the line's width and
// the outer halves of numbers reach beyond the plot, so the item keeps `inset` points free on every side and
// its owner gives it negative margins of the same size. HistoryChart.qml does, and adds captions and cursor.
// With fewer than two values there is nothing to measure: five plain lines span the column, too. Changes show
// at once.

namespace Fenwhirl {

class LineChart : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QList<double> values READ values WRITE setValues NOTIFY valuesChanged FINAL)
    Q_PROPERTY(double inset MEMBER m_inset NOTIFY plotChanged FINAL)
    // Width of the scale's column; 0 for no numbers.
    Q_PROPERTY(double column MEMBER m_column NOTIFY plotChanged FINAL)
    // In degrees Celsius; no number where there is none.
    Q_PROPERTY(double threshold MEMBER m_threshold NOTIFY styleChanged FINAL)
    Q_PROPERTY(double textScale MEMBER m_textScale NOTIFY styleChanged FINAL)
    Q_PROPERTY(bool endDot MEMBER m_endDot NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor lineColor MEMBER m_lineColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor fillColor MEMBER m_fillColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor gridColor MEMBER m_gridColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor numberColor MEMBER m_numberColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor thresholdColor MEMBER m_thresholdColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor thresholdNumberColor MEMBER m_thresholdNumberColor NOTIFY styleChanged FINAL)
    // What the chart stands on; the ring that sets the dot off from the line has this colour.
    Q_PROPERTY(QColor surfaceColor MEMBER m_surfaceColor NOTIFY styleChanged FINAL)
    // Whether there are values enough for a line.
    Q_PROPERTY(bool hasLine READ hasLine NOTIFY hasLineChanged FINAL)

public:
    explicit LineChart(QQuickItem* parent = nullptr);

    // Where the values lie in a plot of the given size, y pointing down: the first value at the left edge,
    // the last at the right one, over the range that chartRange gives. Empty where it gives none. Values that
    // are no numbers are left out, their places kept. Pure.
    [[nodiscard]] static QPolygonF points(const QList<double>& values, double width, double height);

    [[nodiscard]] const QList<double>& values() const { return m_values; }

    void setValues(const QList<double>& values);

    [[nodiscard]] bool hasLine() const { return m_range.has_value(); }

    // The plot in the item's coordinates; without a line it spans the column as well.
    [[nodiscard]] QRectF plot() const;
    // Where a value lies, in the item's coordinates; nothing for one that is no number.
    [[nodiscard]] std::optional<QPointF> pointAt(qsizetype index) const;

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void valuesChanged();
    void styleChanged();
    void plotChanged();
    void hasLineChanged();

private:
    [[nodiscard]] double pixelsPerPoint() const;
    // At the nearest whole pixel of the screen.
    [[nodiscard]] double snapped(double length) const;
    // One point, in whole pixels.
    [[nodiscard]] double hairline() const;
    void drawPlainLines(QPainter& painter, QSizeF plot) const;
    void drawLines(QPainter& painter, const QList<ChartLine>& lines, QSizeF plot) const;
    void drawNumbers(QPainter& painter, const QList<ChartLine>& lines, double plotHeight) const;
    void drawThreshold(QPainter& painter, const QList<ChartLine>& lines, QSizeF plot) const;
    [[nodiscard]] double lineTop(double celsius, double plotHeight) const;

    QList<double> m_values;
    std::optional<ChartRange> m_range; // of the values
    double m_inset = 0.0;
    double m_column = 0.0;
    double m_threshold = std::numeric_limits<double>::quiet_NaN();
    double m_textScale = 1.0;
    bool m_endDot = true;
    QColor m_lineColor;
    QColor m_fillColor;
    QColor m_gridColor;
    QColor m_numberColor;
    QColor m_thresholdColor;
    QColor m_thresholdNumberColor;
    QColor m_surfaceColor;
};

} // namespace Fenwhirl
