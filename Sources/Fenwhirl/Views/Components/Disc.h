#pragma once

#include <QColor>
#include <QPainter>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// A disc that fills its item, with a ring along the inside of its edge: QML type `Disc`.
//
// It is drawn with QPainter, because the software renderer draws the corners of rectangles as images of whole
// pixels, and a small disc of an odd size would not be round.

namespace Fenwhirl {

class Disc : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor ringColor MEMBER m_ringColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(double ringWidth MEMBER m_ringWidth NOTIFY styleChanged FINAL)

public:
    explicit Disc(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {
        setAntialiasing(true);
        connect(this, &Disc::styleChanged, this, [this] { update(); });
    }

    void paint(QPainter* painter) override {
        const double inside = m_ringWidth / 2.0;
        painter->setBrush(m_color);
        painter->setPen(m_ringWidth > 0.0 ? QPen(m_ringColor, m_ringWidth) : QPen(Qt::NoPen));
        painter->drawEllipse(boundingRect().adjusted(inside, inside, -inside, -inside));
    }

Q_SIGNALS:
    void styleChanged();

private:
    QColor m_color;
    QColor m_ringColor;
    double m_ringWidth = 0.0;
};

} // namespace Fenwhirl
