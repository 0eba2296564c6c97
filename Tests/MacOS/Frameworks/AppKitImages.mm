// A fake of the part of AppKit that our sources call: fonts, images and drawing.

#import "Frameworks/Fakes.h"

#include <algorithm>

const NSFontWeight NSFontWeightRegular = 0;
const NSFontWeight NSFontWeightBold = 0.4;
const NSColorSpaceName NSDeviceRGBColorSpace = @"NSDeviceRGBColorSpace";

@implementation NSFont

+ (NSFont*)menuBarFontOfSize:(CGFloat)size {
    NSFont* made = [[NSFont alloc] init];
    made.pointSize = size > 0 ? size : 14; // the default size
    return made;
}

+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
    NSFont* made = [[NSFont alloc] init];
    made.pointSize = size;
    made.weight = weight;
    made.hasFixedDigits = YES;
    return made;
}

@end

@implementation NSImageSymbolConfiguration

+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight {
    NSImageSymbolConfiguration* made = [[NSImageSymbolConfiguration alloc] init];
    made.pointSize = size;
    made.weight = weight;
    FakeMac::lastWeight() = weight;
    return made;
}

@end

CGFloat& FakeMac::lastWeight() {
    static CGFloat weight = 0;
    return weight;
}

@implementation NSImage {
    BOOL isTemplate_;
}

+ (instancetype)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description {
    (void)description;
    const QString wanted = QString::fromNSString(name);
    const auto& known = FakeMac::settings().symbols;
    if (std::find(known.begin(), known.end(), wanted) == known.end()) {
        return nil;
    }
    NSImage* made = [[NSImage alloc] init];
    made.symbolName = name;
    made.size = NSSize{10, 12};
    return made;
}

- (instancetype)initWithData:(NSData*)data {
    if ((self = [super init])) {
        if (data == nil || data.length == 0) {
            return nil;
        }
        self.data = data;
    }
    return self;
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    NSImage* made = [[NSImage alloc] init];
    made.symbolName = self.symbolName;
    made.configuration = configuration;
    made.size = NSSize{configuration.pointSize * 1.25, configuration.pointSize * 1.1};
    return made;
}

- (void)setTemplate:(BOOL)isTemplate {
    isTemplate_ = isTemplate;
}

- (BOOL)isTemplate {
    return isTemplate_;
}

// Draws a test pattern: red is 10, green is the column, and blue is the row of each pixel.
- (void)drawInRect:(NSRect)rect {
    FakeMac::note("-[NSImage drawInRect:] " + std::to_string(rect.size.width) + " x " +
                  std::to_string(rect.size.height));
    NSBitmapImageRep* bitmap = FakeMac::currentBitmap();
    if (bitmap == nil) {
        FakeMac::violate("a picture was drawn without a context");
        return;
    }
    for (NSInteger y = 0; y < static_cast<NSInteger>(rect.size.height); ++y) {
        for (NSInteger x = 0; x < static_cast<NSInteger>(rect.size.width); ++x) {
            unsigned char* pixel = bitmap.bitmapData + y * bitmap.bytesPerRow + 4 * x;
            pixel[0] = 10;
            pixel[1] = static_cast<unsigned char>(x);
            pixel[2] = static_cast<unsigned char>(y);
            pixel[3] = 255;
        }
    }
}

@end

@implementation NSImageRep
@end

@implementation NSBitmapImageRep {
    std::vector<unsigned char> bytes_;
    NSInteger bytesPerRow_;
}

- (instancetype)initWithBitmapDataPlanes:(unsigned char**)planes
                              pixelsWide:(NSInteger)width
                              pixelsHigh:(NSInteger)height
                           bitsPerSample:(NSInteger)bitsPerSample
                         samplesPerPixel:(NSInteger)samplesPerPixel
                                hasAlpha:(BOOL)hasAlpha
                                isPlanar:(BOOL)isPlanar
                          colorSpaceName:(NSColorSpaceName)colorSpaceName
                             bytesPerRow:(NSInteger)bytesPerRow
                            bitsPerPixel:(NSInteger)bitsPerPixel {
    if ((self = [super init])) {
        if (!FakeMac::settings().makesBitmaps || width <= 0 || height <= 0) {
            return nil;
        }
        if (planes != nullptr || bitsPerSample != 8 || samplesPerPixel != 4 || !hasAlpha || isPlanar ||
            bytesPerRow != 0 || bitsPerPixel != 0 ||
            ![colorSpaceName isEqualToString:NSDeviceRGBColorSpace]) {
            FakeMac::violate("a bitmap of another kind than eight bits each of red, green, blue and opacity");
        }
        bytesPerRow_ = (4 * width + 63) / 64 * 64; // rows are padded to an alignment, as on macOS
        bytes_.resize(static_cast<std::size_t>(bytesPerRow_ * height));
    }
    return self;
}

- (unsigned char*)bitmapData {
    return bytes_.data();
}

- (NSInteger)bytesPerRow {
    return bytesPerRow_;
}

@end

@interface NSGraphicsContext ()
@property(strong) NSBitmapImageRep* bitmap;
@end

static NSGraphicsContext* theContext = nil;

static std::vector<NSGraphicsContext*> savedContexts;

static const FakeMac::AtEnd atEnd([] {
    if (!savedContexts.empty() || theContext != nil) {
        FakeMac::violate("a graphics state was left behind");
    }
    savedContexts.clear();
    theContext = nil;
});

@implementation NSGraphicsContext

+ (NSGraphicsContext*)currentContext {
    return theContext;
}

+ (void)setCurrentContext:(NSGraphicsContext*)context {
    theContext = context;
}

+ (NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap {
    if (!FakeMac::settings().makesContexts) {
        return nil;
    }
    NSGraphicsContext* made = [[NSGraphicsContext alloc] init];
    made.bitmap = bitmap;
    return made;
}

+ (void)saveGraphicsState {
    savedContexts.push_back(theContext);
}

+ (void)restoreGraphicsState {
    if (savedContexts.empty()) {
        FakeMac::violate("a graphics state was restored that was never saved");
        return;
    }
    theContext = savedContexts.back();
    savedContexts.pop_back();
}

- (void)flushGraphics {
    FakeMac::note("-[NSGraphicsContext flushGraphics]");
}

@end

NSBitmapImageRep* FakeMac::currentBitmap() {
    return theContext.bitmap;
}
