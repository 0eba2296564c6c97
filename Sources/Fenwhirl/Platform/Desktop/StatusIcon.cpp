#include "Fenwhirl/Platform/Desktop/StatusIcon.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

// Shares of the icon's side: a symbol of 16 in a canvas of 22, or a smaller one above the text.
constexpr double symbolShare = 16.0 / 22.0;
constexpr double symbolOverTextShare = 0.52;
constexpr double textShare = 0.5;
constexpr int edgeAlpha = 115; // of 255

QFont textFont(double pixels) {
    QFont font;
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    font.setWeight(QFont::DemiBold);
    return font;
}

QImage transparentImage(int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void drawText(QPainter& painter, const QFont& font, const QString& text, QPointF baseline) {
    QPainterPath path;
    path.addText(baseline, font, text);
    painter.fillPath(path, painter.pen().color());
}

// The drawing once per direction in the edge's colour, then in its own on top.
template <typename Draw>
QImage edged(int side, bool onDark, const Draw& draw) {
    QColor edge = onDark ? QColor(Qt::black) : QColor(Qt::white);
    edge.setAlpha(edgeAlpha);
    const QColor ink = onDark ? QColor(Qt::white) : QColor(0x22, 0x22, 0x22);
    const double step = std::max(1.0, side / 22.0) * 0.5;

    QImage image = transparentImage(side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QPointF offset : {QPointF(-step, 0), QPointF(step, 0), QPointF(0, -step), QPointF(0, step)}) {
        painter.save();
        painter.translate(offset);
        draw(painter, edge);
        painter.restore();
    }
    draw(painter, ink);
    return image;
}

} // namespace

QImage templateSymbol(const SymbolPainter& symbol, int pixelsPerPoint) {
    constexpr int canvas = 18;
    constexpr int drawing = 16;
    QImage image = transparentImage(canvas * pixelsPerPoint);
    image.setDevicePixelRatio(pixelsPerPoint);
    QPainter painter(&image); // counts in points
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double margin = (canvas - drawing) / 2.0;
    symbol(painter, QRectF(margin, margin, drawing, drawing), Qt::black);
    return image;
}

QImage statusIcon(const SymbolPainter& symbol, const QString& text, int side, bool onDark) {
    const QFont font = textFont(side * textShare);
    const QFontMetricsF metrics(font);
    const double symbolSide = side * (text.isEmpty() ? symbolShare : symbolOverTextShare);
    const double top = text.isEmpty() ? (side - symbolSide) / 2 : 0;
    return edged(side, onDark, [&](QPainter& painter, const QColor& color) {
        symbol(painter, QRectF((side - symbolSide) / 2, top, symbolSide, symbolSide), color);
        painter.setPen(color);
        drawText(painter, font, text,
                 QPointF((side - metrics.horizontalAdvance(text)) / 2, side - side / 22.0));
    });
}
