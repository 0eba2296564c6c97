#include "Fenwhirl/Platform/Desktop/ActionTargetMacOS.h"
#include "Fenwhirl/Platform/Desktop/PanelPlacement.h"
#include "Fenwhirl/Platform/Desktop/StatusItem.h"

#include <QBuffer>
#include <QImage>
#include <QTimer>

#import <AppKit/AppKit.h>
#include <vector>

namespace Fenwhirl {

namespace {

// The system's own symbol, or our drawing where the system does not have it.
NSImage* symbolImage(const SymbolPainter& symbol) {
    NSImage* image = [NSImage imageWithSystemSymbolName:@"fan" accessibilityDescription:nil];
    if (image == nil) {
        constexpr int pixelsPerPoint = 2;
        const QImage drawing = templateSymbol(symbol, pixelsPerPoint);
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        drawing.save(&buffer, "PNG");
        image = [[NSImage alloc] initWithData:png.toNSData()];
        const QSizeF points = drawing.deviceIndependentSize();
        image.size = NSSize{points.width(), points.height()};
    }
    [image setTemplate:YES]; // the system uses only the alpha channel and tints the image
    return image;
}

class StatusItemMacOS final : public StatusItem {
public:
    explicit StatusItemMacOS(const SymbolPainter& symbol) : target_([[FenwhirlActionTarget alloc] init]) {
        @autoreleasepool { // the event loop, which has a pool of its own, is not running yet
            item_ = [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
            target_.chosen = [this] { Q_EMIT activated(place()); };
            NSStatusBarButton* button = item_.button;
            button.target = target_;
            button.action = @selector(itemChosen:);
            button.image = symbolImage(symbol);
            button.imagePosition = NSImageLeft;
            presses_ = [NSEvent
                addLocalMonitorForEventsMatchingMask:NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown
                                             handler:^NSEvent*(NSEvent* event) {
                                               return showMenuFor(event) ? nil : event;
                                             }];
            // Digits of equal width, so that neighbouring items do not move with each new speed.
            button.font = [NSFont monospacedDigitSystemFontOfSize:[NSFont menuBarFontOfSize:0].pointSize
                                                           weight:NSFontWeightRegular];
        }
    }

    ~StatusItemMacOS() override {
        @autoreleasepool {
            target_.chosen = nullptr; // a click may still be on its way
            forgetMenuTargets();
            if (presses_ != nil) { // nil when it could not be installed; removeMonitor does not accept that
                [NSEvent removeMonitor:presses_];
            }
            [NSStatusBar.systemStatusBar removeStatusItem:item_];
        }
    }

    StatusItemMacOS(const StatusItemMacOS&) = delete;
    StatusItemMacOS& operator=(const StatusItemMacOS&) = delete;

    void setText(const QString& text, const QString& /*shortText*/, TextChange /*change*/) override {
        @autoreleasepool {
            item_.button.title = text.toNSString();
        }
    }

    void setMenu(const StatusMenu& menu) override { menu_ = menu; }

    void setOpen(bool open) override {
        open_ = open;
        // Deferred, because the button removes its own highlight at the end of the click that brought us
        // here.
        QTimer::singleShot(0, this, [this] {
            @autoreleasepool {
                [item_.button highlight:open_];
            }
        });
    }

    bool isPlaced() const override {
        @autoreleasepool {
            // When there is no room beside the notch, or the user removed the item, it still exists but is
            // hidden.
            NSWindow* window = item_.button.window;
            return item_.isVisible && window != nil &&
                   (window.occlusionState & NSWindowOcclusionStateVisible) != 0;
        }
    }

private:
    // Whether the press was for the menu, which it then shows: a press of the right button on the item, or of
    // the left one with the Control key.
    bool showMenuFor(NSEvent* event) {
        const bool right = event.type == NSEventTypeRightMouseDown ||
                           (event.modifierFlags & NSEventModifierFlagControl) != 0;
        if (!right || menu_.empty() || event.window == nil || event.window != item_.button.window) {
            return false;
        }
        if (open_) {
            Q_EMIT activated(place()); // closes the panel, as any click on the item does
        }
        showMenu();
        return true;
    }

    // The menu is created each time: it is hardly ever opened, and an unused menu would take memory.
    void showMenu() {
        @autoreleasepool {
            forgetMenuTargets();
            NSMenu* menu = [[NSMenu alloc] initWithTitle:@""];
            for (const StatusMenuEntry& entry : menu_) {
                [menu addItem:menuItem(entry)];
            }
            NSStatusBarButton* button = item_.button;
            [button highlight:YES];
            // Below the item. The call returns when the menu has closed; meanwhile the entries may change.
            [menu popUpMenuPositioningItem:nil atLocation:button.window.frame.origin inView:nil];
            [button highlight:open_];
        }
    }

    NSMenuItem* menuItem(const StatusMenuEntry& entry) {
        if (entry.isSeparator()) {
            return [NSMenuItem separatorItem];
        }
        FenwhirlActionTarget* target = [[FenwhirlActionTarget alloc] init];
        target.chosen = entry.choose;
        menuTargets_.push_back(target); // kept here, because a menu item's target is a weak reference
        NSMenuItem* made = [[NSMenuItem alloc] initWithTitle:entry.text.toNSString()
                                                      action:@selector(itemChosen:)
                                               keyEquivalent:@""];
        made.target = target;
        made.state = entry.isCurrent.value_or(false) ? NSControlStateValueOn : NSControlStateValueOff;
        return made;
    }

    void forgetMenuTargets() {
        for (FenwhirlActionTarget* target : menuTargets_) {
            target.chosen = nullptr; // a choice may still be on its way
        }
        menuTargets_.clear();
    }

    QRect place() const {
        @autoreleasepool {
            const NSRect frame = item_.button.window.frame;
            const NSRect firstScreen = NSScreen.screens.count > 0 ? NSScreen.screens[0].frame : NSRect{};
            return fromBottomLeftOrigin(
                QRectF(frame.origin.x, frame.origin.y, frame.size.width, frame.size.height),
                firstScreen.size.height);
        }
    }

    NSStatusItem* item_ = nil;
    bool open_ = false;
    FenwhirlActionTarget* target_;
    id presses_ = nil; // the monitor of the presses that open the menu
    StatusMenu menu_;
    std::vector<FenwhirlActionTarget*> menuTargets_; // of the menu that was last shown
};

} // namespace

std::unique_ptr<StatusItem> StatusItem::create(SymbolPainter symbol) {
    return std::make_unique<StatusItemMacOS>(symbol);
}

} // namespace Fenwhirl
