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
// A child of what casts it, below it, `blur` points larger on each side and shifted by its owner. Painted
// once by the processor and then kept as a picture, because shader effects do not exist with the software
// renderer.

namespace Fenwhirl {

// The picture of it: `size` includes the blur on all sides; all measures in points. Pure; any thread.
[[nodiscard]] QImage softShadow(QSize size, double radius, double blur, const QColor& color);

class SoftShadow : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY styleChanged FINAL)
    Q_PROPERTY(double blur READ blur WRITE setBlur NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY styleChanged FINAL)

public:
    explicit SoftShadow(QQuickItem* parent = nullptr);

    // Corner radius of the caster.
    [[nodiscard]] double radius() const { return m_radius; }

    void setRadius(double radius);

    // How far the shadow fades out beyond the caster's edge.
    [[nodiscard]] double blur() const { return m_blur; }

    void setBlur(double blur);

    [[nodiscard]] QColor color() const { return m_color; }

    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void styleChanged();

private:
    double m_radius = 0.0;
    double m_blur = 24.0;
    QColor m_color = Qt::black;
};

} // namespace Fenwhirl
