// The Metal declarations that Fenwhirl uses, written from Apple's public reference.
// For the cross-check on Linux only: a Mac build must never see this file.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@protocol MTLCommandQueue <NSObject>
@end
@protocol MTLDevice <NSObject>
@property (nonnull, readonly) NSString* name;
@property (readonly, getter=isLowPower) BOOL lowPower API_AVAILABLE(macos(10.11));
- (nullable id<MTLCommandQueue>)newCommandQueue;
@end
FOUNDATION_EXPORT id<MTLDevice> _Nullable MTLCreateSystemDefaultDevice(void) __attribute__((ns_returns_retained))
    API_AVAILABLE(macos(10.11));
// All that there are at this moment.
FOUNDATION_EXPORT NSArray<id<MTLDevice>>* MTLCopyAllDevices(void) __attribute__((ns_returns_retained))
    API_AVAILABLE(macos(10.11));

NS_ASSUME_NONNULL_END
