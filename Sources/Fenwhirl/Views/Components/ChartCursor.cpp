#include "Fenwhirl/Views/Components/ChartCursor.h"

#include "Fenwhirl/Localization/NumberFormat.h"

#include <QDateTime>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr double dotRadius = 4.0;
constexpr double dotRingRadius = 6.0;
constexpr double focusRadius = 9.0; // the middle of a ring from 8 to 10
constexpr double focusWidth = 2.0;
constexpr double reach = 12.0; // of the item beyond its point, on each side
constexpr double tail = 4.0;   // of the hairline below the plot
constexpr double endDistance = 12.0;

} // namespace

ChartCursor::ChartCursor(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &ChartCursor::styleChanged, this, [this] { update(); });
}

void ChartCursor::setChart(LineChart* chart) {
    if (chart == m_chart)
        return;
    if (m_chart != nullptr)
        m_chart->disconnect(this);
    m_chart = chart;
    if (m_chart != nullptr) {
        for (const auto signal : {&LineChart::valuesChanged, &LineChart::plotChanged})
            connect(m_chart, signal, this, &ChartCursor::follow);
        for (const auto signal : {&QQuickItem::widthChanged, &QQuickItem::heightChanged,
                                  &QQuickItem::xChanged, &QQuickItem::yChanged})
            connect(m_chart, signal, this, &ChartCursor::follow);
        connect(m_chart, &QObject::destroyed, this, [this] { m_chart = nullptr; });
    }
    Q_EMIT chartChanged();
    follow();
}

void ChartCursor::setTimes(const QList<double>& times) {
    m_times = times;
    Q_EMIT timesChanged();
    follow();
}

int ChartCursor::lastIndex() const {
    return m_chart == nullptr ? -1 : static_cast<int>(m_chart->values().size()) - 1;
}

int ChartCursor::usable(int index) const {
    for (int i = index; i >= 0; --i) {
        if (m_chart->pointAt(i))
            return i;
    }
    for (int i = index + 1; i <= lastIndex(); ++i) {
        if (m_chart->pointAt(i))
            return i;
    }
    return -1;
}

int ChartCursor::indexAt(double x) const {
    const QRectF plot = m_chart->plot();
    const double share = (x - m_chart->x() - plot.left()) / plot.width();
    const double index = std::round(std::clamp(share, 0.0, 1.0) * lastIndex());
    return std::isfinite(index) ? usable(static_cast<int>(index)) : -1;
}

int ChartCursor::keyboardIndex() const {
    if (!m_sample)
        return usable(lastIndex());
    const auto found = std::find(m_times.rbegin(), m_times.rend(), *m_sample);
    const auto index = static_cast<int>(std::distance(found, m_times.rend())) - 1; // -1: the sample has left
    return usable(std::clamp(index, 0, lastIndex()));
}

void ChartCursor::follow() {
    int index = -1;
    if (m_chart != nullptr && m_chart->hasLine()) {
        if (m_pointer)
            index = indexAt(*m_pointer);
        else if (m_entered && !m_dismissed)
            index = keyboardIndex();
    }
    const bool wasReading = reading();
    m_index = index;
    if (reading()) {
        m_point = *m_chart->pointAt(m_index);
        m_celsius = m_chart->values().at(m_index);
        m_time = m_index < m_times.size() ? std::optional(m_times.at(m_index)) : std::nullopt;
        place();
    }
    // Values that arrive while the keyboard leads are not announced; the keyboard's own moves call speak().
    if (!byKeyboard())
        speak();
    if (reading() || wasReading)
        Q_EMIT moved();
}

void ChartCursor::place() {
    const QRectF plot = m_chart->plot();
    setPosition({m_chart->x() + std::floor(m_point.x()) - reach, m_chart->y() + plot.top() - reach});
    setSize({2.0 * reach + 1.0, plot.height() + 2.0 * reach});
    update();
}

double ChartCursor::at() const {
    return m_chart == nullptr ? 0.0 : m_chart->x() + m_point.x();
}

bool ChartCursor::coversEndDot() const {
    return reading() && m_chart->plot().right() - m_point.x() <= endDistance;
}

QString ChartCursor::timeText() const {
    if (!m_time || !std::isfinite(*m_time))
        return {};
    return NumberFormat::clockText(QDateTime::fromMSecsSinceEpoch(NumberFormat::rounded(*m_time)).time());
}

QString ChartCursor::degreesText() const {
    return NumberFormat::degreesText(m_celsius);
}

void ChartCursor::speak() {
    QString spoken;
    if (reading()) {
        const QString time = timeText();
        spoken =
            (time.isEmpty() ? time : time + QStringLiteral(", ")) + NumberFormat::temperatureText(m_celsius);
    }
    if (std::exchange(m_spoken, spoken) != spoken)
        Q_EMIT spokenChanged();
}

QString ChartCursor::widestTime() const {
    return NumberFormat::clockText(QTime(22, 0)); // two digits for the hour in a format of 12 hours, too
}

void ChartCursor::pointTo(double x) {
    if (x == m_pointedAt)
        return; // the page moved under a resting pointer
    m_pointedAt = x;
    m_pointer = x;
    follow();
}

void ChartCursor::leave() {
    m_pointer.reset();
    m_pointedAt.reset();
    follow();
    speak();
}

void ChartCursor::enter() {
    m_entered = true;
    m_dismissed = false;
    m_sample.reset();
    m_pointer.reset();
    follow();
    speak();
}

void ChartCursor::release() {
    m_entered = false;
    follow();
}

void ChartCursor::dismiss() {
    m_dismissed = true;
    m_pointer.reset();
    follow();
}

void ChartCursor::moveBy(int samples) {
    if (m_chart == nullptr || !m_chart->hasLine())
        return;
    const int from = m_pointer ? m_index : keyboardIndex();
    m_pointer.reset();
    m_entered = true;
    m_dismissed = false;
    const qint64 wanted = static_cast<qint64>(from) + samples;
    int index = static_cast<int>(std::clamp<qint64>(wanted, 0, lastIndex()));
    // Skips values that are not finite, in the direction of the movement.
    while (index < lastIndex() && samples > 0 && !m_chart->pointAt(index))
        ++index;
    index = usable(index);
    if (index == usable(lastIndex()) || index >= m_times.size())
        m_sample.reset();
    else
        m_sample = m_times.at(index);
    follow();
    speak();
}

void ChartCursor::paint(QPainter* painter) {
    if (m_chart == nullptr)
        return;
    const double ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0;
    const double hairline = std::max(1.0, std::round(ratio)) / ratio;
    // The item is aligned to whole points, so the remaining fraction is added here.
    const double x = reach + m_point.x() - std::floor(m_point.x());
    const double left = std::round((x - hairline / 2.0) * ratio) / ratio;
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->fillRect(QRectF(left, reach, hairline, height() - 2.0 * reach + tail), m_lineColor);

    painter->setRenderHint(QPainter::Antialiasing, true);
    const QPointF point(x, reach + m_point.y() - m_chart->plot().top());
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_surfaceColor);
    const double clear = m_ring ? focusRadius : dotRingRadius;
    painter->drawEllipse(point, clear, clear);
    if (m_ring) {
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(m_dotColor, focusWidth));
        painter->drawEllipse(point, focusRadius, focusRadius);
        painter->setPen(Qt::NoPen);
    }
    painter->setBrush(m_dotColor);
    painter->drawEllipse(point, dotRadius, dotRadius);
}

} // namespace Fenwhirl
