#include "Fenwhirl/Platform/Desktop/NativeImageMacOS.h"

#include <cmath>

namespace Fenwhirl {

namespace {

NSBitmapImageRep* emptyBitmap(int width, int height) {
    return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                   pixelsWide:width
                                                   pixelsHigh:height
                                                bitsPerSample:8
                                              samplesPerPixel:4
                                                     hasAlpha:YES
                                                     isPlanar:NO
                                               colorSpaceName:NSDeviceRGBColorSpace
                                                  bytesPerRow:0
                                                 bitsPerPixel:0];
}

} // namespace

QImage fromNativeImage(NSImage* image, QSizeF pixels) {
    const int width = static_cast<int>(std::ceil(pixels.width()));
    const int height = static_cast<int>(std::ceil(pixels.height()));
    if (image == nil || width <= 0 || height <= 0) {
        return {};
    }
    NSBitmapImageRep* bitmap = emptyBitmap(width, height);
    NSGraphicsContext* context =
        bitmap != nil ? [NSGraphicsContext graphicsContextWithBitmapImageRep:bitmap] : nil;
    if (context == nil) {
        return {};
    }
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = context;
    [image drawInRect:NSRect{{0, 0}, {pixels.width(), pixels.height()}}];
    [context flushGraphics];
    [NSGraphicsContext restoreGraphicsState];
    // Copied, because the bytes belong to the bitmap.
    return QImage(bitmap.bitmapData, width, height, bitmap.bytesPerRow, QImage::Format_RGBA8888_Premultiplied)
        .copy();
}

} // namespace Fenwhirl
