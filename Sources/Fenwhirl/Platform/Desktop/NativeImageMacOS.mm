#include "Fenwhirl/Platform/Desktop/NativeImageMacOS.h"

QImage fromNativeImage(NSImage* image) {
    NSData* tiff = image.TIFFRepresentation;
    NSBitmapImageRep* bitmap = tiff != nil ? [NSBitmapImageRep imageRepWithData:tiff] : nil;
    NSData* png = [bitmap representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
    if (png == nil)
        return {};
    QImage picture = QImage::fromData(static_cast<const uchar*>(png.bytes), static_cast<int>(png.length));
    if (!picture.isNull() && image.size.width > 0)
        picture.setDevicePixelRatio(picture.width() / image.size.width);
    return picture;
}
