// A fake of the part of Metal that our sources call, and of the function that hands it to Qt Quick.

#import "Frameworks/Fakes.h"

#include <QtQuick/qquickgraphicsdevice.h>

#import <Metal/Metal.h>

@interface FakeCommandQueue : NSObject <MTLCommandQueue>
@property NSUInteger device;
@end

@implementation FakeCommandQueue
@end

@interface FakeGraphicsDevice : NSObject <MTLDevice>
@property NSUInteger number;
@property(readwrite, getter=isLowPower) BOOL lowPower;
@end

@implementation FakeGraphicsDevice

- (NSString*)name {
    return FakeMac::settings().metalDevice.toNSString();
}

- (id<MTLCommandQueue>)newCommandQueue {
    if (!FakeMac::settings().makesCommandQueues) {
        return nil;
    }
    FakeCommandQueue* made = [[FakeCommandQueue alloc] init];
    made.device = self.number;
    return made;
}

@end

NSArray<id<MTLDevice>>* MTLCopyAllDevices() {
    std::vector<FakeGraphicsDevice*> all;
    for (const bool isLowPower : FakeMac::settings().graphicsDevices) {
        FakeGraphicsDevice* device = [[FakeGraphicsDevice alloc] init];
        device.number = all.size();
        device.lowPower = isLowPower;
        all.push_back(device);
    }
    return [NSArray arrayWithObjects:all.data() count:all.size()];
}

id<MTLDevice> MTLCreateSystemDefaultDevice() {
    return FakeMac::settings().metalDevice.isEmpty() ? nil : [[FakeGraphicsDevice alloc] init];
}

// Overrides the function that Qt has only on a Mac. The result only has to be other than null.
QQuickGraphicsDevice QQuickGraphicsDevice::fromDeviceAndCommandQueue(MTLDevice* device,
                                                                     MTLCommandQueue* commandQueue) {
    auto* given = (FakeGraphicsDevice*)(id)device;
    auto* queue = (FakeCommandQueue*)(id)commandQueue;
    if (given == nil || queue == nil || queue.device != given.number) {
        FakeMac::violate("Qt Quick was given a device without a queue of its own");
    }
    FakeMac::did(("Qt Quick draws with device " + std::to_string(given.number)).c_str());
    return fromOpenGLContext(reinterpret_cast<QOpenGLContext*>((__bridge void*)device));
}
