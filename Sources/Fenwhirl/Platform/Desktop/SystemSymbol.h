// The system's own symbols by name ("fan", "bell"): what its other programs show.
//
// macOS has them, fewer in older versions; elsewhere there are none. They may not be shipped, so whoever
// shows one needs a drawing of his own beside it.
//
// Threads: the main one, or another while the main one waits for it.

#pragma once

#include <QImage>
#include <QString>

// The symbol at a font size of so many pixels, regular or bold, as wide and high as it is at that size. Only
// the opacity counts: the colour is the caller's business. Where a pixel of the image is not one of the size,
// its device pixel ratio says so. Null for a name that the system does not know.
[[nodiscard]] QImage systemSymbol(const QString& name, double fontPixels, bool bold);
