#include "Fenwhirl/Platform/Processes/RunningApplications.h"

#import <AppKit/AppKit.h>

namespace Fenwhirl {

bool askApplicationToTerminate(std::int32_t pid, bool force) {
    @autoreleasepool {
        NSRunningApplication* application =
            [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
        if (application == nil) {
            return false;
        }
        if (force) {
            [application forceTerminate];
        } else {
            [application terminate];
        }
        return true;
    }
}

} // namespace Fenwhirl
