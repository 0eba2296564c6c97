#include "Fenwhirl/Platform/Desktop/NativeImageMacOS.h"
#include "Fenwhirl/Platform/Desktop/SystemSymbol.h"

namespace Fenwhirl {

QImage systemSymbol(const QString& name, double fontPixels, bool bold) {
    @autoreleasepool {
        NSImage* symbol = [NSImage imageWithSystemSymbolName:name.toNSString() accessibilityDescription:nil];
        NSImageSymbolConfiguration* size = [NSImageSymbolConfiguration
            configurationWithPointSize:fontPixels
                                weight:bold ? NSFontWeightBold : NSFontWeightRegular];
        NSImage* sized = [symbol imageWithSymbolConfiguration:size];
        // If there is no such symbol, `sized` is nil and its size is zero.
        return fromNativeImage(sized, QSizeF(sized.size.width, sized.size.height));
    }
}

} // namespace Fenwhirl
