#include "Fenwhirl/Platform/Session/SessionPresence.h"

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>

namespace Fenwhirl {

namespace {

// Whether the window server says that this process's session is on the console. Defaults to true.
bool isOnConsole() {
    @autoreleasepool {
        NSDictionary* session = CFBridgingRelease(CGSessionCopyCurrentDictionary());
        const id value = session[(__bridge NSString*)kCGSessionOnConsoleKey];
        return ![value isKindOfClass:[NSNumber class]] || [static_cast<NSNumber*>(value) boolValue];
    }
}

class SessionPresenceMacOS final : public SessionPresence {
public:
    SessionPresenceMacOS() {
        @autoreleasepool { // the event loop, which has a pool of its own, is not running yet
            // Before reading the state, so that no later change is missed.
            became_ = observe(NSWorkspaceSessionDidBecomeActiveNotification, true);
            resigned_ = observe(NSWorkspaceSessionDidResignActiveNotification, false);
        }
        setInFront(isOnConsole());
    }

    ~SessionPresenceMacOS() override {
        @autoreleasepool {
            [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:became_];
            [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:resigned_];
        }
    }

    SessionPresenceMacOS(const SessionPresenceMacOS&) = delete;
    SessionPresenceMacOS& operator=(const SessionPresenceMacOS&) = delete;

private:
    id<NSObject> observe(NSNotificationName name, bool inFront) {
        return [NSWorkspace.sharedWorkspace.notificationCenter
            addObserverForName:name
                        object:nil
                         queue:NSOperationQueue.mainQueue
                    usingBlock:^(NSNotification* notification) {
                      (void)notification;
                      setInFront(inFront);
                    }];
    }

    id<NSObject> became_;
    id<NSObject> resigned_;
};

} // namespace

std::unique_ptr<SessionPresence> SessionPresence::create() {
    return std::make_unique<SessionPresenceMacOS>();
}

} // namespace Fenwhirl
