#include "Fenwhirl/Views/Components/RingArc.h"

#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

constexpr double frame = 128.0;
constexpr double padding = 6.0;
constexpr double strokeWidth = 11.0;
// QPainterPath measures degrees counterclockwise from three o'clock: the lower left is 225, and clockwise is
// negative.
constexpr double startDegrees = 225.0;
constexpr double spanDegrees = -270.0;
// The measured speed of a fan at its minimum fluctuates by one rpm around it. Without this limit the round
// end would blink.
constexpr double leastShownFraction = 0.005;
constexpr double tickInnerRadius = 67.0;
constexpr double tickOuterRadius = 72.5;
constexpr double tickWidth = 3.0;

void drawArc(QPainter& painter, double fraction, const QColor& color) {
    const QRectF circle(padding, padding, frame - 2.0 * padding, frame - 2.0 * padding);
    QPainterPath path;
    path.arcMoveTo(circle, startDegrees);
    path.arcTo(circle, startDegrees, spanDegrees * fraction);
    painter.strokePath(path, QPen(color, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void drawTick(QPainter& painter, double fraction, const QColor& color) {
    constexpr double middle = frame / 2.0;
    const double angle = qDegreesToRadians(startDegrees + spanDegrees * fraction);
    const QPointF direction(std::cos(angle), -std::sin(angle));
    const QPointF centre(middle, middle);
    painter.setPen(QPen(color, tickWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(centre + direction * tickInnerRadius, centre + direction * tickOuterRadius);
}

} // namespace

double gaugeFraction(double fraction) {
    return fraction > 0.0 ? std::min(fraction, 1.0) : 0.0; // the comparison is false for NaN
}

RingArc::RingArc(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setImplicitSize(frame, frame);
    for (const auto signal : {&RingArc::fractionChanged, &RingArc::tickChanged, &RingArc::styleChanged}) {
        connect(this, signal, this, [this] { update(); });
    }
}

void RingArc::setFraction(double fraction) {
    const double clamped = gaugeFraction(fraction);
    if (clamped == fraction_) {
        return;
    }
    fraction_ = clamped;
    Q_EMIT fractionChanged();
}

void RingArc::setTick(double fraction) {
    const double clamped = gaugeFraction(fraction);
    if (clamped == tick_) {
        return;
    }
    tick_ = clamped;
    Q_EMIT tickChanged();
}

void RingArc::paint(QPainter* painter) {
    const double scale = std::min(width(), height()) / (frame + 2.0 * inset_);
    painter->scale(scale, scale);
    painter->translate(inset_, inset_);
    drawArc(*painter, 1.0, trackColor_);
    if (fraction_ >= leastShownFraction) {
        drawArc(*painter, fraction_, valueColor_);
    }
    if (tickOpacity_ > 0.0) {
        QColor color = tickColor_;
        color.setAlphaF(color.alphaF() * static_cast<float>(std::min(tickOpacity_, 1.0)));
        drawTick(*painter, tick_, color);
    }
}

} // namespace Fenwhirl
