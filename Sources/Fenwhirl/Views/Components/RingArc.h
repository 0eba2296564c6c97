#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// The two arcs of a ring gauge, without its texts: QML type `RingArc`, the drawing inside RingGauge.qml.
//
// The track covers three quarters of a circle, open at the bottom; the value arc lies on it, from the lower
// left clockwise. In a 128 x 128 item the circle has 6 points of padding (radius 58) and the strokes are 11
// wide with round ends; other sizes scale everything. With a fraction below half a percent there is no value
// arc, not even its round end.

namespace Fenwhirl {

// What a gauge shows of any number: 0 for anything not above 0 and for no number, at most 1.
[[nodiscard]] double gaugeFraction(double fraction);

class RingArc : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double fraction READ fraction WRITE setFraction NOTIFY fractionChanged FINAL)
    Q_PROPERTY(QColor trackColor MEMBER m_trackColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor valueColor MEMBER m_valueColor NOTIFY styleChanged FINAL)

public:
    explicit RingArc(QQuickItem* parent = nullptr);

    // Always within 0...1: what is set passes through gaugeFraction.
    [[nodiscard]] double fraction() const { return m_fraction; }

    void setFraction(double fraction);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void fractionChanged();
    void styleChanged();

private:
    double m_fraction = 0.0;
    QColor m_trackColor;
    QColor m_valueColor;
};

} // namespace Fenwhirl
