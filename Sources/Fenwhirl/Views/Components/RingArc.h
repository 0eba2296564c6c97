#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// The two arcs of a ring gauge, without its texts: QML type `RingArc`, used by RingGauge.qml.
//
// The track covers three quarters of a circle, open at the bottom. The value arc lies on it, from the lower
// left clockwise. In a 128 x 128 item the circle has 6 points of padding (radius 58) and the strokes are 11
// wide with round ends; other sizes scale everything. With a fraction below half a percent there is no value
// arc, not even its round end.
//
// A tick marks the target fraction. It lies outside the ring, because on the ring it would cut the round end
// of an arc that has reached the target. It reaches 10 points beyond the 128, so the item keeps `inset`
// points free on every side and its owner gives it negative margins of the same size, as RingGauge.qml does.

namespace Fenwhirl {

// Limits a fraction to what a gauge can show: 0 for anything not above 0 and for NaN, at most 1.
[[nodiscard]] double gaugeFraction(double fraction);

class RingArc : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double fraction READ fraction WRITE setFraction NOTIFY fractionChanged FINAL)
    Q_PROPERTY(double tick READ tick WRITE setTick NOTIFY tickChanged FINAL)
    // 0 to 1; at 0 there is no tick.
    Q_PROPERTY(double tickOpacity MEMBER tickOpacity_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor tickColor MEMBER tickColor_ NOTIFY styleChanged FINAL)
    // In points, for a size of 128.
    Q_PROPERTY(double inset MEMBER inset_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor trackColor MEMBER trackColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor valueColor MEMBER valueColor_ NOTIFY styleChanged FINAL)

public:
    explicit RingArc(QQuickItem* parent = nullptr);

    // Always within 0 to 1: the setter applies gaugeFraction.
    [[nodiscard]] double fraction() const { return fraction_; }

    void setFraction(double fraction);

    // The setter applies gaugeFraction, too.
    [[nodiscard]] double tick() const { return tick_; }

    void setTick(double fraction);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void fractionChanged();
    void tickChanged();
    void styleChanged();

private:
    double fraction_ = 0.0;
    double tick_ = 0.0;
    double tickOpacity_ = 0.0;
    double inset_ = 0.0;
    QColor tickColor_;
    QColor trackColor_;
    QColor valueColor_;
};

} // namespace Fenwhirl
