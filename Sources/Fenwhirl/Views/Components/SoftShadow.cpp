#include "Fenwhirl/Views/Components/SoftShadow.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Fenwhirl {

namespace {

// How much of a blurred half-plane's edge is covered at a distance inside it (negative: outside), for a
// Gaussian blur.
double edgeCoverage(double inside, double sigma) {
    return 0.5 * std::erfc(-inside / (sigma * std::sqrt(2.0)));
}

// Distance to the edge of a rounded rectangle centred at the origin, positive inside.
double insideDistance(double x, double y, double halfWidth, double halfHeight, double radius) {
    const double dx = std::abs(x) - (halfWidth - radius);
    const double dy = std::abs(y) - (halfHeight - radius);
    const double outside = std::hypot(std::max(dx, 0.0), std::max(dy, 0.0));
    return radius - outside - std::min(std::max(dx, dy), 0.0);
}

} // namespace

SoftShadow::SoftShadow(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void SoftShadow::setRadius(double radius) {
    if (radius == m_radius)
        return;
    m_radius = radius;
    update();
    Q_EMIT styleChanged();
}

void SoftShadow::setBlur(double blur) {
    if (blur == m_blur)
        return;
    m_blur = blur;
    update();
    Q_EMIT styleChanged();
}

void SoftShadow::setColor(const QColor& color) {
    if (color == m_color)
        return;
    m_color = color;
    update();
    Q_EMIT styleChanged();
}

void SoftShadow::paint(QPainter* painter) {
    const int imageWidth = static_cast<int>(std::ceil(std::clamp(width(), 0.0, 4096.0)));
    const int imageHeight = static_cast<int>(std::ceil(std::clamp(height(), 0.0, 4096.0)));
    if (imageWidth <= 0 || imageHeight <= 0)
        return;
    const double sigma = std::max(m_blur, 1.0) / 2.0;
    const double halfWidth = std::max(0.0, width() / 2.0 - m_blur);
    const double halfHeight = std::max(0.0, height() / 2.0 - m_blur);
    // Blurring rounds the corners: a wider radius in the distance does the same.
    const double radius = std::min({m_radius + sigma, halfWidth, halfHeight});
    QImage image(imageWidth, imageHeight, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < imageHeight; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < imageWidth; ++x) {
            const double inside = insideDistance(x + 0.5 - width() / 2.0, y + 0.5 - height() / 2.0, halfWidth,
                                                 halfHeight, radius);
            const double alpha = static_cast<double>(m_color.alphaF()) * edgeCoverage(inside, sigma);
            row[x] = qPremultiply(qRgba(m_color.red(), m_color.green(), m_color.blue(),
                                        static_cast<int>(std::lround(alpha * 255.0))));
        }
    }
    painter->drawImage(QPointF(0.0, 0.0), image);
}

} // namespace Fenwhirl
