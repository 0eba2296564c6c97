// Pictures of the system as pictures of Qt. macOS only, between the sources of this folder.

#pragma once

#include <QImage>
#include <QSizeF>

#import <AppKit/AppKit.h>

// Draws the picture at a size in pixels, fractions rounded up to whole ones: the system then chooses the best
// of the sizes that it has, or draws its shapes. Null when there is no picture or no room to draw it into.
[[nodiscard]] QImage fromNativeImage(NSImage* image, QSizeF pixels);
