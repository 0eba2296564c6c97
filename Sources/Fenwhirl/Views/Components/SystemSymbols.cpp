#include "Fenwhirl/Views/Components/SystemSymbols.h"

#include <QColor>
#include <QMutex>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

namespace Fenwhirl {

namespace {

struct Symbols {
    QMutex mutex;
    SystemSymbolSource source;
    std::map<std::tuple<QString, int, bool>, QImage> pictures; // by name, hundredths of a pixel, bold
};

Symbols& symbols() {
    static Symbols instance;
    return instance;
}

QImage picture(const QString& name, double fontPixels, bool bold) {
    Symbols& known = symbols();
    const QMutexLocker lock(&known.mutex);
    if (!known.source || name.isEmpty()) {
        return {};
    }
    constexpr double steps = 100.0;
    const std::tuple<QString, int, bool> key(
        name, static_cast<int>(std::lround(std::clamp(fontPixels, 0.0, 4096.0) * steps)), bold);
    const auto found = known.pictures.find(key);
    if (found != known.pictures.end()) {
        return found->second;
    }
    return known.pictures.emplace(key, known.source(name, fontPixels, bold)).first->second;
}

// Fills the shape of the picture, given by its alpha channel, with one colour.
QImage tinted(const QImage& picture, const QColor& color) {
    QImage image = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), image.deviceIndependentSize()), color);
    return image;
}

} // namespace

void setSystemSymbolSource(SystemSymbolSource source) {
    Symbols& known = symbols();
    const QMutexLocker lock(&known.mutex);
    known.source = std::move(source);
    known.pictures.clear();
}

bool drawSystemSymbol(QPainter& painter, const QString& name, const QRectF& bounds, const QColor& color,
                      SymbolWeight weight) {
    // Requests as many pixels as the bounds cover on the device, so that nothing is scaled up.
    const double scale = std::sqrt(std::abs(painter.deviceTransform().determinant()));
    const double side = std::min(bounds.width(), bounds.height());
    if (!(side > 0.0) || !(scale > 0.0)) {
        return false;
    }
    const QImage image = picture(name, side * scale * systemSymbolFontShare, weight == SymbolWeight::bold);
    if (image.isNull()) {
        return false;
    }
    QSizeF size = image.deviceIndependentSize() / scale;
    if (size.width() > bounds.width() || size.height() > bounds.height()) {
        size.scale(bounds.size(), Qt::KeepAspectRatio);
    }
    QRectF target(QPointF(), size);
    target.moveCenter(bounds.center());
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, tinted(image, color));
    painter.restore();
    return true;
}

} // namespace Fenwhirl
