// A fake of the part of AppKit that our sources call: views, windows, screens and the save panel.

#import "Frameworks/Fakes.h"

const NSNotificationName NSWindowDidBecomeKeyNotification = @"NSWindowDidBecomeKeyNotification";
const NSNotificationName NSWindowWillCloseNotification = @"NSWindowWillCloseNotification";

@implementation NSResponder
@end

@implementation NSView

- (NSRect)convertRect:(NSRect)rect toView:(NSView*)view {
    (void)view;
    return rect;
}

@end

@implementation NSControl

- (NSInteger)sendActionOn:(NSEventMask)mask {
    const NSInteger before = self.actionMask;
    self.actionMask = static_cast<NSInteger>(mask);
    return before;
}

@end

@implementation NSButton

- (void)highlight:(BOOL)flag {
    FakeMac::requireMainThread("-[NSButton highlight:]");
    self.isHighlighted = flag;
}

@end

@implementation NSWindow {
    NSWindowStyleMask styleMask_;
}

- (NSWindowStyleMask)styleMask {
    return styleMask_;
}

- (void)setStyleMask:(NSWindowStyleMask)mask {
    FakeMac::requireMainThread("-[NSWindow setStyleMask:]");
    styleMask_ = mask;
}

- (NSRect)convertRectToScreen:(NSRect)rect {
    return NSRect{{rect.origin.x + self.frame.origin.x, rect.origin.y + self.frame.origin.y}, rect.size};
}

- (void)makeKeyWindow {
    FakeMac::did("-[NSWindow makeKeyWindow]");
}

- (void)makeKeyAndOrderFront:(id)sender {
    (void)sender;
    FakeMac::did("-[NSWindow makeKeyAndOrderFront:]");
}

- (void)orderOut:(id)sender {
    (void)sender;
    FakeMac::did("-[NSWindow orderOut:]");
}

- (void)deminiaturize:(id)sender {
    (void)sender;
    FakeMac::did("-[NSWindow deminiaturize:]");
    self.miniaturized = NO;
}

- (void)invalidateShadow {
    FakeMac::did("-[NSWindow invalidateShadow]");
}

- (void)performClose:(id)sender {
    (void)sender;
    FakeMac::did("-[NSWindow performClose:]");
}

- (void)performMiniaturize:(id)sender {
    (void)sender;
    FakeMac::did("-[NSWindow performMiniaturize:]");
}

- (void)performZoom:(id)sender {
    (void)sender;
    FakeMac::did("-[NSWindow performZoom:]");
}

- (void)close {
    FakeMac::did("-[NSWindow close]");
}

@end

@implementation NSPanel
@end

@interface NSScreen ()
@property(readwrite) NSRect frame;
@property(readwrite) NSRect visibleFrame;
@end

@implementation NSScreen

+ (NSArray<NSScreen*>*)screens {
    std::vector<NSScreen*> all;
    for (const NSRect& frame : FakeMac::settings().screens) {
        NSScreen* screen = [[NSScreen alloc] init];
        screen.frame = frame;
        screen.visibleFrame = frame;
        all.push_back(screen);
    }
    return [NSArray arrayWithObjects:all.data() count:all.size()];
}

@end

@interface NSSavePanel ()
@property(nullable, readwrite, copy) NSURL* URL;
@end

@implementation NSSavePanel

+ (NSSavePanel*)savePanel {
    return [[NSSavePanel alloc] init];
}

- (NSModalResponse)runModal {
    FakeMac::did("-[NSSavePanel runModal]");
    FakeMac::note("proposed " + QString::fromNSString(self.nameFieldStringValue).toStdString());
    if (const auto whileAsking = FakeMac::settings().whileAsking) {
        whileAsking();
    }
    const QString path = FakeMac::settings().savePath;
    if (path.isEmpty()) {
        // A cancelled panel has a URL nevertheless, which the program must not use.
        self.URL = [NSURL fileURLWithPath:@"/Users/test/declined.txt"];
        return NSModalResponseCancel;
    }
    self.URL = [NSURL fileURLWithPath:makeText(path)];
    return NSModalResponseOK;
}

@end
