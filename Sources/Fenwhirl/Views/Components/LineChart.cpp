#include "Fenwhirl/Views/Components/LineChart.h"

#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr double marginDegrees = 3.0;
constexpr double leastSpanDegrees = 10.0;
constexpr int gridLines = 5;
constexpr double lineWidth = 2.5;
constexpr double dotRadius = 4.0;
constexpr double dotRingRadius = 6.0;

} // namespace

LineChart::LineChart(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    for (const auto signal : {&LineChart::valuesChanged, &LineChart::styleChanged})
        connect(this, signal, this, [this] { update(); });
}

QPolygonF LineChart::points(const QList<double>& values, double width, double height) {
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -smallest;
    qsizetype usable = 0;
    for (const double value : values) {
        if (!std::isfinite(value))
            continue;
        smallest = std::min(smallest, value);
        largest = std::max(largest, value);
        ++usable;
    }
    if (usable < 2)
        return {};

    const double low = smallest - marginDegrees;
    const double top = std::max(largest + marginDegrees, low + leastSpanDegrees);
    const auto last = static_cast<double>(values.size() - 1);
    QPolygonF result;
    result.reserve(usable);
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (std::isfinite(values[i]))
            result.append(
                {width * static_cast<double>(i) / last, height - height * (values[i] - low) / (top - low)});
    }
    return result;
}

void LineChart::drawGrid(QPainter& painter, double plotWidth, double plotHeight) const {
    // Rectangles on the pixel grid of the screen: a stroked line would be smeared over two rows.
    const double ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0;
    const double thickness = std::max(1.0, std::round(ratio)) / ratio;
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (int i = 0; i < gridLines; ++i) {
        const double y = (plotHeight - thickness) * i / (gridLines - 1);
        painter.fillRect(QRectF(0.0, std::round(y * ratio) / ratio, plotWidth, thickness), m_gridColor);
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
}

void LineChart::paint(QPainter* painter) {
    const double plotWidth = width() - 2.0 * m_inset;
    const double plotHeight = height() - 2.0 * m_inset;
    if (plotWidth <= 0.0 || plotHeight <= 0.0)
        return;
    painter->translate(m_inset, m_inset);
    drawGrid(*painter, plotWidth, plotHeight);

    const QPolygonF line = points(m_values, plotWidth, plotHeight);
    if (line.isEmpty())
        return;
    QPolygonF area = line;
    area << QPointF(line.last().x(), plotHeight) << QPointF(line.first().x(), plotHeight);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_fillColor);
    painter->drawPolygon(area);

    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(m_lineColor, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(line);

    painter->setPen(Qt::NoPen);
    painter->setBrush(m_surfaceColor);
    painter->drawEllipse(line.last(), dotRingRadius, dotRingRadius);
    painter->setBrush(m_lineColor);
    painter->drawEllipse(line.last(), dotRadius, dotRadius);
}

} // namespace Fenwhirl
