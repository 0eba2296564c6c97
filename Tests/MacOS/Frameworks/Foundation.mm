// A fake of the part of Foundation that our sources call.

#import "Frameworks/FakeMac.h"
#include "ObjectiveC/Runtime.h"

#include <QByteArray>
#include <QHash>

#include <cstring>
#include <mutex>
#include <thread>
#include <utility>

// Strings. Each subclass implements fakeText, and NSString implements the rest with it.
@interface NSString ()
- (QString)fakeText;
@end

@interface FakeString : NSString
@property(nonatomic) QString text;
@end

@interface FakeTinyString : NSString
@end

// The class of a string that CFSTR makes.
@interface FakeCFConstantString : NSString
@end

namespace {

struct ConstantString {
    void* isa;
    std::uint32_t flags;
    std::uint32_t length; // in code units
    std::uint32_t size;
    std::uint32_t hash;
    const char* data;
};

struct CFConstantText {
    void* isa;
    int flags;
    const char* data;
    long length;
};

const char versionIsThere[] = "1";

} // namespace

NSString* makeText(const QString& text);

NSString* makeText(const QString& text) {
    FakeString* made = [[FakeString alloc] init];
    made.text = text;
    return made;
}

@implementation NSString {
    QByteArray utf8_;
}

+ (instancetype)stringWithUTF8String:(const char*)text {
    if (text == nullptr) {
        return nil;
    }
    if (text == versionIsThere) {
        return @"1";
    }
    return makeText(QString::fromUtf8(text));
}

- (QString)fakeText {
    return {};
}

- (NSUInteger)length {
    return static_cast<NSUInteger>(self.fakeText.size());
}

- (const char*)UTF8String {
    utf8_ = self.fakeText.toUtf8();
    return utf8_.constData();
}

- (BOOL)isEqualToString:(NSString*)other {
    return other != nil && self.fakeText == other.fakeText;
}

- (BOOL)isEqual:(id)object {
    return [object isKindOfClass:[NSString class]] && [self isEqualToString:object];
}

- (NSUInteger)hash {
    return qHash(self.fakeText);
}

- (id)copy {
    return self;
}

@end

@implementation FakeString

- (QString)fakeText {
    return self.text;
}

@end

@implementation NSConstantString

- (QString)fakeText {
    const auto* text = (__bridge const ConstantString*)self;
    if ((text->flags & 3U) == 2) { // UTF-16
        return QString(reinterpret_cast<const QChar*>(text->data), static_cast<qsizetype>(text->length));
    }
    return QString::fromUtf8(text->data, static_cast<qsizetype>(text->size));
}

- (const char*)UTF8String {
    return ((__bridge const ConstantString*)self)->data;
}

@end

@implementation FakeTinyString

// Decodes a string that is stored in the pointer: up to eight seven-bit characters from the top bit down,
// then the length, and the tag in the lowest three bits.
- (QString)fakeText {
    const auto bits = reinterpret_cast<std::uintptr_t>((__bridge void*)self);
    const std::uintptr_t length = (bits >> 3U) & 31U;
    QString text;
    for (std::uintptr_t i = 0; i < length; ++i) {
        text += QLatin1Char(static_cast<char>((bits >> (57U - 7U * i)) & 127U));
    }
    return text;
}

- (const char*)UTF8String {
    static thread_local QByteArray last;
    last = self.fakeText.toUtf8();
    return last.constData();
}

@end

@implementation FakeCFConstantString

- (QString)fakeText {
    const auto* text = (__bridge const CFConstantText*)self;
    return QString::fromUtf8(text->data, text->length);
}

- (const char*)UTF8String {
    return ((__bridge const CFConstantText*)self)->data;
}

@end

// Numbers, bytes, collections
NSNumber* makeNumber(double value, bool isBoolean);

@implementation NSNumber

+ (NSNumber*)numberWithInteger:(NSInteger)value {
    return makeNumber(static_cast<double>(value), false);
}

+ (NSNumber*)numberWithLong:(long)value {
    return makeNumber(static_cast<double>(value), false);
}

- (BOOL)boolValue {
    return self.value != 0;
}

@end

NSNumber* makeNumber(double value, bool isBoolean) {
    NSNumber* made = [[NSNumber alloc] init];
    made.value = value;
    made.isBoolean = isBoolean;
    return made;
}

@interface NSData ()
@property(nonatomic) QByteArray content;
@end

@implementation NSData

- (NSUInteger)length {
    return static_cast<NSUInteger>(self.content.size());
}

- (const void*)bytes {
    return self.content.constData();
}

@end

NSData* makeData(const QByteArray& content);

NSData* makeData(const QByteArray& content) {
    NSData* made = [[NSData alloc] init];
    made.content = content;
    return made;
}

@implementation NSArray {
    std::vector<id> objects_;
}

+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count {
    NSArray* made = [[NSArray alloc] init];
    made->objects_.assign(objects, objects + count);
    return made;
}

- (NSUInteger)count {
    return objects_.size();
}

- (id)objectAtIndexedSubscript:(NSUInteger)index {
    if (index >= objects_.size()) {
        FakeMac::violate("an array was asked for what is beyond its end");
        return nil;
    }
    return objects_[index];
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)count {
    static unsigned long never = 0;
    state->mutationsPtr = &never;
    NSUInteger given = 0;
    while (given < count && state->state < objects_.size()) {
        buffer[given++] = objects_[state->state++];
    }
    state->itemsPtr = buffer;
    return given;
}

- (id)copy {
    return self;
}

@end

@implementation NSDictionary {
    std::vector<std::pair<id, id>> entries_;
}

+ (instancetype)dictionaryWithObjects:(const id[])objects forKeys:(const id[])keys count:(NSUInteger)count {
    NSDictionary* made = [[NSDictionary alloc] init];
    for (NSUInteger i = 0; i < count; ++i) {
        made->entries_.emplace_back(keys[i], objects[i]);
    }
    return made;
}

- (id)copy {
    return self;
}

- (id)objectForKeyedSubscript:(id)key {
    for (const auto& [name, object] : entries_) {
        if ([name isEqual:key]) {
            return object;
        }
    }
    return nil;
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)count {
    static unsigned long never = 0;
    state->mutationsPtr = &never;
    NSUInteger given = 0;
    while (given < count && state->state < entries_.size()) {
        buffer[given++] = entries_[state->state++].first;
    }
    state->itemsPtr = buffer;
    return given;
}

@end

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

static NSBundle* theBundle = nil;

@implementation NSBundle

+ (NSBundle*)mainBundle {
    if (theBundle == nil) {
        theBundle = [[NSBundle alloc] init];
    }
    return theBundle;
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

// Notifications
static NSOperationQueue* theQueue = nil;

@implementation NSOperationQueue

+ (NSOperationQueue*)mainQueue {
    if (theQueue == nil) {
        theQueue = [[NSOperationQueue alloc] init];
    }
    return theQueue;
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

static std::vector<FakeObserver*>& allObservers() {
    static auto* instance = new std::vector<FakeObserver*>;
    return *instance;
}

static NSNotificationCenter* theCenter = nil;

@implementation NSNotificationCenter

+ (NSNotificationCenter*)defaultCenter {
    if (theCenter == nil) {
        theCenter = [[NSNotificationCenter alloc] init];
    }
    return theCenter;
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
    allObservers().push_back(observer);
    return static_cast<id<NSObject>>(observer);
}

- (void)removeObserver:(id)observer {
    if (observer == nil) {
        return;
    }
    auto& all = allObservers();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == observer && all[i].center == self) {
            all.erase(all.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
    FakeMac::violate("an observer was taken away that this centre does not know");
}

@end

std::size_t FakeMac::observers() {
    return allObservers().size();
}

void FakeMac::post(NSNotificationCenter* center, NSString* name, NSDictionary* userInfo) {
    @autoreleasepool {
        NSNotification* notification = [[NSNotification alloc] init];
        notification.userInfo = userInfo;
        const std::vector<FakeObserver*> told = allObservers(); // a copy: a block may add or remove observers
        for (FakeObserver* observer : told) {
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

std::vector<ValueObserver>& allValueObservers() {
    static auto* instance = new std::vector<ValueObserver>;
    return *instance;
}

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
    allValueObservers().push_back({self, observer, path.fakeText});
}

- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)path {
    auto& all = allValueObservers();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].object == self && all[i].observer == observer && all[i].path == path.fakeText) {
            all.erase(all.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
    // macOS raises an exception.
    FakeMac::violate("an observer of a value was taken away that was never there");
}

@end

void FakeMac::changeValue(id object, NSString* path) {
    @autoreleasepool {
        const std::vector<ValueObserver> told = allValueObservers();
        for (const ValueObserver& each : told) {
            if (each.object == object && each.path == path.fakeText) {
                [each.observer observeValueForKeyPath:path ofObject:object change:nil context:nullptr];
            }
        }
    }
}

std::size_t FakeMac::valueObservers() {
    return allValueObservers().size();
}

// Activities
@interface FakeActivity : NSObject
@property(copy) NSString* reason;
@property NSActivityOptions options;
@end

@implementation FakeActivity
@end

static std::vector<FakeActivity*>& allActivities() {
    static auto* instance = new std::vector<FakeActivity*>;
    return *instance;
}

static NSProcessInfo* theProcess = nil;

@implementation NSProcessInfo

+ (NSProcessInfo*)processInfo {
    if (theProcess == nil) {
        theProcess = [[NSProcessInfo alloc] init];
    }
    return theProcess;
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
    allActivities().push_back(activity);
    return static_cast<id<NSObject>>(activity);
}

- (void)endActivity:(id<NSObject>)activity {
    auto& all = allActivities();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == activity) {
            all.erase(all.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
    FakeMac::violate("an activity was ended that does not run");
}

@end

std::vector<QString> FakeMac::activities() {
    std::vector<QString> running;
    @autoreleasepool {
        for (FakeActivity* activity : allActivities()) {
            running.push_back(activity.reason.fakeText + u' ' + QString::number(activity.options, 16));
        }
    }
    return running;
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

static NSAppleEventManager* theEvents = nil;

@implementation NSAppleEventManager

+ (NSAppleEventManager*)sharedAppleEventManager {
    if (theEvents == nil) {
        theEvents = [[NSAppleEventManager alloc] init];
    }
    return theEvents;
}

- (NSAppleEventDescriptor*)currentAppleEvent {
    return FakeMac::settings().hasAppleEvent ? [[NSAppleEventDescriptor alloc] init] : nil;
}

@end

// The journal, the violations and the settings
namespace {

struct Record {
    std::mutex mutex;
    std::vector<std::string> journal;
    std::vector<std::string> violations;
    FakeMac::Settings settings;
    int system = 13;
    std::thread::id mainThread = std::this_thread::get_id();
};

Record& record() {
    static auto* instance = new Record;
    return *instance;
}

// Constructed before main(), and on its thread, so that the record knows the main thread.
[[maybe_unused]] const Record& madeAtStart = record();

} // namespace

std::vector<std::string>& FakeMac::journal() {
    return record().journal;
}

void FakeMac::note(const std::string& call) {
    const std::lock_guard lock(record().mutex);
    record().journal.push_back(call);
}

void FakeMac::violate(const std::string& what) {
    const std::lock_guard lock(record().mutex);
    record().violations.push_back(what);
}

std::vector<std::string> FakeMac::takeViolations() {
    const std::lock_guard lock(record().mutex);
    return std::exchange(record().violations, {});
}

bool FakeMac::isMainThread() {
    return std::this_thread::get_id() == record().mainThread;
}

void FakeMac::requireMainThread(const char* call) {
    if (!isMainThread()) {
        violate(std::string(call) + " off the main thread");
    }
}

FakeMac::Settings& FakeMac::settings() {
    return record().settings;
}

void FakeMac::setSystemVersion(int major) {
    record().system = major;
}

extern "C" const char* macOSIsAtLeast(const char* platformAndVersion) {
    constexpr char platform[] = "macOS ";
    if (std::strncmp(platformAndVersion, platform, sizeof platform - 1) != 0) {
        FakeMac::violate("a question for the version of another system");
    }
    return record().system >= std::atoi(platformAndVersion + sizeof platform - 1) ? versionIsThere : nullptr;
}

void forgetAppKit(); // AppKit.mm

void FakeMac::checkEnd() {
    if (!allObservers().empty()) {
        violate("observers of notifications were left behind");
    }
    if (!allValueObservers().empty()) {
        violate("observers of values were left behind");
    }
    if (!allActivities().empty()) {
        violate("activities were left running");
    }
    allObservers().clear();
    allValueObservers().clear();
    allActivities().clear();
    forgetAppKit();
    theBundle = nil;
    theQueue = nil;
    theCenter = nil;
    theProcess = nil;
    theEvents = nil;
    const std::lock_guard lock(record().mutex);
    record().journal.clear();
    record().settings = {};
    record().system = 13;
}
