#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"
#include "Fenwhirl/Platform/Desktop/NativeWindowMacOS.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

#import <AppKit/AppKit.h>

namespace Fenwhirl {

namespace {

// Functions below that receive objects from AppKit have autorelease pools of their own. Such objects would
// otherwise live as long as the event loop's pool, and the first window is configured before that pool
// exists.

// Since macOS 14 an application asks to come forward with `activate`, and the system may decline. Older
// versions have only the other call.
void activateApplication() {
    @autoreleasepool {
        if (@available(macOS 14.0, *)) {
            [NSApp activate];
        }
        [NSApp activateIgnoringOtherApps:YES];
    }
}

} // namespace

namespace MainWindowBehaviour {

void configure(QWindow& window) {
    @autoreleasepool {
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
        // Since this version Qt sets both properties itself, from the flags.
        window.setFlags(window.flags() | Qt::ExpandedClientAreaHint | Qt::NoTitleBarBackgroundHint);
#endif
        NSWindow* native = nativeWindow(window);
        native.styleMask |= NSWindowStyleMaskFullSizeContentView;
        native.titlebarAppearsTransparent = YES;
        native.titleVisibility = NSWindowTitleHidden;
        native.movableByWindowBackground = YES;
    }
}

void setRegular() {
    if (NSApp.activationPolicy == NSApplicationActivationPolicyRegular) {
        return;
    }
    [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
    activateApplication();
    // Repeated once the event loop runs. Before the launch has finished the request may be ignored, and when
    // a program has just become regular the menu bar may stay that of the previous program.
    QTimer::singleShot(0, qGuiApp, [] {
        if (NSApp.activationPolicy == NSApplicationActivationPolicyRegular && !NSApp.isActive) {
            activateApplication();
        }
    });
}

void setAccessory() {
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

void bringToFront(QWindow& window, const QString& /*token*/) {
    window.setVisible(true); // keeps a maximised state
    @autoreleasepool {
        NSWindow* native = nativeWindow(window);
        if (native.miniaturized) {
            [native deminiaturize:nil];
        }
        [native makeKeyAndOrderFront:nil];
    }
    activateApplication();
}

} // namespace MainWindowBehaviour

} // namespace Fenwhirl
