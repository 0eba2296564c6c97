#pragma once

#include "Fenwhirl/Views/Components/LineChart.h"

#include <QColor>
#include <QList>
#include <QPointF>
#include <QQuickPaintedItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

// The reading that is pointed at in a LineChart: QML type `ChartCursor`, beside the chart and above it.
//
//   ChartCursor { chart: plot; times: root.times; lineColor: ...; dotColor: ...; surfaceColor: ... }
//
// It is led by a pointer, which it stays under while new values arrive, or by the keyboard: then it stays on
// its sample, which wanders to the left, and on the last one as long as it is there. A sample that has left
// the chart takes it to the first. Whichever moved last leads.
// Places itself: a hairline, and a dot on the line, with a ring around it while `ring` is true.

namespace Fenwhirl {

class ChartCursor : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Fenwhirl::LineChart* chart READ chart WRITE setChart NOTIFY chartChanged FINAL)
    // When the chart's values were read, in milliseconds since the beginning of 1970, one for each.
    Q_PROPERTY(QList<double> times READ times WRITE setTimes NOTIFY timesChanged FINAL)
    Q_PROPERTY(bool ring MEMBER m_ring NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor lineColor MEMBER m_lineColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor dotColor MEMBER m_dotColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor surfaceColor MEMBER m_surfaceColor NOTIFY styleChanged FINAL)

    // Whether something is read. What follows keeps its last value while nothing is, so that it can fade out.
    Q_PROPERTY(bool reading READ reading NOTIFY moved FINAL)
    Q_PROPERTY(bool byKeyboard READ byKeyboard NOTIFY moved FINAL)
    Q_PROPERTY(double at READ at NOTIFY moved FINAL)              // x in the chart's parent
    Q_PROPERTY(bool hidesEnd READ hidesEnd NOTIFY moved FINAL)    // too near to the last value for its dot
    Q_PROPERTY(QString timeText READ timeText NOTIFY moved FINAL) // "14:32"; empty where no time is known
    Q_PROPERTY(QString degreesText READ degreesText NOTIFY moved FINAL)
    // "14:32, 63 °C", for assistive technology, which says every change of it: it follows pointer and keys,
    // but not the values that arrive under the keyboard's cursor. Empty while nothing is read.
    Q_PROPERTY(QString spoken READ spoken NOTIFY spokenChanged FINAL)
    // A time in the region's form that is as wide as any.
    Q_PROPERTY(QString widestTime READ widestTime CONSTANT FINAL)

public:
    explicit ChartCursor(QQuickItem* parent = nullptr);

    [[nodiscard]] LineChart* chart() const { return m_chart; }

    void setChart(LineChart* chart);

    [[nodiscard]] const QList<double>& times() const { return m_times; }

    void setTimes(const QList<double>& times);

    [[nodiscard]] bool reading() const { return m_index >= 0; }

    [[nodiscard]] bool byKeyboard() const { return reading() && !m_pointer; }

    [[nodiscard]] double at() const;
    [[nodiscard]] bool hidesEnd() const;
    [[nodiscard]] QString timeText() const;
    [[nodiscard]] QString degreesText() const;

    [[nodiscard]] QString spoken() const { return m_spoken; }

    [[nodiscard]] QString widestTime() const;

    // A pointer is at this x of the chart's parent, or nowhere any more.
    Q_INVOKABLE void pointTo(double x);
    Q_INVOKABLE void leave();
    // The keyboard's cursor comes to the last sample, and goes.
    Q_INVOKABLE void enter();
    Q_INVOKABLE void release();
    // Hides it until it is moved again.
    Q_INVOKABLE void dismiss();
    // By so many samples, to the left when negative; at most to the first or the last.
    Q_INVOKABLE void moveBy(int samples);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void chartChanged();
    void timesChanged();
    void styleChanged();
    void moved();
    void spokenChanged();

private:
    [[nodiscard]] int lastIndex() const;
    // The nearest sample with a number, seen from there to the left first, then to the right; -1: there is
    // none.
    [[nodiscard]] int usable(int index) const;
    [[nodiscard]] int indexAt(double x) const;
    [[nodiscard]] int keyboardIndex() const;
    void follow();
    void place();
    void speak();

    LineChart* m_chart = nullptr;
    QList<double> m_times;
    bool m_ring = false;
    QColor m_lineColor;
    QColor m_dotColor;
    QColor m_surfaceColor;

    std::optional<double> m_pointer;   // where it leads the cursor
    std::optional<double> m_pointedAt; // where it was seen last
    // The keyboard's own: whether it is there and seen, and its sample's time; none on the last one.
    bool m_entered = false;
    bool m_dismissed = false;
    std::optional<double> m_sample;

    int m_index = -1;
    QPointF m_point; // in the chart's coordinates
    double m_celsius = 0.0;
    std::optional<double> m_time;
    QString m_spoken;
};

} // namespace Fenwhirl
