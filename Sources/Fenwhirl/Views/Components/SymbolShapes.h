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
//
// The outline of the fan has drawings of its own for 16, 18, 22 and 24 pixels ("fan.16"), on grids of so many
// pixels, because its blades are too fine to be made smaller. Other files have a grid of 24 x 24.

namespace Fenwhirl {

// The edge of the grid the drawings are made on.
inline constexpr double symbolGrid = 24.0;

struct SymbolShape {
    QPainterPath path;
    double strokeWidth = 0.0; // in grid units; 0 means filled
};

// The shapes of a symbol in drawing order, or an empty list for a name we have no drawing for.
[[nodiscard]] const std::vector<SymbolShape>& symbolShapes(const QString& name);

// As of a text that stands beside the symbol.
enum class SymbolWeight { regular, bold };

// Which drawing of a symbol is meant for so many pixels: its own name, or that of a drawing for that size.
// The fan in fewer than 16 pixels is the solid one.
[[nodiscard]] QString drawingForPixels(const QString& name, double pixels);

// Draws a symbol as large as fits centred into `bounds`, antialiased. An unknown name draws nothing.
void drawSymbol(QPainter& painter, const QString& name, const QRectF& bounds, const QColor& color,
                SymbolWeight weight = SymbolWeight::regular);

} // namespace Fenwhirl
