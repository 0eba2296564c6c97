#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// The blurred shadow of a rounded rectangle: QML type `SoftShadow`.
//
//   SoftShadow { target: background; radius: 11; blur: 24; offset: 8; color: Theme.shadow }
//
// It lies around `caster` (a sibling or the parent) on its own: as large as the caster and `blur` points more
// on each side, moved down by `offset`. Painted once by the processor and then kept as a picture, because
// shader effects do not exist with the software renderer. Draw it below the caster (`z: -1`).

namespace Fenwhirl {

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
