#pragma once

#include <QPainterPath>
#include <QString>

#include <vector>

class QColor;
class QPainter;
class QRectF;

// Our own symbol drawings, by the names that the interface uses ("fan", "thermometer.medium",
// "chevron.down").
//
// The drawings are the SVG files in Symbols/, compiled in. Each is a list of path elements on a grid of
// 24 x 24, either filled or stroked with round caps and joins, all in one colour that the caller chooses. A
// file is read once, when its symbol is first requested, and cached. Main thread, or any one thread at a
// time: a mutex guards the cache.
//
// The outline of the fan has separate drawings for 16, 18, 22 and 24 pixels ("fan.16"), each on a grid of
// that many pixels, because its blades are too fine to be scaled down. All other files have a grid of
// 24 x 24.

namespace Fenwhirl {

// The edge of the grid on which the drawings are made.
inline constexpr double symbolGrid = 24.0;

struct SymbolShape {
    QPainterPath path;
    double strokeWidth = 0.0; // in grid units; 0 means filled
};

// The shapes of a symbol in drawing order; empty for a name without a drawing.
[[nodiscard]] const std::vector<SymbolShape>& symbolShapes(const QString& name);

// The weight of the text that the symbol stands beside.
enum class SymbolWeight { regular, bold };

// The name of the drawing of a symbol for a size in pixels: the symbol's own name, or that of a drawing made
// for the size. Below 16 pixels the fan is the solid one.
[[nodiscard]] QString drawingForPixels(const QString& name, double pixels);

// Draws a symbol centred in `bounds`, as large as fits, antialiased. An unknown name draws nothing.
void drawSymbol(QPainter& painter, const QString& name, const QRectF& bounds, const QColor& color,
                SymbolWeight weight = SymbolWeight::regular);

} // namespace Fenwhirl
