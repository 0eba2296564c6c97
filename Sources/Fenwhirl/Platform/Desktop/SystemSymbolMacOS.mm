#include "Fenwhirl/Platform/Desktop/NativeImageMacOS.h"
#include "Fenwhirl/Platform/Desktop/SystemSymbol.h"

QImage systemSymbol(const QString& name, double fontPixels) {
    @autoreleasepool {
        NSImage* symbol = [NSImage imageWithSystemSymbolName:name.toNSString() accessibilityDescription:nil];
        NSImageSymbolConfiguration* size =
            [NSImageSymbolConfiguration configurationWithPointSize:fontPixels weight:NSFontWeightRegular];
        return fromNativeImage([symbol imageWithSymbolConfiguration:size]);
    }
}
