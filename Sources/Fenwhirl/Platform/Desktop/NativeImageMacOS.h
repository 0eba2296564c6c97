// Pictures of the system as pictures of Qt. macOS only, between the sources of this folder.

#pragma once

#include <QImage>

#import <AppKit/AppKit.h>

// As many pixels as the system gives for the image's size, told by the device pixel ratio; null when it
// cannot be drawn.
[[nodiscard]] QImage fromNativeImage(NSImage* image);
