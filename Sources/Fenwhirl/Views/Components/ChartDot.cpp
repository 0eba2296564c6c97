#include "Fenwhirl/Views/Components/ChartDot.h"

#include <QColor>
#include <QPainter>
#include <QPointF>

namespace Fenwhirl {

namespace {

constexpr double dotRadius = 4.0;
constexpr double ringRadius = 6.0;

} // namespace

void paintChartDot(QPainter& painter, const QPointF& centre, const QColor& color, const QColor& surface) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(surface);
    painter.drawEllipse(centre, ringRadius, ringRadius);
    painter.setBrush(color);
    painter.drawEllipse(centre, dotRadius, dotRadius);
}

} // namespace Fenwhirl
