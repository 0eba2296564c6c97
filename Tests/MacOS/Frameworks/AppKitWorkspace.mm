// A fake of the part of AppKit that our sources call: the workspace and other applications.

#import "Frameworks/Fakes.h"

const NSNotificationName NSWorkspaceDidActivateApplicationNotification =
    @"NSWorkspaceDidActivateApplicationNotification";
NSString* const NSWorkspaceApplicationKey = @"NSWorkspaceApplicationKey";
const NSNotificationName NSWorkspaceDidWakeNotification = @"NSWorkspaceDidWakeNotification";
const NSNotificationName NSWorkspaceSessionDidBecomeActiveNotification =
    @"NSWorkspaceSessionDidBecomeActiveNotification";
const NSNotificationName NSWorkspaceSessionDidResignActiveNotification =
    @"NSWorkspaceSessionDidResignActiveNotification";
const NSNotificationName NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification =
    @"NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification";

@interface NSRunningApplication ()
@property(readwrite) pid_t processIdentifier;
@end

@implementation NSRunningApplication

+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)processIdentifier {
    const auto& running = FakeMac::settings().running;
    if (running.find(processIdentifier) == running.end()) {
        return nil;
    }
    NSRunningApplication* made = [[NSRunningApplication alloc] init];
    made.processIdentifier = processIdentifier;
    return made;
}

- (BOOL)terminate {
    FakeMac::settings().running[self.processIdentifier] += QStringLiteral("terminate ");
    return YES;
}

- (BOOL)forceTerminate {
    FakeMac::settings().running[self.processIdentifier] += QStringLiteral("forceTerminate ");
    return YES;
}

@end

static FakeMac::Shared<NSWorkspace> theWorkspace;

void FakeMac::activateApplication(pid_t process) {
    @autoreleasepool {
        NSRunningApplication* chosen = [[NSRunningApplication alloc] init];
        chosen.processIdentifier = process;
        post(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidActivateApplicationNotification,
             @{NSWorkspaceApplicationKey : chosen});
    }
}

@implementation NSWorkspace {
    NSNotificationCenter* center_;
}

+ (NSWorkspace*)sharedWorkspace {
    return theWorkspace.get();
}

- (NSNotificationCenter*)notificationCenter {
    if (center_ == nil) {
        center_ = [[NSNotificationCenter alloc] init];
    }
    return center_;
}

- (NSImage*)iconForFile:(NSString*)path {
    FakeMac::note("icon of " + QString::fromNSString(path).toStdString());
    if (!FakeMac::settings().makesIcons) {
        return nil;
    }
    NSImage* made = [[NSImage alloc] init];
    made.size = NSSize{32, 32};
    return made;
}

- (BOOL)accessibilityDisplayShouldReduceMotion {
    return FakeMac::settings().reducesMotion;
}

- (BOOL)openURL:(NSURL*)url {
    FakeMac::note("open " + QString::fromNSString(url.path).toStdString());
    return YES;
}

- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)urls {
    std::string all = "show";
    for (NSURL* url in urls) {
        all += " " + QString::fromNSString(url.path).toStdString();
    }
    FakeMac::did(all.c_str());
}

@end
