// Draws the status item's icon: the symbol and, if there is one, the temperature beside it.
//
// The icon has one colour with a thin outline in the opposite one, so that it is visible on a bar of any
// brightness: a notification area does not report its colour. All digits have the same width, so that the
// neighbours of the icon do not move with each new temperature.
//
// Threads: main thread only (text needs the font database).

#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QString>

#include <functional>

class QPainter;

namespace Fenwhirl {

// Draws the program's symbol into a square.
using SymbolPainter = std::function<void(QPainter&, const QRectF& bounds, const QColor& color)>;

// The width of an icon.
enum class StatusIconShape {
    square, // as wide as it is high; for bars that squeeze wider icons until they are illegible
    wide,   // as wide as it needs
};

// The symbol alone, for a bar that tints it (macOS): black with an alpha channel, 16 points wide in an image
// of 18.
[[nodiscard]] QImage templateSymbol(const SymbolPainter& symbol, int pixelsPerPoint);

// `text` is a temperature ("63°") or empty; `height` is in pixels. In a square the symbol and the text are
// smaller, and the degree sign is dropped to make room for the digits.
[[nodiscard]] QImage statusIcon(const SymbolPainter& symbol, const QString& text, int height, bool onDark,
                                StatusIconShape shape);

} // namespace Fenwhirl
