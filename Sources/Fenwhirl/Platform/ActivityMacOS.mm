#include "Fenwhirl/Platform/Activity.h"

#import <Foundation/Foundation.h>

Activity::Activity(const QString& reason) {
    @autoreleasepool {
        const id<NSObject> token = [NSProcessInfo.processInfo
            beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                              reason:reason.toNSString()];
        token_ = const_cast<void*>(CFBridgingRetain(token));
    }
}

Activity::~Activity() {
    @autoreleasepool {
        [NSProcessInfo.processInfo endActivity:CFBridgingRelease(token_)];
    }
}
