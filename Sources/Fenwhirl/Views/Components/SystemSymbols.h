#pragma once

#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include <QImage>
#include <QString>

#include <functional>

class QColor;
class QPainter;
class QRectF;

// The system's own symbols instead of our drawings, on a system that has some.
//
// The components do not know the system: the code that creates the windows sets the source of its symbols.
// Without a source, and for every name that the source does not know, our drawing of the same name is shown.
//
// The images are cached for each name, size and weight, so the source is called once for each. Set the source
// on the main thread before the first symbol is shown. For drawing, the threads are those of SymbolShapes.h.

namespace Fenwhirl {

// Returns the image of a symbol for a font size in pixels and a weight, in its own proportions. Only its
// alpha channel is used. Its device pixel ratio is the number of its pixels per pixel of the font size. Null
// for an unknown name.
using SystemSymbolSource = std::function<QImage(const QString& name, double fontPixels, bool bold)>;

// The font size as a fraction of the symbol's box. Symbols of a font are up to 1.25 times as wide or high as
// its size; one that is still larger than its box is scaled down.
inline constexpr double systemSymbolFontShare = 0.8;

// Discards the images of the previous source. An empty source knows no name.
void setSystemSymbolSource(SystemSymbolSource source);

// Draws the system's symbol centred in `bounds` in one colour. Returns false and draws nothing if there is
// none.
[[nodiscard]] bool drawSystemSymbol(QPainter& painter, const QString& name, const QRectF& bounds,
                                    const QColor& color, SymbolWeight weight = SymbolWeight::regular);

} // namespace Fenwhirl
