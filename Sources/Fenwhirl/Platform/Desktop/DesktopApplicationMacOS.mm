#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"

#include <QByteArray>

#import <AppKit/AppKit.h>
#include <array>
#include <cstdint>

namespace Fenwhirl {

namespace {

std::array<std::uint32_t, 4> reasonsToQuit() {
    NSAppleEventDescriptor* event = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
    NSAppleEventDescriptor* attribute = [event attributeDescriptorForKeyword:kAEQuitReason];
    NSAppleEventDescriptor* parameter = [event paramDescriptorForKeyword:kAEQuitReason];
    return {attribute.typeCodeValue, attribute.enumCodeValue, parameter.typeCodeValue,
            parameter.enumCodeValue};
}

} // namespace

} // namespace Fenwhirl

@interface FenwhirlApplicationDelegate : NSObject <NSApplicationDelegate>
@end

@implementation FenwhirlApplicationDelegate

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows {
    (void)sender;
    return Fenwhirl::ApplicationEvents::shouldHandleReopen(hasVisibleWindows);
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender {
    (void)sender;
    return NO;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
    (void)sender;
    return Fenwhirl::ApplicationEvents::shouldTerminateNow(Fenwhirl::reasonsToQuit()) ? NSTerminateNow
                                                                                      : NSTerminateCancel;
}

@end

namespace Fenwhirl {

namespace {

// Must run before Qt's application object is created: Qt keeps a delegate that already exists and forwards
// the system's requests to it.
void installDelegate() {
    static FenwhirlApplicationDelegate* delegate = nil; // NSApplication keeps only a weak reference
    @autoreleasepool {
        delegate = [[FenwhirlApplicationDelegate alloc] init];
        NSApplication.sharedApplication.delegate = delegate;
    }
}

} // namespace

std::unique_ptr<QGuiApplication> makeDesktopApplication(int& argc, char** argv,
                                                        const std::function<void()>& meanwhile) {
    // Otherwise Qt makes every program a regular one, and an icon would flash in the Dock at each log-in.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    // Our views are compiled ahead of time. Without Qt's run-time compiler no memory is both writable and
    // executable, which a hardened runtime would forbid.
    qputenv("QV4_FORCE_INTERPRETER", "1");
    installDelegate();
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    // Qt's own rule would end the program with its last window, whatever the delegate answers.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (meanwhile) {
        meanwhile();
    }
    return application;
}

} // namespace Fenwhirl
