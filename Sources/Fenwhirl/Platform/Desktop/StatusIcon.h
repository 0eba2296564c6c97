// Draws the status item's icon: the symbol, and beside it the temperature where there is one.
//
// One colour with a thin edge of its opposite, so that it can be seen on a bar of any brightness: a
// notification area does not tell its colour. Digits are of one width: what stands beside the icon does not
// move with each new temperature.
//
// Threads: main thread only (text needs the font database).

#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QString>

#include <functional>

class QPainter;

// Draws the program's symbol into a square.
using SymbolPainter = std::function<void(QPainter&, const QRectF& bounds, const QColor& color)>;

// How much room a bar gives to an icon.
enum class StatusIconShape {
    square, // as wide as high, whatever it is offered: wider ones are squeezed until nobody can read them
    wide,   // as wide as it needs
};

// The symbol alone for a bar that tints it (macOS): black and opacity, 16 of 18 points, so many pixels a
// point.
[[nodiscard]] QImage templateSymbol(const SymbolPainter& symbol, int pixelsPerPoint);

// `text` is a temperature ("63°") or empty; `height` in pixels. In a square both are smaller, and the degree
// sign gives way to the digits.
[[nodiscard]] QImage statusIcon(const SymbolPainter& symbol, const QString& text, int height, bool onDark,
                                StatusIconShape shape);
