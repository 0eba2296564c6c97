// A fake of the part of AppKit that our sources call: events, event monitors and actions.

#import "Frameworks/Fakes.h"

#include <bit>

// An action returns nothing, so performSelector: cannot leak a result.
#pragma clang diagnostic ignored "-Warc-performSelector-leaks"

@interface NSEvent ()
@property(readwrite) NSEventType type;
@property(readwrite) NSEventModifierFlags modifierFlags;
@property(nullable, readwrite, assign) NSWindow* window;
@end

@interface FakeMonitor : NSObject
@property NSEventMask mask;
@property(copy) void (^global)(NSEvent*);
@property(copy) NSEvent* (^local)(NSEvent*);
@end

@implementation FakeMonitor
@end

static FakeMac::Registry<FakeMonitor*> monitors("monitors of events were left behind",
                                                "a monitor of events was removed that is not there");

@implementation NSEvent

static FakeMonitor* addMonitor(NSEventMask mask) {
    FakeMac::requireMainThread("a monitor of events");
    if (!FakeMac::settings().makesMonitors) {
        return nil;
    }
    FakeMonitor* monitor = [[FakeMonitor alloc] init];
    monitor.mask = mask;
    monitors.add(monitor);
    return monitor;
}

+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block {
    FakeMonitor* monitor = addMonitor(mask);
    monitor.global = block;
    return monitor;
}

+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent*))block {
    FakeMonitor* monitor = addMonitor(mask);
    monitor.local = block;
    return monitor;
}

+ (void)removeMonitor:(id)monitor {
    monitors.remove([&](FakeMonitor* each) { return each == monitor; });
}

@end

void FakeMac::pressElsewhere(NSEventMask mask) {
    @autoreleasepool {
        NSEvent* event = [[NSEvent alloc] init];
        for (FakeMonitor* monitor : monitors.all()) {
            if (monitor.global != nil && (monitor.mask & mask) != 0) {
                monitor.global(event);
            }
        }
    }
}

bool FakeMac::pressIn(NSWindow* window, NSEventMask mask, NSEventModifierFlags modifiers) {
    @autoreleasepool {
        NSEvent* event = [[NSEvent alloc] init];
        event.type = static_cast<NSEventType>(std::countr_zero(static_cast<unsigned long long>(mask)));
        event.modifierFlags = modifiers;
        event.window = window;
        for (FakeMonitor* monitor : monitors.all()) {
            if (event != nil && monitor.local != nil && (monitor.mask & mask) != 0) {
                event = monitor.local(event);
            }
        }
        return event != nil;
    }
}

std::size_t FakeMac::eventMonitors() {
    return monitors.size();
}

void FakeMac::sendAction(SEL action, id target, id sender) {
    @autoreleasepool {
        [target performSelector:action withObject:sender];
    }
}
