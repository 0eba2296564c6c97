#include "Fenwhirl/Platform/Desktop/GraphicsDevice.h"

#include <QObject>
#include <QQuickGraphicsDevice>
#include <QQuickWindow>

#import <Metal/Metal.h>

namespace Fenwhirl {

namespace {

// Qt Quick does not own the device and the queue. A child of the window, so that both outlive all drawing.
class DeviceOfWindow final : public QObject {
public:
    DeviceOfWindow(QQuickWindow& window, id<MTLDevice> device, id<MTLCommandQueue> queue)
        : QObject(&window)
        , device(device)
        , queue(queue) {}

    const id<MTLDevice> device;
    const id<MTLCommandQueue> queue;
};

// Nil where there is no choice.
id<MTLDevice> lowPowerDevice() {
    NSArray<id<MTLDevice>>* devices = MTLCopyAllDevices();
    if (devices.count < 2) {
        return nil;
    }
    for (id<MTLDevice> device in devices) {
        if (device.isLowPower) {
            return device;
        }
    }
    return nil;
}

} // namespace

void chooseGraphicsDevice(QQuickWindow& window) {
    @autoreleasepool {
        id<MTLDevice> device = lowPowerDevice();
        id<MTLCommandQueue> queue = [device newCommandQueue];
        if (queue == nil) {
            return;
        }
        new DeviceOfWindow(window, device, queue);
        window.setGraphicsDevice(QQuickGraphicsDevice::fromDeviceAndCommandQueue(
            static_cast<MTLDevice*>(device), static_cast<MTLCommandQueue*>(queue)));
    }
}

} // namespace Fenwhirl
