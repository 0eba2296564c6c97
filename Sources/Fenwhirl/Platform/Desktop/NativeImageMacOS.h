// Converts images of the system to images of Qt. macOS only; used only between the sources of this folder.

#pragma once

#include <QImage>
#include <QSizeF>

#import <AppKit/AppKit.h>

namespace Fenwhirl {

// Draws the image at a size in pixels; fractions are rounded up. The system picks the best of the image's
// sizes, or draws its shapes. Null when there is no image or its bitmap cannot be allocated.
[[nodiscard]] QImage fromNativeImage(NSImage* image, QSizeF pixels);

} // namespace Fenwhirl
