#include "Fenwhirl/Platform/Desktop/StatusIcon.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

// Proportions of a canvas 22 high: a symbol of 16, text of 13, and a gap of 4 between them.
constexpr double canvas = 22.0;
constexpr double marginShare = 3.0 / canvas; // around the symbol
constexpr double textShare = 13.0 / canvas;
constexpr double gapShare = 4.0 / canvas;
// In a square the symbol and the digits take one half each, and the digits are as high as the symbol.
constexpr double halfShare = 0.5;
constexpr int edgeAlpha = 160; // of 255

// A whole number of pixels, because the symbol is designed for the pixel grid.
double symbolMargin(int height) {
    return std::floor(height * marginShare);
}

QImage transparentImage(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

struct TextShape {
    QPainterPath path; // the baseline starts at the origin
    double width = 0;
    double digitHeight = 0;
};

TextShape textShape(const QString& text, double pixels, QFont::Weight weight) {
    QFont font;
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    font.setWeight(weight);
    const QFontMetricsF metrics(font);
    TextShape shape;
    shape.digitHeight = metrics.tightBoundingRect(QStringLiteral("0")).height();
    for (const QChar character : text) {
        const double own = metrics.horizontalAdvance(character);
        const double cell = character.isDigit() ? metrics.horizontalAdvance(u'0') : own;
        shape.path.addText(shape.width + (cell - own) / 2, 0, font, character);
        shape.width += cell;
    }
    return shape;
}

// Draws the outline by drawing in its colour, shifted by one step in each direction; then the drawing on top.
template <typename Draw>
QImage edged(QSize size, bool onDark, const Draw& draw) {
    QColor edge = onDark ? QColor(Qt::black) : QColor(Qt::white);
    edge.setAlpha(edgeAlpha);
    const QColor ink = onDark ? QColor(Qt::white) : QColor(0x22, 0x22, 0x22);
    // Half a pixel would not be visible on a bar of the drawing's own brightness.
    const double step = std::max(1.0, size.height() / canvas);

    QImage image = transparentImage(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const int across : {-1, 0, 1}) {
        for (const int down : {-1, 0, 1}) {
            painter.save();
            painter.translate(across * step, down * step);
            draw(painter, edge);
            painter.restore();
        }
    }
    draw(painter, ink);
    return image;
}

QImage wideIcon(const SymbolPainter& symbol, const QString& text, int height, bool onDark) {
    const TextShape shape = textShape(text, height * textShare, QFont::Medium);
    const double margin = symbolMargin(height);
    const double side = height - 2 * margin;
    const double textLeft = margin + side + height * gapShare;
    const double baseline = std::round((height + shape.digitHeight) / 2);
    const QSize size(static_cast<int>(std::ceil(textLeft + shape.width + margin / 2)), height);
    return edged(size, onDark, [&](QPainter& painter, const QColor& color) {
        symbol(painter, QRectF(margin, margin, side, side), color);
        painter.fillPath(shape.path.translated(textLeft, baseline), color);
    });
}

QImage squareIcon(const SymbolPainter& symbol, const QString& digits, int side, bool onDark) {
    // Whole pixels, so that small icons are sharp.
    const double half = std::round(side * halfShare);
    const double top = std::floor((side - half) / 2);
    // Scales the digits to the height of the symbol, and narrows them if they do not fit into their half.
    const TextShape shape = textShape(digits, side, QFont::DemiBold);
    const double high = half / shape.digitHeight;
    const double wide = std::min(high, (side - half) / shape.width);
    const QPainterPath text = QTransform::fromTranslate(half, top + half).scale(wide, high).map(shape.path);
    return edged({side, side}, onDark, [&](QPainter& painter, const QColor& color) {
        symbol(painter, QRectF(0, top, half, half), color);
        painter.fillPath(text, color);
    });
}

} // namespace

QImage templateSymbol(const SymbolPainter& symbol, int pixelsPerPoint) {
    constexpr int points = 18;
    constexpr int drawing = 16;
    QImage image = transparentImage(QSize(points, points) * pixelsPerPoint);
    image.setDevicePixelRatio(pixelsPerPoint);
    QPainter painter(&image); // its units are points
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double margin = (points - drawing) / 2.0;
    symbol(painter, QRectF(margin, margin, drawing, drawing), Qt::black);
    return image;
}

QImage statusIcon(const SymbolPainter& symbol, const QString& text, int height, bool onDark,
                  StatusIconShape shape) {
    if (!text.isEmpty()) {
        if (shape == StatusIconShape::wide) {
            return wideIcon(symbol, text, height, onDark);
        }
        return squareIcon(symbol, QString(text).remove(u'°'), height, onDark);
    }
    const double margin = symbolMargin(height);
    const double side = height - 2 * margin;
    return edged({height, height}, onDark, [&](QPainter& painter, const QColor& color) {
        symbol(painter, QRectF(margin, margin, side, side), color);
    });
}

} // namespace Fenwhirl
