#pragma once

#include <QPainterPath>
#include <QString>

#include <vector>

class QColor;
class QPainter;
class QRectF;

// Our own symbol drawings, by the names the interface uses ("fan", "thermometer.medium", "chevron.down").
//
// The drawings are the SVG files in Symbols/, compiled in; each is a list of path elements on a grid of 24 x
// 24, either filled or stroked with round caps and joins, all in one colour given by whoever draws. A file is
// read once, when its symbol is first asked for, and kept. Main thread, or any one thread at a time: the
// first reading is guarded.

namespace Fenwhirl {

// The edge of the grid the drawings are made on.
inline constexpr double symbolGrid = 24.0;

struct SymbolShape {
    QPainterPath path;
    double strokeWidth = 0.0; // in grid units; 0 means filled
};

// The shapes of a symbol in drawing order, or an empty list for a name we have no drawing for.
[[nodiscard]] const std::vector<SymbolShape>& symbolShapes(const QString& name);

// Draws a symbol as large as fits centred into `bounds`, antialiased. An unknown name draws nothing.
void drawSymbol(QPainter& painter, const QString& name, const QRectF& bounds, const QColor& color);

} // namespace Fenwhirl
