// The dot that marks a value in a chart.
//
// Threads: any one at a time.

#pragma once

class QColor;
class QPainter;
class QPointF;

namespace Fenwhirl {

// Paints a dot of 8 points in `color`. A ring of `surface`, the color behind the chart, keeps it apart from lines.
// Leaves the painter without a pen and with another brush.
void paintChartDot(QPainter& painter, const QPointF& centre, const QColor& color, const QColor& surface);

} // namespace Fenwhirl
