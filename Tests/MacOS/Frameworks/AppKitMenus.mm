// A fake of the part of AppKit that our sources call: menus and status items.

#import "Frameworks/Fakes.h"

@interface NSMenuItem ()
@property(readwrite, getter=isSeparatorItem) BOOL separatorItem;
@end

@implementation NSMenuItem

- (instancetype)initWithTitle:(NSString*)title action:(SEL)action keyEquivalent:(NSString*)key {
    if ((self = [super init])) {
        if (title == nil || key == nil) {
            FakeMac::violate("a menu item without title or key"); // macOS raises an exception
        }
        self.title = title;
        self.action = action;
        self.keyEquivalent = key;
        self.keyEquivalentModifierMask = NSEventModifierFlagCommand;
    }
    return self;
}

+ (NSMenuItem*)separatorItem {
    NSMenuItem* made = [[NSMenuItem alloc] init];
    made.separatorItem = YES;
    return made;
}

@end

@implementation NSMenu {
    std::vector<NSMenuItem*> items_;
}

- (instancetype)initWithTitle:(NSString*)title {
    if ((self = [super init])) {
        self.title = title;
    }
    return self;
}

- (NSArray<NSMenuItem*>*)itemArray {
    return [NSArray arrayWithObjects:items_.data() count:items_.size()];
}

- (void)addItem:(NSMenuItem*)item {
    FakeMac::requireMainThread("-[NSMenu addItem:]");
    items_.push_back(item);
}

- (BOOL)popUpMenuPositioningItem:(NSMenuItem*)item atLocation:(NSPoint)location inView:(NSView*)view {
    (void)item;
    FakeMac::requireMainThread("-[NSMenu popUpMenuPositioningItem:atLocation:inView:]");
    if (view != nil) {
        FakeMac::violate("the fake only knows menus at a point of the screen");
    }
    if (FakeMac::settings().whileMenuIsOpen) {
        FakeMac::settings().whileMenuIsOpen(self, location);
    }
    return YES;
}

@end

@implementation NSStatusBarButton
@end

@implementation NSStatusItem
@end

static FakeMac::Shared<NSStatusBar> theStatusBar;
static FakeMac::Registry<NSStatusItem*> statusItems("status items were left behind",
                                                    "a status item was removed that is not there");

@implementation NSStatusBar

+ (NSStatusBar*)systemStatusBar {
    return theStatusBar.get();
}

- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
    FakeMac::requireMainThread("-[NSStatusBar statusItemWithLength:]");
    NSStatusItem* item = [[NSStatusItem alloc] init];
    item.length = length;
    item.visible = YES;
    if (FakeMac::settings().hasStatusButton) {
        item.button = [[NSStatusBarButton alloc] init];
        item.button.title = @"";
        NSWindow* window = [[NSWindow alloc] init];
        window.frame = NSRect{{1000, 876}, {60, 24}};
        window.visible = YES;
        window.occlusionState = NSWindowOcclusionStateVisible;
        item.button.window = window;
        FakeMac::statusItemWindows().push_back(window);
    }
    statusItems.add(item);
    return item;
}

- (void)removeStatusItem:(NSStatusItem*)item {
    FakeMac::requireMainThread("-[NSStatusBar removeStatusItem:]");
    if (statusItems.remove([&](NSStatusItem* each) { return each == item; })) {
        FakeMac::note("-[NSStatusBar removeStatusItem:]");
    }
}

@end

static std::vector<NSWindow*> windows;
static const FakeMac::AtEnd atEnd([] { windows.clear(); });

std::vector<NSWindow*>& FakeMac::statusItemWindows() {
    return windows;
}

std::vector<NSStatusItem*> FakeMac::statusItems() {
    return ::statusItems.all();
}
