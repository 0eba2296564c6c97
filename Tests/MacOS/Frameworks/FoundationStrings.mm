// A fake of the part of Foundation that our sources call: strings. Each subclass implements fakeText, and
// NSString implements the rest with it.

#import "Frameworks/Fakes.h"

#include <QHash>

#include <cstdint>

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

} // namespace

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
    if (text == FakeMac::versionIsThere) {
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
