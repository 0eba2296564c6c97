#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"

#import <AppKit/AppKit.h>

QImage applicationIcon(const QString& applicationPath, int pixels) {
    @autoreleasepool {
        NSImage* icon = [NSWorkspace.sharedWorkspace iconForFile:applicationPath.toNSString()];
        const auto side = static_cast<CGFloat>(pixels);
        icon.size = NSSize{side, side};
        NSData* tiff = icon.TIFFRepresentation;
        NSBitmapImageRep* bitmap = tiff != nil ? [NSBitmapImageRep imageRepWithData:tiff] : nil;
        NSData* png = [bitmap representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
        if (png == nil)
            return {};
        const QImage image =
            QImage::fromData(static_cast<const uchar*>(png.bytes), static_cast<int>(png.length));
        return image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
}
