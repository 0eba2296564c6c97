#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"

#include <QByteArray>

#import <AppKit/AppKit.h>
#include <array>
#include <cstdint>

namespace {

std::array<std::uint32_t, 4> reasonsToQuit() {
    NSAppleEventDescriptor* event = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
    NSAppleEventDescriptor* attribute = [event attributeDescriptorForKeyword:kAEQuitReason];
    NSAppleEventDescriptor* parameter = [event paramDescriptorForKeyword:kAEQuitReason];
    return {attribute.typeCodeValue, attribute.enumCodeValue, parameter.typeCodeValue,
            parameter.enumCodeValue};
}

} // namespace

@interface FenwhirlApplicationDelegate : NSObject <NSApplicationDelegate>
@end

@implementation FenwhirlApplicationDelegate

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows {
    (void)sender;
    return ApplicationEvents::shouldHandleReopen(hasVisibleWindows);
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender {
    (void)sender;
    return NO;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
    (void)sender;
    return ApplicationEvents::shouldTerminateNow(reasonsToQuit()) ? NSTerminateNow : NSTerminateCancel;
}

@end

namespace {

// Before Qt's application object is made: Qt keeps a delegate that is there already and forwards to it what
// the system asks.
void installDelegate() {
    static FenwhirlApplicationDelegate* delegate = nil; // the application holds its delegate weakly
    @autoreleasepool {
        delegate = [[FenwhirlApplicationDelegate alloc] init];
        NSApplication.sharedApplication.delegate = delegate;
    }
}

} // namespace

std::unique_ptr<QGuiApplication> makeDesktopApplication(int& argc, char** argv) {
    // Else Qt makes every program a regular one, and each log-in would flash an icon in the Dock.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    // Our views are compiled; without a compiler at run time no memory is both written and run, which a
    // hardened runtime would forbid.
    qputenv("QV4_FORCE_INTERPRETER", "1");
    installDelegate();
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    // Qt's own rule ends a program with its last window, whatever the delegate answers.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return application;
}
