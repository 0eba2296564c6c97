// The root class, for the tests that run the macOS sources on Linux.
#pragma once

#include <objc/objc.h>

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(id)object;
@property(readonly) NSUInteger hash;
- (BOOL)isKindOfClass:(Class)which;
- (BOOL)respondsToSelector:(SEL)selector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
    Class isa;
}
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
- (id)copy;
- (Class)class;
- (id)performSelector:(SEL)selector withObject:(id)object;
@end
