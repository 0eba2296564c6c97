// Fakes of the parts of CoreFoundation and CoreGraphics that our sources call. Their objects are the fake
// Foundation's.

#import "Frameworks/Fakes.h"
#import "Frameworks/Preferences.h"

#include <QByteArray>
#include <QStringDecoder>

#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>
#include <algorithm>
#include <cstring>

extern "C" id objc_retain(id object);
extern "C" void objc_release(id object);

extern const CFAllocatorRef kCFAllocatorDefault = nullptr;
extern const CFStringRef kCFPreferencesCurrentUser =
    (CFStringRef)CFBridgingRetain(@"kCFPreferencesCurrentUser");
extern const CFStringRef kCFPreferencesAnyHost = (CFStringRef)CFBridgingRetain(@"kCFPreferencesAnyHost");

// Makes kCFBooleanTrue and kCFBooleanFalse, which exist from the start and are never freed.
static CFBooleanRef forever(bool value) {
    return (CFBooleanRef)CFBridgingRetain(makeNumber(value ? 1 : 0, true));
}

extern const CFBooleanRef kCFBooleanTrue = [] {
    @autoreleasepool {
        return forever(true);
    }
}();
extern const CFBooleanRef kCFBooleanFalse = [] {
    @autoreleasepool {
        return forever(false);
    }
}();

static void want(CFTypeRef object, const char* call) {
    if (object == nullptr) {
        FakeMac::violate(std::string(call) + " of nothing"); // macOS ends the program
    }
}

CFTypeRef CFRetain(CFTypeRef object) {
    want(object, "CFRetain");
    objc_retain((__bridge id)object);
    return object;
}

void CFRelease(CFTypeRef object) {
    want(object, "CFRelease");
    objc_release((__bridge __unsafe_unretained id)object);
}

static constexpr CFTypeID texts = 7, numbers = 22, booleans = 21, bytes = 20, others = 1;

CFTypeID CFStringGetTypeID() {
    return texts;
}

CFTypeID CFNumberGetTypeID() {
    return numbers;
}

CFTypeID CFBooleanGetTypeID() {
    return booleans;
}

CFTypeID CFDataGetTypeID() {
    return bytes;
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
    want(reference, "CFGetTypeID");
    id object = (__bridge id)reference;
    if ([object isKindOfClass:[NSString class]]) {
        return texts;
    }
    if ([object isKindOfClass:[NSData class]]) {
        return bytes;
    }
    if ([object isKindOfClass:[NSNumber class]]) {
        return static_cast<NSNumber*>(object).isBoolean ? booleans : numbers;
    }
    return others;
}

// Reports a call with an object of the wrong type, for which macOS ends the program.
static void wantKind(CFTypeRef object, CFTypeID kind, const char* call) {
    if (object == nullptr || CFGetTypeID(object) != kind) {
        FakeMac::violate(std::string(call) + " of an object of another kind");
    }
}

Boolean CFEqual(CFTypeRef a, CFTypeRef b) {
    return [(__bridge id)a isEqual:(__bridge id)b];
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* text, CFIndex count,
                                    CFStringEncoding encoding, Boolean isExternal) {
    if (encoding != kCFStringEncodingUTF8 || isExternal) {
        FakeMac::violate("a text in another encoding than UTF-8");
    }
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder(QByteArrayView(reinterpret_cast<const char*>(text), count));
    if (decoder.hasError() || FakeMac::preferences().refusesTexts) {
        return nullptr;
    }
    @autoreleasepool {
        return (CFStringRef)CFBridgingRetain(makeText(decoded));
    }
}

CFIndex CFStringGetLength(CFStringRef text) {
    wantKind(text, texts, "CFStringGetLength");
    return static_cast<CFIndex>(((__bridge NSString*)text).length);
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding) {
    return 3 * length; // a UTF-16 code unit takes at most three bytes in UTF-8
}

Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex size, CFStringEncoding encoding) {
    wantKind(text, texts, "CFStringGetCString");
    if (encoding != kCFStringEncodingUTF8) {
        FakeMac::violate("a text wanted in another encoding than UTF-8");
    }
    const std::string utf8 = ((__bridge NSString*)text).UTF8String;
    if (static_cast<CFIndex>(utf8.size()) >= size) {
        return false;
    }
    std::memcpy(buffer, utf8.c_str(), utf8.size() + 1);
    return true;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    if (type != kCFNumberDoubleType) {
        FakeMac::violate("a number of another type than double");
    }
    @autoreleasepool {
        return (CFNumberRef)CFBridgingRetain(makeNumber(*static_cast<const double*>(value), false));
    }
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    wantKind(number, numbers, "CFNumberGetValue");
    if (type != kCFNumberDoubleType) {
        FakeMac::violate("a number wanted as another type than double");
    }
    *static_cast<double*>(value) = ((__bridge NSNumber*)number).value;
    return !FakeMac::preferences().losesPrecision;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    wantKind(boolean, booleans, "CFBooleanGetValue");
    return ((__bridge NSNumber*)boolean).boolValue;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* content, CFIndex count) {
    @autoreleasepool {
        return (CFDataRef)CFBridgingRetain(
            makeData(QByteArray(reinterpret_cast<const char*>(content), count)));
    }
}

CFIndex CFDataGetLength(CFDataRef data) {
    wantKind(data, bytes, "CFDataGetLength");
    return static_cast<CFIndex>(((__bridge NSData*)data).length);
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    wantKind(data, bytes, "CFDataGetBytePtr");
    return static_cast<const UInt8*>(((__bridge NSData*)data).bytes);
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(((__bridge NSArray*)array).count);
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    @autoreleasepool {
        return (__bridge const void*)((__bridge NSArray*)array)[static_cast<NSUInteger>(index)];
    }
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    return (__bridge const void*)((__bridge NSDictionary*)dictionary)[(__bridge id)key];
}

// Preferences
FakeMac::Preferences& FakeMac::preferences() {
    static auto* instance = new Preferences;
    return *instance;
}

static QString text(CFStringRef reference) {
    @autoreleasepool {
        return QString::fromNSString((__bridge NSString*)reference);
    }
}

static QString domain(CFStringRef application, CFStringRef user, CFStringRef host) {
    return text(application) + u'|' + text(user) + u'|' + text(host);
}

CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user,
                                         CFStringRef host) {
    const auto& values = FakeMac::preferences().values;
    const auto found = values.find({domain(application, user, host), text(key)});
    return found == values.end() ? nullptr : CFBridgingRetain(found->second);
}

void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef application,
                           CFStringRef user, CFStringRef host) {
    if (key == nullptr || application == nullptr) {
        FakeMac::violate("a preference without a name"); // macOS ends the program
    }
    FakeMac::note("set " + text(key).toStdString());
    const std::pair place{domain(application, user, host), text(key)};
    if (value == nullptr) {
        FakeMac::preferences().values.erase(place);
    } else {
        FakeMac::preferences().values[place] = (__bridge id)value;
    }
}

Boolean CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host) {
    FakeMac::note("synchronise " + domain(application, user, host).toStdString());
    return true;
}

CFArrayRef CFLocaleCopyPreferredLanguages() {
    if (!FakeMac::settings().hasLanguages) {
        return nullptr;
    }
    @autoreleasepool {
        std::vector<NSString*> tags;
        for (const QString& language : FakeMac::settings().languages) {
            tags.push_back(makeText(language));
        }
        return (CFArrayRef)CFBridgingRetain([NSArray arrayWithObjects:tags.data() count:tags.size()]);
    }
}

// The window server
CFDictionaryRef CGSessionCopyCurrentDictionary() {
    const FakeMac::Settings& settings = FakeMac::settings();
    if (!settings.hasSession) {
        return nullptr;
    }
    @autoreleasepool {
        std::vector<id> keys = {@"kCGSSessionUserNameKey"};
        std::vector<id> objects = {@"test"};
        if (settings.hasConsoleKey) {
            keys.push_back((__bridge NSString*)kCGSessionOnConsoleKey);
            if (settings.consoleIsNumber) {
                objects.push_back(makeNumber(settings.isOnConsole ? 1 : 0, true));
            } else {
                objects.push_back(@"no");
            }
        }
        return (CFDictionaryRef)CFBridgingRetain([NSDictionary dictionaryWithObjects:objects.data()
                                                                             forKeys:keys.data()
                                                                               count:keys.size()]);
    }
}
