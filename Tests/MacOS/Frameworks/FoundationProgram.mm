// A fake of the part of Foundation that our sources call: URLs, host, bundle, activities and Apple events.

#import "Frameworks/Fakes.h"

@interface NSURL ()
@property(nullable, readwrite, copy) NSString* path;
@end

@implementation NSURL

+ (NSURL*)fileURLWithPath:(NSString*)path {
    if (path == nil) {
        FakeMac::violate("a URL of no path"); // macOS raises an exception
        return [[NSURL alloc] init];
    }
    NSURL* made = [[NSURL alloc] init];
    made.path = path;
    return made;
}

@end

@interface NSHost ()
@property(nullable, readwrite, copy) NSString* localizedName;
@end

@implementation NSHost

+ (instancetype)currentHost {
    NSHost* made = [[NSHost alloc] init];
    if (FakeMac::settings().hasComputerName) {
        made.localizedName = makeText(FakeMac::settings().computerName);
    }
    return made;
}

@end

static FakeMac::Shared<NSBundle> theBundle;

@implementation NSBundle

+ (NSBundle*)mainBundle {
    return theBundle.get();
}

- (NSString*)bundlePath {
    return makeText(FakeMac::settings().bundlePath);
}

- (NSString*)executablePath {
    return makeText(FakeMac::settings().bundlePath + QStringLiteral("/Contents/MacOS/Fenwhirl"));
}

- (id)objectForInfoDictionaryKey:(NSString*)key {
    const auto found = FakeMac::settings().bundle.find(key.fakeText);
    if (found == FakeMac::settings().bundle.end()) {
        return nil;
    }
    if (found->second == QStringLiteral("<a number>")) {
        return makeNumber(1, false);
    }
    return makeText(found->second);
}

@end

@interface FakeActivity : NSObject
@property(copy) NSString* reason;
@property NSActivityOptions options;
@end

@implementation FakeActivity
@end

static FakeMac::Registry<FakeActivity*> running("activities were left running",
                                                "an activity was ended that does not run");
static FakeMac::Shared<NSProcessInfo> theProcess;

@implementation NSProcessInfo

+ (NSProcessInfo*)processInfo {
    return theProcess.get();
}

- (NSString*)operatingSystemVersionString {
    return @"Version 13.0 (Build 22A380)";
}

- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
    if (reason == nil || reason.length == 0) {
        FakeMac::violate("an activity without a reason"); // macOS raises an exception
    }
    FakeActivity* activity = [[FakeActivity alloc] init];
    activity.reason = reason;
    activity.options = options;
    running.add(activity);
    return static_cast<id<NSObject>>(activity);
}

- (void)endActivity:(id<NSObject>)activity {
    running.remove([&](FakeActivity* each) { return each == activity; });
}

@end

std::vector<QString> FakeMac::activities() {
    std::vector<QString> told;
    @autoreleasepool {
        for (FakeActivity* activity : running.all()) {
            told.push_back(activity.reason.fakeText + u' ' + QString::number(activity.options, 16));
        }
    }
    return told;
}

// Apple events
@interface NSAppleEventDescriptor ()
@property AEKeyword keyword;
@property bool isParameter;
@end

@implementation NSAppleEventDescriptor

static OSType reason(NSAppleEventDescriptor* descriptor, int kind) {
    const auto& reasons = FakeMac::settings().quitReasons;
    const auto found = reasons.find({kind, descriptor.isParameter});
    return found == reasons.end() ? 0 : found->second;
}

- (OSType)typeCodeValue {
    return reason(self, 0);
}

- (OSType)enumCodeValue {
    return reason(self, 1);
}

static NSAppleEventDescriptor* descriptor(AEKeyword keyword, bool isParameter) {
    if (keyword != kAEQuitReason) {
        return nil;
    }
    NSAppleEventDescriptor* made = [[NSAppleEventDescriptor alloc] init];
    made.isParameter = isParameter;
    return made;
}

- (NSAppleEventDescriptor*)attributeDescriptorForKeyword:(AEKeyword)keyword {
    return descriptor(keyword, false);
}

- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword {
    return descriptor(keyword, true);
}

@end

static FakeMac::Shared<NSAppleEventManager> theEvents;

@implementation NSAppleEventManager

+ (NSAppleEventManager*)sharedAppleEventManager {
    return theEvents.get();
}

- (NSAppleEventDescriptor*)currentAppleEvent {
    return FakeMac::settings().hasAppleEvent ? [[NSAppleEventDescriptor alloc] init] : nil;
}

@end
