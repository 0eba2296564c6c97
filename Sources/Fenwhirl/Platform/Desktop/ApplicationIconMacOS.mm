#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"
#include "Fenwhirl/Platform/Desktop/NativeImageMacOS.h"

namespace Fenwhirl {

QImage applicationIcon(const QString& applicationPath, int pixels) {
    @autoreleasepool {
        return fromNativeImage([NSWorkspace.sharedWorkspace iconForFile:applicationPath.toNSString()],
                               QSizeF(pixels, pixels));
    }
}

} // namespace Fenwhirl
