#include "Fenwhirl/Views/Components/SoftShadow.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Fenwhirl {

namespace {

// The shadow's colour by the distance to the edge of the rectangle, positive inside. It is a lookup table:
// there are as many pixels as in a window, and computing the exact coverage takes a hundred times longer than
// everything else.
class Shades {
public:
    Shades(const QColor& color, double sigma) : reach_(std::ceil(reachInSigmas * sigma)) {
        const int count = static_cast<int>(2 * reach_ * stepsPerPoint) + 1;
        shades_.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            const double inside = i / stepsPerPoint - reach_;
            // The coverage of an edge with a Gaussian blur.
            const double coverage = 0.5 * std::erfc(-inside / (sigma * std::sqrt(2.0)));
            const double alpha = static_cast<double>(color.alphaF()) * coverage;
            shades_.push_back(qPremultiply(qRgba(color.red(), color.green(), color.blue(),
                                                 static_cast<int>(std::lround(alpha * 255.0)))));
        }
    }

    [[nodiscard]] QRgb at(double inside) const {
        const double distance = std::clamp(inside, -reach_, reach_);
        return shades_[static_cast<std::size_t>(std::lround((distance + reach_) * stepsPerPoint))];
    }

private:
    static constexpr double reachInSigmas = 3.5; // beyond it eight bits make no difference
    static constexpr double stepsPerPoint = 16.0;
    double reach_;
    std::vector<QRgb> shades_;
};

// Distance to the edge of a rounded rectangle centred at the origin, positive inside.
double insideDistance(double x, double y, double halfWidth, double halfHeight, double radius) {
    const double dx = std::abs(x) - (halfWidth - radius);
    const double dy = std::abs(y) - (halfHeight - radius);
    if (dx > 0.0 && dy > 0.0) {
        return radius - std::sqrt(dx * dx + dy * dy);
    }
    return radius - std::max(dx, dy);
}

} // namespace

QImage softShadow(QSize size, double radius, double blur, const QColor& color) {
    const double sigma = std::max(blur, 1.0) / 2.0;
    const double halfWidth = std::max(0.0, size.width() / 2.0 - blur);
    const double halfHeight = std::max(0.0, size.height() / 2.0 - blur);
    // Blurring rounds the corners; a larger radius in the distance has the same effect.
    const double wideRadius = std::min({radius + sigma, halfWidth, halfHeight});
    const Shades shades(color, sigma);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    // The four quarters are symmetric, so only one is computed.
    for (int y = 0; y < (size.height() + 1) / 2; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < (size.width() + 1) / 2; ++x) {
            row[x] = shades.at(insideDistance(x + 0.5 - size.width() / 2.0, y + 0.5 - size.height() / 2.0,
                                              halfWidth, halfHeight, wideRadius));
            row[size.width() - 1 - x] = row[x];
        }
        std::copy_n(row, size.width(), reinterpret_cast<QRgb*>(image.scanLine(size.height() - 1 - y)));
    }
    return image;
}

SoftShadow::SoftShadow(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &SoftShadow::styleChanged, this, [this] { update(); });
}

void SoftShadow::paint(QPainter* painter) {
    constexpr double largest = 4096.0;
    // With a blur of more pixels than this, single pixels cannot be seen.
    constexpr double finePixels = 12.0;
    // A narrow shadow is rendered at the resolution of the screen. A wide one has no detail that finer pixels
    // would show.
    const double ratio =
        std::clamp(painter->worldTransform().m11(), 1.0, std::max(1.0, finePixels / std::max(blur_, 1.0)));
    const QSize size(static_cast<int>(std::ceil(std::clamp(width() * ratio, 0.0, largest))),
                     static_cast<int>(std::ceil(std::clamp(height() * ratio, 0.0, largest))));
    if (size.isEmpty()) {
        return;
    }
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRectF(QPointF(0.0, 0.0), QSizeF(size) / ratio),
                       softShadow(size, radius_ * ratio, blur_ * ratio, color_));
}

} // namespace Fenwhirl
