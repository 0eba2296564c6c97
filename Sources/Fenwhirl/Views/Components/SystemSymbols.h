#pragma once

#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include <QImage>
#include <QString>

#include <functional>

class QColor;
class QPainter;
class QRectF;

// The system's own symbols in place of our drawings, where there is a system that has some.
//
// The components know no system: whoever puts the windows up says where its symbols come from. Without that,
// and for every name that the source does not know, our drawing of the same name is shown.
//
// The pictures are kept for each name and size, so the source is asked once. Set the source on the main
// thread before the first symbol is shown; drawing as in SymbolShapes.h.

namespace Fenwhirl {

// The symbol of a name at a font size in pixels and in a weight, in its own proportions; only its opacity
// counts. Its device pixel ratio says how many of its pixels make one of the size. Null for an unknown name.
using SystemSymbolSource = std::function<QImage(const QString& name, double fontPixels, bool bold)>;

// How much of the box of a symbol its font size is. Symbols of a font are up to 1.25 times as wide or high as
// its size; one that is still larger than its box is made smaller.
inline constexpr double systemSymbolFontShare = 0.8;

// Forgets the pictures of the source before. An empty source is one that knows no name.
void setSystemSymbolSource(SystemSymbolSource source);

// Draws the system's symbol centred into `bounds` in one colour; false, and nothing drawn, where there is
// none.
[[nodiscard]] bool drawSystemSymbol(QPainter& painter, const QString& name, const QRectF& bounds,
                                    const QColor& color, SymbolWeight weight = SymbolWeight::regular);

} // namespace Fenwhirl
