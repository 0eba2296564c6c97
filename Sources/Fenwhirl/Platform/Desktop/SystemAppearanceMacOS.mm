#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"

#import <AppKit/AppKit.h>
#include <functional>

@interface FenwhirlAppearanceObserver : NSObject
@property(nonatomic) std::function<void()> changed;
@end

@implementation FenwhirlAppearanceObserver

- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    (void)path;
    (void)object;
    (void)change;
    (void)context;
    if (self.changed) {
        self.changed();
    }
}

@end

namespace Fenwhirl {

namespace {

class SystemAppearanceMacOS final : public SystemAppearance {
public:
    SystemAppearanceMacOS() : observer_([[FenwhirlAppearanceObserver alloc] init]) {
        observer_.changed = [this] { read(); };
        @autoreleasepool { // the event loop, which has a pool of its own, is not running yet
            [NSApp addObserver:observer_
                    forKeyPath:@"effectiveAppearance"
                       options:NSKeyValueObservingOptionNew
                       context:nullptr];
            motion_ = [NSWorkspace.sharedWorkspace.notificationCenter
                addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                            object:nil
                             queue:NSOperationQueue.mainQueue
                        usingBlock:^(NSNotification* notification) {
                          (void)notification;
                          read();
                        }];
        }
        read();
    }

    ~SystemAppearanceMacOS() override {
        @autoreleasepool {
            [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:motion_];
            [NSApp removeObserver:observer_ forKeyPath:@"effectiveAppearance"];
        }
    }

    void choose(AppearanceChoice choice) override {
        @autoreleasepool {
            NSAppearance* appearance = nil; // nil follows the system
            if (choice != AppearanceChoice::system) {
                appearance =
                    [NSAppearance appearanceNamed:choice == AppearanceChoice::dark ? NSAppearanceNameDarkAqua
                                                                                   : NSAppearanceNameAqua];
            }
            [static_cast<NSApplication*>(NSApp) setAppearance:appearance];
        }
    }

    SystemAppearanceMacOS(const SystemAppearanceMacOS&) = delete;
    SystemAppearanceMacOS& operator=(const SystemAppearanceMacOS&) = delete;

private:
    void read() {
        @autoreleasepool {
            NSAppearanceName match = [NSApp.effectiveAppearance
                bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
            setDark([match isEqualToString:NSAppearanceNameDarkAqua]);
            setReducedMotion(NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion);
        }
    }

    FenwhirlAppearanceObserver* observer_;
    id<NSObject> motion_;
};

} // namespace

std::unique_ptr<SystemAppearance> SystemAppearance::create() {
    return std::make_unique<SystemAppearanceMacOS>();
}

} // namespace Fenwhirl
