#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

#import <AppKit/AppKit.h>

namespace {

NSWindow* nativeWindow(QWindow& window) {
    NSView* view = (__bridge NSView*)reinterpret_cast<void*>(window.winId());
    return view.window;
}

// Each has a pool of its own: what these calls hand out would otherwise stay until the event loop's pool
// goes, and the first window is configured before there is one.

// Since macOS 14 coming forward is a wish, made by `activate`; before, the other call was the way.
void activateApplication() {
    @autoreleasepool {
        if (@available(macOS 14.0, *))
            [NSApp activate];
        [NSApp activateIgnoringOtherApps:YES];
    }
}

} // namespace

namespace MainWindowBehaviour {

void configure(QWindow& window) {
    @autoreleasepool {
        NSWindow* native = nativeWindow(window);
        native.styleMask |= NSWindowStyleMaskFullSizeContentView;
        native.titlebarAppearsTransparent = YES;
        native.titleVisibility = NSWindowTitleHidden;
        native.movableByWindowBackground = YES;
    }
}

void setRegular() {
    if (NSApp.activationPolicy == NSApplicationActivationPolicyRegular)
        return;
    [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
    activateApplication();
    // Once more when the event loop runs: before the launch is done the request may be passed over, and the
    // menu bar of a program that has just become regular may stay that of the one before.
    QTimer::singleShot(0, qGuiApp, [] {
        if (NSApp.activationPolicy == NSApplicationActivationPolicyRegular && !NSApp.isActive)
            activateApplication();
    });
}

void setAccessory() {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

void bringToFront(QWindow& window, const QString& /*token*/) {
    window.setVisible(true); // a maximised one stays maximised
    @autoreleasepool {
        NSWindow* native = nativeWindow(window);
        if (native.miniaturized)
            [native deminiaturize:nil];
        [native makeKeyAndOrderFront:nil];
    }
    activateApplication();
}

} // namespace MainWindowBehaviour
