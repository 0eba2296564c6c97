#pragma once

#include "Fenwhirl/Views/Components/LineChart.h"

#include <QColor>
#include <QList>
#include <QPointF>
#include <QQuickPaintedItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

// The cursor that marks one reading of a LineChart: QML type `ChartCursor`, a sibling of the chart, above it.
//
//   ChartCursor { chart: plot; times: root.times; lineColor: ...; dotColor: ...; surfaceColor: ... }
//
// The pointer or the keyboard leads it, whichever moved last. Led by the pointer, it stays under the pointer
// while new values arrive. Led by the keyboard, it stays on its sample, which moves to the left as new values
// arrive; on the last sample it stays on the last one. When its sample has left the chart, it goes to the
// first.
// It positions itself. It draws a hairline, and a dot on the line, with a ring around the dot while `ring` is
// true.

namespace Fenwhirl {

class ChartCursor : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Fenwhirl::LineChart* chart READ chart WRITE setChart NOTIFY chartChanged FINAL)
    // When the chart's values were read, one time for each, in milliseconds since the Unix epoch.
    Q_PROPERTY(QList<double> times READ times WRITE setTimes NOTIFY timesChanged FINAL)
    Q_PROPERTY(bool ring MEMBER ring_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor lineColor MEMBER lineColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor dotColor MEMBER dotColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor surfaceColor MEMBER surfaceColor_ NOTIFY styleChanged FINAL)

    // Whether a reading is marked. While none is, the properties below keep their last values, so that the
    // cursor can fade out.
    Q_PROPERTY(bool reading READ reading NOTIFY moved FINAL)
    Q_PROPERTY(bool byKeyboard READ byKeyboard NOTIFY moved FINAL)
    Q_PROPERTY(double at READ at NOTIFY moved FINAL)                   // x coordinate in the chart's parent
    Q_PROPERTY(bool coversEndDot READ coversEndDot NOTIFY moved FINAL) // covers the chart's end dot
    Q_PROPERTY(QString timeText READ timeText NOTIFY moved FINAL) // "14:32"; empty if the time is unknown
    Q_PROPERTY(QString degreesText READ degreesText NOTIFY moved FINAL)
    // "14:32, 63 °C", for assistive technology, which announces every change of it. It therefore follows
    // pointer and keys, but not the values that arrive while the keyboard leads. Empty while no reading is
    // marked.
    Q_PROPERTY(QString spoken READ spoken NOTIFY spokenChanged FINAL)
    // A time in the region's format that is as wide as any.
    Q_PROPERTY(QString widestTime READ widestTime CONSTANT FINAL)

public:
    explicit ChartCursor(QQuickItem* parent = nullptr);

    [[nodiscard]] LineChart* chart() const { return chart_; }

    void setChart(LineChart* chart);

    [[nodiscard]] const QList<double>& times() const { return times_; }

    void setTimes(const QList<double>& times);

    [[nodiscard]] bool reading() const { return index_ >= 0; }

    [[nodiscard]] bool byKeyboard() const { return reading() && !pointer_; }

    [[nodiscard]] double at() const;
    [[nodiscard]] bool coversEndDot() const;
    [[nodiscard]] QString timeText() const;
    [[nodiscard]] QString degreesText() const;

    [[nodiscard]] QString spoken() const { return spoken_; }

    [[nodiscard]] QString widestTime() const;

    // The pointer is at this x coordinate of the chart's parent, or has left.
    Q_INVOKABLE void pointTo(double x);
    Q_INVOKABLE void leave();
    // The keyboard focus has arrived, which marks the last sample, or has left.
    Q_INVOKABLE void enter();
    Q_INVOKABLE void release();
    // Hides the cursor until it is moved again.
    Q_INVOKABLE void dismiss();
    // Moves by a number of samples, to the left when negative, at most to the first or the last one.
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
    // The nearest sample with a finite value: `index` itself or one to its left, else one to its right; -1 if
    // there is none.
    [[nodiscard]] int usable(int index) const;
    [[nodiscard]] int indexAt(double x) const;
    [[nodiscard]] int keyboardIndex() const;
    void follow();
    void place();
    void speak();

    LineChart* chart_ = nullptr;
    QList<double> times_;
    bool ring_ = false;
    QColor lineColor_;
    QColor dotColor_;
    QColor surfaceColor_;

    std::optional<double> pointer_;   // x coordinate while the pointer leads the cursor
    std::optional<double> pointedAt_; // x coordinate at which the pointer was last seen
    // The keyboard's state: whether it has entered the chart, whether the cursor is hidden, and the time of
    // its sample, which is empty on the last one.
    bool entered_ = false;
    bool dismissed_ = false;
    std::optional<double> sample_;

    int index_ = -1;
    QPointF point_; // in the chart's coordinates
    double celsius_ = 0.0;
    std::optional<double> time_;
    QString spoken_;
};

} // namespace Fenwhirl
