// A fake of the part of Foundation that our sources call: notifications and key-value observing.

#import "Frameworks/Fakes.h"

static FakeMac::Shared<NSOperationQueue> theQueue;

@implementation NSOperationQueue

+ (NSOperationQueue*)mainQueue {
    return theQueue.get();
}

@end

@interface NSNotification ()
@property(nullable, readwrite, retain) id object;
@property(nullable, readwrite, copy) NSDictionary* userInfo;
@end

@implementation NSNotification
@end

@interface FakeObserver : NSObject
@property(copy) NSString* name;
@property(unsafe_unretained) NSNotificationCenter* center;
@property(strong) NSOperationQueue* queue;
@property(copy) void (^block)(NSNotification*);
@end

@implementation FakeObserver
@end

static FakeMac::Registry<FakeObserver*>
    notificationObservers("observers of notifications were left behind",
                          "an observer was taken away that this centre does not know");
static FakeMac::Shared<NSNotificationCenter> theCenter;

@implementation NSNotificationCenter

+ (NSNotificationCenter*)defaultCenter {
    return theCenter.get();
}

- (id<NSObject>)addObserverForName:(NSNotificationName)name
                            object:(id)object
                             queue:(NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification*))block {
    if (object != nil) {
        FakeMac::violate("an observer of one object, which these tests do not know");
    }
    FakeObserver* observer = [[FakeObserver alloc] init];
    observer.name = name;
    observer.center = self;
    observer.queue = queue;
    observer.block = block;
    notificationObservers.add(observer);
    return static_cast<id<NSObject>>(observer);
}

- (void)removeObserver:(id)observer {
    if (observer == nil) {
        return;
    }
    notificationObservers.remove([&](FakeObserver* each) { return each == observer && each.center == self; });
}

@end

std::size_t FakeMac::observers() {
    return notificationObservers.size();
}

void FakeMac::post(NSNotificationCenter* center, NSString* name, NSDictionary* userInfo) {
    @autoreleasepool {
        NSNotification* notification = [[NSNotification alloc] init];
        notification.userInfo = userInfo;
        for (FakeObserver* observer : notificationObservers.all()) {
            if (observer.center != center || ![observer.name isEqualToString:name]) {
                continue;
            }
            if (observer.queue != NSOperationQueue.mainQueue) {
                FakeMac::violate("a notification would come on whatever thread posts it");
            }
            observer.block(notification);
        }
    }
}

// Key-value observing
namespace {

struct ValueObserver {
    __unsafe_unretained id object;
    __unsafe_unretained NSObject* observer;
    QString path;
};

FakeMac::Registry<ValueObserver>
    observersOfValues("observers of values were left behind",
                      "an observer of a value was taken away that was never there"); // an exception there

} // namespace

@implementation NSObject (NSKeyValueObserving)

- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    (void)path;
    (void)object;
    (void)change;
    (void)context;
    FakeMac::violate("a change that nobody wanted"); // macOS raises an exception
}

- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)path
            options:(NSKeyValueObservingOptions)options
            context:(void*)context {
    (void)options;
    (void)context;
    observersOfValues.add({self, observer, path.fakeText});
}

- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)path {
    observersOfValues.remove([&](const ValueObserver& each) {
        return each.object == self && each.observer == observer && each.path == path.fakeText;
    });
}

@end

void FakeMac::changeValue(id object, NSString* path) {
    @autoreleasepool {
        for (const ValueObserver& each : observersOfValues.all()) {
            if (each.object == object && each.path == path.fakeText) {
                [each.observer observeValueForKeyPath:path ofObject:object change:nil context:nullptr];
            }
        }
    }
}

std::size_t FakeMac::valueObservers() {
    return observersOfValues.size();
}
