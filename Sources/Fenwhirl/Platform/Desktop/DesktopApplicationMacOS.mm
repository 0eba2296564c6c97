#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"
#include "Fenwhirl/Platform/Desktop/QuitAnswer.h"

#include <QByteArray>
#include <QTimer>

#import <AppKit/AppKit.h>
#include <array>

namespace {

struct Handlers {
    std::function<void()> reopen;
    std::function<void()> sessionEnd;
};

Handlers& handlers() {
    static Handlers instance;
    return instance;
}

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
    if (hasVisibleWindows || !handlers().reopen)
        return YES;
    handlers().reopen();
    return NO;
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender {
    (void)sender;
    return NO;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
    (void)sender;
    if (quitAnswer(reasonsToQuit()) == QuitAnswer::endNow) {
        if (handlers().sessionEnd)
            handlers().sessionEnd();
        return NSTerminateNow;
    }
    // From the event loop's next turn, so that whoever asked has his answer first.
    QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    return NSTerminateCancel;
}

@end

void ApplicationEvents::install() {
    static FenwhirlApplicationDelegate* delegate = nil; // the application holds its delegate weakly
    delegate = [[FenwhirlApplicationDelegate alloc] init];
    NSApplication.sharedApplication.delegate = delegate;
}

void ApplicationEvents::setReopenHandler(std::function<void()> handler) {
    handlers().reopen = std::move(handler);
}

void ApplicationEvents::setSessionEndHandler(std::function<void()> handler) {
    handlers().sessionEnd = std::move(handler);
}

std::unique_ptr<QGuiApplication> makeDesktopApplication(int& argc, char** argv) {
    // Else Qt makes every program a regular one, and each log-in would flash an icon in the Dock.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    // Our views are compiled; without a compiler at run time no memory is both written and run, which a
    // hardened runtime would forbid.
    qputenv("QV4_FORCE_INTERPRETER", "1");
    ApplicationEvents::install();
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    // Qt's own rule ends a program with its last window, whatever the delegate answers.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return application;
}
