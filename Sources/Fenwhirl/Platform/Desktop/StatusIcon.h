// Draws the status item's icon: the symbol, with the temperature under it where there is one. It is square:
// panels squeeze whatever is wider into a square, until nobody can read it.
//
// One colour with a thin edge of its opposite, so that it can be seen on a bar of any brightness: a
// notification area does not tell its colour.
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

// The symbol alone for a bar that tints it (macOS): black and opacity, 16 of 18 points, so many pixels a
// point.
[[nodiscard]] QImage templateSymbol(const SymbolPainter& symbol, int pixelsPerPoint);

// `side` in pixels.
[[nodiscard]] QImage statusIcon(const SymbolPainter& symbol, const QString& text, int side, bool onDark);
