#include "Fenwhirl/Platform/Desktop/StatusItem.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

#import <AppKit/AppKit.h>

@interface FenwhirlStatusItemTarget : NSObject
@property(nonatomic) std::function<void()> chosen;
- (void)itemChosen:(id)sender;
@end

@implementation FenwhirlStatusItemTarget

// Looks at nothing but the call itself: what the current event is, differs from system to system.
- (void)itemChosen:(id)sender {
    (void)sender;
    if (self.chosen)
        self.chosen();
}

@end

namespace {

constexpr int symbolPoints = 18;
constexpr int symbolScale = 2;

// The system's own symbol; our drawing of the same name where it has none.
NSImage* symbolImage(const SymbolPainter& symbol) {
    NSImage* image = [NSImage imageWithSystemSymbolName:@"fan" accessibilityDescription:nil];
    if (image == nil) {
        QImage drawing(symbolPoints * symbolScale, symbolPoints * symbolScale,
                       QImage::Format_ARGB32_Premultiplied);
        drawing.fill(Qt::transparent);
        QPainter painter(&drawing);
        painter.setRenderHint(QPainter::Antialiasing);
        symbol(painter, QRectF(drawing.rect()).adjusted(symbolScale, symbolScale, -symbolScale, -symbolScale),
               Qt::black);
        painter.end();
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        drawing.save(&buffer, "PNG");
        image = [[NSImage alloc] initWithData:png.toNSData()];
        image.size = NSSize{symbolPoints, symbolPoints};
    }
    [image setTemplate:YES]; // one colour and alpha, tinted by the system
    return image;
}

class StatusItemMacOS final : public StatusItem {
public:
    explicit StatusItemMacOS(const SymbolPainter& symbol)
        : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength])
        , target_([[FenwhirlStatusItemTarget alloc] init]) {
        target_.chosen = [this] { Q_EMIT activated(place()); };
        NSStatusBarButton* button = item_.button;
        button.target = target_;
        button.action = @selector(itemChosen:);
        button.image = symbolImage(symbol);
        button.imagePosition = NSImageLeft;
    }

    ~StatusItemMacOS() override { [NSStatusBar.systemStatusBar removeStatusItem:item_]; }

    StatusItemMacOS(const StatusItemMacOS&) = delete;
    StatusItemMacOS& operator=(const StatusItemMacOS&) = delete;

    void setText(const QString& text, const QString& /*shortText*/) override {
        item_.button.title = text.toNSString();
    }

    bool isPlaced() const override { return true; }

private:
    // The system counts from the bottom of the first screen, Qt from its top.
    QRect place() const {
        const NSRect frame = item_.button.window.frame;
        const NSRect firstScreen = NSScreen.screens.count > 0 ? NSScreen.screens[0].frame : NSRect{};
        const CGFloat top = firstScreen.size.height - frame.origin.y - frame.size.height;
        return QRectF(frame.origin.x, top, frame.size.width, frame.size.height).toRect();
    }

    NSStatusItem* item_;
    FenwhirlStatusItemTarget* target_;
};

} // namespace

std::unique_ptr<StatusItem> StatusItem::create(SymbolPainter symbol) {
    return std::make_unique<StatusItemMacOS>(symbol);
}
