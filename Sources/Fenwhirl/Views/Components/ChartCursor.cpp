#include "Fenwhirl/Views/Components/ChartCursor.h"

#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Views/Components/ChartDot.h"

#include <QDateTime>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr double focusRadius = 9.0; // the middle of a ring from 8 to 10
constexpr double focusWidth = 2.0;
constexpr double cursorReach = 12.0; // of the item beyond its point, on each side
constexpr double tail = 4.0;         // of the hairline below the plot
constexpr double endDistance = 12.0;

} // namespace

ChartCursor::ChartCursor(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &ChartCursor::styleChanged, this, [this] { update(); });
}

void ChartCursor::setChart(LineChart* chart) {
    if (chart == chart_) {
        return;
    }
    if (chart_ != nullptr) {
        chart_->disconnect(this);
    }
    chart_ = chart;
    if (chart_ != nullptr) {
        for (const auto signal : {&LineChart::valuesChanged, &LineChart::plotChanged}) {
            connect(chart_, signal, this, &ChartCursor::follow);
        }
        for (const auto signal : {&QQuickItem::widthChanged, &QQuickItem::heightChanged,
                                  &QQuickItem::xChanged, &QQuickItem::yChanged}) {
            connect(chart_, signal, this, &ChartCursor::follow);
        }
        connect(chart_, &QObject::destroyed, this, [this] { chart_ = nullptr; });
    }
    Q_EMIT chartChanged();
    follow();
}

void ChartCursor::setTimes(const QList<double>& times) {
    times_ = times;
    Q_EMIT timesChanged();
    follow();
}

int ChartCursor::lastIndex() const {
    return chart_ == nullptr ? -1 : static_cast<int>(chart_->values().size()) - 1;
}

int ChartCursor::usable(int index) const {
    for (int i = index; i >= 0; --i) {
        if (chart_->pointAt(i)) {
            return i;
        }
    }
    for (int i = index + 1; i <= lastIndex(); ++i) {
        if (chart_->pointAt(i)) {
            return i;
        }
    }
    return -1;
}

int ChartCursor::indexAt(double x) const {
    const QRectF plot = chart_->plot();
    const double share = (x - chart_->x() - plot.left()) / plot.width();
    const double index = std::round(std::clamp(share, 0.0, 1.0) * lastIndex());
    return std::isfinite(index) ? usable(static_cast<int>(index)) : -1;
}

int ChartCursor::keyboardIndex() const {
    if (!sample_) {
        return usable(lastIndex());
    }
    const auto found = std::find(times_.rbegin(), times_.rend(), *sample_);
    const auto index = static_cast<int>(std::distance(found, times_.rend())) - 1; // -1: the sample has left
    return usable(std::clamp(index, 0, lastIndex()));
}

void ChartCursor::follow() {
    int index = -1;
    if (chart_ != nullptr && chart_->hasLine()) {
        if (pointer_) {
            index = indexAt(*pointer_);
        } else if (entered_ && !dismissed_) {
            index = keyboardIndex();
        }
    }
    const bool wasReading = reading();
    index_ = index;
    if (reading()) {
        point_ = *chart_->pointAt(index_);
        celsius_ = chart_->values().at(index_);
        time_ = index_ < times_.size() ? std::optional(times_.at(index_)) : std::nullopt;
        place();
    }
    // Values that arrive while the keyboard leads are not announced; the keyboard's own moves call speak().
    if (!byKeyboard()) {
        speak();
    }
    if (reading() || wasReading) {
        Q_EMIT moved();
    }
}

void ChartCursor::place() {
    const QRectF plot = chart_->plot();
    setPosition({chart_->x() + std::floor(point_.x()) - cursorReach, chart_->y() + plot.top() - cursorReach});
    setSize({2.0 * cursorReach + 1.0, plot.height() + 2.0 * cursorReach});
    update();
}

double ChartCursor::at() const {
    return chart_ == nullptr ? 0.0 : chart_->x() + point_.x();
}

bool ChartCursor::coversEndDot() const {
    return reading() && chart_->plot().right() - point_.x() <= endDistance;
}

QString ChartCursor::timeText() const {
    if (!time_ || !std::isfinite(*time_)) {
        return {};
    }
    return NumberFormat::clockText(QDateTime::fromMSecsSinceEpoch(NumberFormat::rounded(*time_)).time());
}

QString ChartCursor::degreesText() const {
    return NumberFormat::degreesText(celsius_);
}

void ChartCursor::speak() {
    QString spoken;
    if (reading()) {
        const QString time = timeText();
        spoken =
            (time.isEmpty() ? time : time + QStringLiteral(", ")) + NumberFormat::temperatureText(celsius_);
    }
    if (std::exchange(spoken_, spoken) != spoken) {
        Q_EMIT spokenChanged();
    }
}

QString ChartCursor::widestTime() const {
    return NumberFormat::clockText(QTime(22, 0)); // two digits for the hour in a format of 12 hours, too
}

void ChartCursor::pointTo(double x) {
    if (x == pointedAt_) {
        return; // the page moved under a resting pointer
    }
    pointedAt_ = x;
    pointer_ = x;
    follow();
}

void ChartCursor::leave() {
    pointer_.reset();
    pointedAt_.reset();
    follow();
    speak();
}

void ChartCursor::enter() {
    entered_ = true;
    dismissed_ = false;
    sample_.reset();
    pointer_.reset();
    follow();
    speak();
}

void ChartCursor::release() {
    entered_ = false;
    follow();
}

void ChartCursor::dismiss() {
    dismissed_ = true;
    pointer_.reset();
    follow();
}

void ChartCursor::moveBy(int samples) {
    if (chart_ == nullptr || !chart_->hasLine()) {
        return;
    }
    const int from = pointer_ ? index_ : keyboardIndex();
    pointer_.reset();
    entered_ = true;
    dismissed_ = false;
    const qint64 wanted = static_cast<qint64>(from) + samples;
    int index = static_cast<int>(std::clamp<qint64>(wanted, 0, lastIndex()));
    // Skips values that are not finite, in the direction of the movement.
    while (index < lastIndex() && samples > 0 && !chart_->pointAt(index)) {
        ++index;
    }
    index = usable(index);
    if (index == usable(lastIndex()) || index >= times_.size()) {
        sample_.reset();
    } else {
        sample_ = times_.at(index);
    }
    follow();
    speak();
}

void ChartCursor::paint(QPainter* painter) {
    if (chart_ == nullptr) {
        return;
    }
    const double ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0;
    const double hairline = std::max(1.0, std::round(ratio)) / ratio;
    // The item is aligned to whole points, so the remaining fraction is added here.
    const double x = cursorReach + point_.x() - std::floor(point_.x());
    const double left = std::round((x - hairline / 2.0) * ratio) / ratio;
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->fillRect(QRectF(left, cursorReach, hairline, height() - 2.0 * cursorReach + tail), lineColor_);

    painter->setRenderHint(QPainter::Antialiasing, true);
    const QPointF point(x, cursorReach + point_.y() - chart_->plot().top());
    if (ring_) {
        painter->setBrush(surfaceColor_);
        painter->setPen(QPen(dotColor_, focusWidth));
        painter->drawEllipse(point, focusRadius, focusRadius);
    }
    paintChartDot(*painter, point, dotColor_, surfaceColor_);
}

} // namespace Fenwhirl
