#include "Fenwhirl/Views/Components/LineChart.h"

#include "Fenwhirl/Views/Components/ChartDot.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

constexpr int plainLines = 5;
constexpr double lineWidth = 2.5;
constexpr double numberSize = 11.0;
constexpr double dash = 4.0;
constexpr double gap = 3.0;

QPolygonF pointsIn(const QList<double>& values, ChartRange range, double width, double height) {
    const auto last = static_cast<double>(values.size() - 1);
    QPolygonF result;
    result.reserve(values.size());
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (std::isfinite(values[i])) {
            result.append({width * static_cast<double>(i) / last,
                           height - height * (values[i] - range.low) / range.span()});
        }
    }
    return result;
}

} // namespace

LineChart::LineChart(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    for (const auto signal : {&LineChart::valuesChanged, &LineChart::styleChanged, &LineChart::plotChanged}) {
        connect(this, signal, this, [this] { update(); });
    }
}

QPolygonF LineChart::points(const QList<double>& values, double width, double height) {
    const std::optional<ChartRange> range = chartRange(values);
    return range ? pointsIn(values, *range, width, height) : QPolygonF();
}

void LineChart::setValues(const QList<double>& values) {
    const bool before = hasLine();
    values_ = values;
    range_ = chartRange(values_);
    Q_EMIT valuesChanged();
    if (hasLine() != before) {
        Q_EMIT hasLineChanged();
    }
}

QRectF LineChart::plot() const {
    const double column = hasLine() ? column_ : 0.0;
    return {inset_ + column, inset_, width() - 2.0 * inset_ - column, height() - 2.0 * inset_};
}

std::optional<QPointF> LineChart::pointAt(qsizetype index) const {
    if (!range_ || index < 0 || index >= values_.size() || !std::isfinite(values_[index])) {
        return std::nullopt;
    }
    const QRectF area = plot();
    return QPointF(area.left() +
                       area.width() * static_cast<double>(index) / static_cast<double>(values_.size() - 1),
                   area.bottom() - area.height() * (values_[index] - range_->low) / range_->span());
}

double LineChart::pixelsPerPoint() const {
    return window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0;
}

double LineChart::snapped(double length) const {
    return std::round(length * pixelsPerPoint()) / pixelsPerPoint();
}

double LineChart::hairline() const {
    return std::max(1.0, std::round(pixelsPerPoint())) / pixelsPerPoint();
}

double LineChart::lineTop(double celsius, double plotHeight) const {
    const double y = plotHeight - plotHeight * (celsius - range_->low) / range_->span();
    return snapped(y - hairline() / 2.0);
}

// Lines are rectangles aligned to the pixels of the screen: a stroked line would be smeared over two rows.
void LineChart::drawPlainLines(QPainter& painter, QSizeF plot) const {
    for (int i = 0; i < plainLines; ++i) {
        const double y = (plot.height() - hairline()) * i / (plainLines - 1);
        painter.fillRect(QRectF(0.0, snapped(y), plot.width(), hairline()), gridColor_);
    }
}

void LineChart::drawLines(QPainter& painter, const QList<ChartLine>& lines, QSizeF plot) const {
    for (const ChartLine& line : lines) {
        if (!line.threshold) {
            painter.fillRect(QRectF(0.0, lineTop(line.celsius, plot.height()), plot.width(), hairline()),
                             gridColor_);
        }
    }
}

void LineChart::drawThreshold(QPainter& painter, const QList<ChartLine>& lines, QSizeF plot) const {
    // chartLines puts the threshold last.
    if (lines.isEmpty() || !lines.last().threshold) {
        return;
    }
    const double y = lineTop(lines.last().celsius, plot.height());
    for (int i = 0; i * (dash + gap) < plot.width(); ++i) {
        const double x = i * (dash + gap);
        painter.fillRect(QRectF(x, y, std::min(dash, plot.width() - x), hairline()), thresholdColor_);
    }
}

// Draws each digit in a cell of its own, so that the width of a number does not depend on its digits.
void LineChart::drawNumbers(QPainter& painter, const QList<ChartLine>& lines, double plotHeight) const {
    for (const ChartLine& line : lines) {
        if (!line.numbered) {
            continue;
        }
        QFont font = QGuiApplication::font();
        font.setPixelSize(static_cast<int>(std::round(numberSize * textScale_)));
        font.setWeight(line.threshold ? QFont::DemiBold : QFont::Normal);
        painter.setFont(font);
        painter.setPen(line.threshold ? thresholdNumberColor_ : numberColor_);
        const QFontMetricsF metrics(font);
        const double cell = metrics.horizontalAdvance(u'0');
        // The digits are centred on the line.
        const double baseline =
            snapped(lineTop(line.celsius, plotHeight) + (hairline() + metrics.capHeight()) / 2.0);
        double x = 0.0;
        for (const QChar character : QString::number(std::round(line.celsius))) {
            painter.drawText(QPointF(x + (cell - metrics.horizontalAdvance(character)) / 2.0, baseline),
                             QString(character));
            x += cell;
        }
    }
}

void LineChart::paint(QPainter* painter) {
    const QRectF area = plot();
    if (area.width() <= 0.0 || area.height() <= 0.0) {
        return;
    }
    painter->translate(inset_, inset_);
    painter->setRenderHint(QPainter::Antialiasing, false);
    if (!range_) {
        drawPlainLines(*painter, area.size());
        return;
    }

    const QList<ChartLine> lines =
        chartLines(*range_, area.height(), textScale_,
                   std::isfinite(threshold_) ? std::optional(threshold_) : std::nullopt);
    if (column_ > 0.0) {
        drawNumbers(*painter, lines, area.height());
    }
    painter->translate(area.left() - inset_, 0.0);
    drawLines(*painter, lines, area.size());

    const QPolygonF line = pointsIn(values_, *range_, area.width(), area.height());
    QPolygonF outline = line;
    outline << QPointF(line.last().x(), area.height()) << QPointF(line.first().x(), area.height());
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fillColor_);
    painter->drawPolygon(outline);

    painter->setRenderHint(QPainter::Antialiasing, false);
    drawThreshold(*painter, lines, area.size());

    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(lineColor_, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(line);

    if (endDot_) {
        paintChartDot(*painter, line.last(), lineColor_, surfaceColor_);
    }
}

} // namespace Fenwhirl
