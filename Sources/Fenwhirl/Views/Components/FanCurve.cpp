#include "Fenwhirl/Views/Components/FanCurve.h"

#include "Fenwhirl/Views/Components/ChartDot.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

constexpr double cornerRadius = 4.0;
constexpr double curveWidth = 2.5;
constexpr double thinCurveWidth = 1.5;
constexpr float hairlineStrength = 0.26F;
constexpr float hatchingStrength = 0.13F;
constexpr float settingStrength = 0.7F;

QColor fainter(QColor color, float share) {
    color.setAlphaF(color.alphaF() * share);
    return color;
}

QPen dashed(const QColor& color, qreal dash, qreal gap) {
    QPen pen(color, thinCurveWidth, Qt::CustomDashLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setDashPattern({dash / thinCurveWidth, gap / thinCurveWidth}); // in multiples of the pen's width
    return pen;
}

} // namespace

// The coordinate system of the drawing: points, y down, with the origin at the plot's upper left corner.
struct FanCurve::Plot {
    double width;
    double height;
    double ratio; // pixels per point

    [[nodiscard]] double x(double celsius) const {
        return width * (celsius - coldestCelsius) / (hottestCelsius - coldestCelsius);
    }

    [[nodiscard]] QPointF at(QPointF point) const { return {x(point.x()), height * (1.0 - point.y())}; }

    [[nodiscard]] QPolygonF mapped(const QPolygonF& line) const {
        QPolygonF result;
        result.reserve(line.size());
        for (const QPointF point : line) {
            result.append(at(point));
        }
        return result;
    }

    // A vertical line, one point wide and aligned to whole pixels.
    [[nodiscard]] QRectF hairline(double celsius) const {
        const double thickness = std::max(1.0, std::round(ratio)) / ratio;
        const double left = std::clamp(x(celsius) - thickness / 2.0, 0.0, width - thickness);
        return {std::round(left * ratio) / ratio, 0.0, thickness, height};
    }

    [[nodiscard]] QRectF from(double celsius, double to) const {
        return {x(celsius), 0.0, x(to) - x(celsius), height};
    }
};

FanCurve::FanCurve(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    for (const auto signal : {&FanCurve::shapeChanged, &FanCurve::nowChanged, &FanCurve::styleChanged}) {
        connect(this, signal, this, [this] { update(); });
    }
}

double FanCurve::placeOf(double celsius, double plotWidth) const {
    return plotWidth * (onCurveAxis(celsius) - coldestCelsius) / (hottestCelsius - coldestCelsius);
}

double FanCurve::celsiusAt(double place, double plotWidth) const {
    return coldestCelsius + place / std::max(plotWidth, 1.0) * (hottestCelsius - coldestCelsius);
}

QVariantList FanCurve::numbers(bool limited, double alertAt, double plotWidth, double least) const {
    QVariantList result;
    for (const double number : axisNumbers({.isLimited = limited, .alertAt = alertAt}, plotWidth, least)) {
        result.append(number);
    }
    return result;
}

void FanCurve::drawBackground(QPainter& painter, const Plot& plot) const {
    QPainterPath ground;
    ground.addRoundedRect(QRectF(0.0, 0.0, plot.width, plot.height), cornerRadius, cornerRadius);
    painter.fillPath(ground, plotColor_);

    // The area below the line is filled only where the setting is in force. Where a rule overrides it, the
    // rule's colour shows that.
    const double until = inForceUntil(shape_);
    QPolygonF area = plot.mapped(settingLine(shape_, coldestCelsius, until));
    area << QPointF(plot.x(until), plot.height) << QPointF(0.0, plot.height);
    QPainterPath areaPath;
    areaPath.addPolygon(area);
    areaPath.closeSubpath();
    painter.fillPath(areaPath.intersected(ground), fillColor_);
    if (const auto alert = protectedFrom(shape_)) {
        painter.fillRect(plot.from(*alert, handBackCelsius), alertColor_);
    }

    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const double celsius : {40.0, 60.0, 80.0}) {
        painter.fillRect(plot.hairline(celsius), gridColor_);
    }
    if (shape_.isLimited) {
        painter.fillRect(plot.hairline(handBackCelsius), fainter(inkColor_, hairlineStrength));
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
    if (!shape_.isLimited) {
        return;
    }

    constexpr double apart = 6.0;
    constexpr double thickness = 2.0;
    const QRectF zone = plot.from(handBackCelsius, hottestCelsius);
    QPainterPath zonePath;
    zonePath.addRect(zone);
    painter.save();
    painter.setClipPath(zonePath.intersected(ground));
    painter.setPen(QPen(fainter(inkColor_, hatchingStrength), thickness, Qt::SolidLine, Qt::FlatCap));
    const double step = apart * std::sqrt(2.0); // along the axis, for lines at 45 degrees
    const int lines = static_cast<int>(std::ceil((zone.width() + plot.height) / step));
    for (int i = 0; i < lines; ++i) {
        const double x = zone.left() - plot.height + i * step;
        painter.drawLine(QPointF(x, plot.height), QPointF(x + plot.height, 0.0));
    }
    painter.restore();
}

void FanCurve::drawLines(QPainter& painter, const Plot& plot) const {
    painter.setBrush(Qt::NoBrush);
    const double until = inForceUntil(shape_);
    if (until < hottestCelsius) {
        painter.setPen(dashed(fainter(lineColor_, settingStrength), 3.0, 4.0));
        painter.drawPolyline(plot.mapped(settingLine(shape_, until, hottestCelsius)));
    }
    if (maximumIsWithoutEffect()) {
        QPen dots(mutedColor_, thinCurveWidth, Qt::CustomDashLine, Qt::RoundCap);
        dots.setDashPattern({0.01, 3.0}); // with round caps, dashes of almost no length are dots
        painter.setPen(dots);
        painter.drawLine(plot.at({onCurveAxis(shape_.maxTemp), 1.0}),
                         plot.at({onCurveAxis(shape_.startTemp) + 1.0, 1.0}));
    }
    painter.setPen(QPen(lineColor_, curveWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(plot.mapped(lineInForce(shape_)));
}

void FanCurve::drawNow(QPainter& painter, const Plot& plot) const {
    if (std::isnan(now_)) {
        return;
    }
    painter.fillRect(plot.hairline(onCurveAxis(now_)), fainter(inkColor_, hairlineStrength));
    const auto place = pointOnCurve(shape_, now_, protecting_);
    if (!place) {
        return;
    }
    paintChartDot(painter, plot.at(*place), lineColor_, plotColor_);
}

void FanCurve::paint(QPainter* painter) {
    const Plot plot{.width = width() - 2.0 * inset_,
                    .height = height() - 2.0 * inset_,
                    .ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0};
    if (plot.width <= 0.0 || plot.height <= 0.0) {
        return;
    }
    painter->translate(inset_, inset_);
    drawBackground(*painter, plot);
    drawLines(*painter, plot);
    drawNow(*painter, plot);
}

} // namespace Fenwhirl
