#pragma once

#include <QColor>
#include <QImage>
#include <QQuickPaintedItem>
#include <QSize>
#include <QtQml/qqmlregistration.h>

// The blurred shadow of a rounded rectangle: QML type `SoftShadow`.
//
//   SoftShadow {
//       radius: 11; blur: 32; color: Theme.shadow; z: -1
//       x: -blur; y: 10 - blur; width: parent.width + 2 * blur; height: parent.height + 2 * blur
//   }
//
// It is a child of the item that casts the shadow and lies behind it, `blur` points larger on each side and
// offset by its owner. It is painted once on the CPU and then kept as an image, because the software renderer
// has no shader effects.

namespace Fenwhirl {

// Renders the shadow. `size` includes the blur on all sides; all lengths are in pixels of the image. Pure;
// any thread.
[[nodiscard]] QImage softShadow(QSize size, double radius, double blur, const QColor& color);

class SoftShadow : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    // Corner radius of the item that casts the shadow.
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY styleChanged FINAL)
    // How far the shadow fades out beyond the edge of that item.
    Q_PROPERTY(double blur MEMBER blur_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY styleChanged FINAL)

public:
    explicit SoftShadow(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void styleChanged();

private:
    double radius_ = 0.0;
    double blur_ = 24.0;
    QColor color_ = Qt::black;
};

} // namespace Fenwhirl
