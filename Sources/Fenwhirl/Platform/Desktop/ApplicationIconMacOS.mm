#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"
#include "Fenwhirl/Platform/Desktop/NativeImageMacOS.h"

QImage applicationIcon(const QString& applicationPath, int pixels) {
    @autoreleasepool {
        NSImage* icon = [NSWorkspace.sharedWorkspace iconForFile:applicationPath.toNSString()];
        const auto side = static_cast<CGFloat>(pixels);
        icon.size = NSSize{side, side};
        QImage picture =
            fromNativeImage(icon).scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        picture.setDevicePixelRatio(1);
        return picture;
    }
}
