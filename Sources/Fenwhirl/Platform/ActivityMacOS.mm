#include "Fenwhirl/Platform/Activity.h"

#import <Foundation/Foundation.h>

namespace Fenwhirl {

struct Activity::Token {
    id<NSObject> activity;
};

Activity::Activity(const QString& reason) : token_(std::make_unique<Token>()) {
    @autoreleasepool {
        token_->activity =
            [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                         reason:reason.toNSString()];
    }
}

Activity::~Activity() {
    @autoreleasepool {
        [NSProcessInfo.processInfo endActivity:token_->activity];
    }
}

} // namespace Fenwhirl
