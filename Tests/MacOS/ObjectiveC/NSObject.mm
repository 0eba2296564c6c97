// The root class, and the class of blocks. Compiled without ARC, because ARC is built on it.

#import <objc/NSObject.h>

using IMP = id (*)(id, SEL, ...);

namespace Runtime {
id allocate(Class ofClass);
void destroy(id object);
Class classOf(id object);
IMP find(Class startingAt, SEL selector);
} // namespace Runtime

extern "C" Class objc_superclass(Class which);
extern "C" id objc_retain(id object);

@implementation NSObject

+ (instancetype)alloc {
    return Runtime::allocate(self);
}

+ (instancetype)new {
    return [Runtime::allocate(self) init];
}

+ (Class)class {
    return self;
}

+ (BOOL)respondsToSelector:(SEL)selector {
    return Runtime::find(Runtime::classOf(self), selector) != nullptr;
}

- (instancetype)init {
    return self;
}

- (void)dealloc {
    Runtime::destroy(self);
}

- (id)copy {
    return objc_retain(self);
}

- (Class)class {
    return Runtime::classOf(self);
}

- (BOOL)isEqual:(id)object {
    return self == object;
}

- (NSUInteger)hash {
    return reinterpret_cast<NSUInteger>(self) >> 4U;
}

- (BOOL)isKindOfClass:(Class)which {
    for (Class each = Runtime::classOf(self); each != nullptr; each = objc_superclass(each)) {
        if (each == which) {
            return YES;
        }
    }
    return NO;
}

- (BOOL)respondsToSelector:(SEL)selector {
    return Runtime::find(Runtime::classOf(self), selector) != nullptr;
}

- (id)performSelector:(SEL)selector withObject:(id)object {
    return Runtime::find(Runtime::classOf(self), selector)(self, selector, object);
}

@end

// The class that Runtime::classOf() reports for blocks.
@interface FakeBlock : NSObject
@end

@implementation FakeBlock
@end
