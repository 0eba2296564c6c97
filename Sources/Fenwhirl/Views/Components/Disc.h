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
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor ringColor MEMBER ringColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(double ringWidth MEMBER ringWidth_ NOTIFY styleChanged FINAL)

public:
    explicit Disc(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {
        setAntialiasing(true);
        connect(this, &Disc::styleChanged, this, [this] { update(); });
    }

    void paint(QPainter* painter) override {
        const double inside = ringWidth_ / 2.0;
        painter->setBrush(color_);
        painter->setPen(ringWidth_ > 0.0 ? QPen(ringColor_, ringWidth_) : QPen(Qt::NoPen));
        painter->drawEllipse(boundingRect().adjusted(inside, inside, -inside, -inside));
    }

Q_SIGNALS:
    void styleChanged();

private:
    QColor color_;
    QColor ringColor_;
    double ringWidth_ = 0.0;
};

} // namespace Fenwhirl
