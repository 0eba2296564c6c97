// The system's own symbols by name ("fan", "bell"), as its other programs use them.
//
// macOS has such symbols (older versions fewer); other systems have none. They may not be shipped with the
// program, so every use needs a drawing of our own as an alternative.
//
// Threads: the main thread, or another one while the main thread waits for it.

#pragma once

#include <QImage>
#include <QString>

namespace Fenwhirl {

// The symbol at a font size of `fontPixels`, regular or bold, in its natural width and height at that size.
// Only the alpha channel is meaningful; the caller chooses the colour. If one pixel of the image is not one
// unit of this size, the image's device pixel ratio says so. Null for a name that the system does not know.
[[nodiscard]] QImage systemSymbol(const QString& name, double fontPixels, bool bold);

} // namespace Fenwhirl
