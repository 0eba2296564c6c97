// The system's own preferences, asked for by domain, user and host: the search list of the convenience calls
// also holds the global domain, whose keys could shadow short ones such as "theme". Keys keep their dots.

#include "Fenwhirl/Platform/PreferencesStore.h"

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <variant>

namespace {

struct Releaser {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

using Owned = std::unique_ptr<const void, Releaser>;

Owned makeString(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    return Owned(CFStringCreateWithBytes(kCFAllocatorDefault,
                                         reinterpret_cast<const UInt8*>(bytes.constData()), bytes.size(),
                                         kCFStringEncodingUTF8, 0));
}

CFStringRef asString(const Owned& object) {
    return static_cast<CFStringRef>(object.get());
}

QString readString(CFStringRef string) {
    const CFIndex room =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    QByteArray buffer(room, '\0');
    if (!CFStringGetCString(string, buffer.data(), room, kCFStringEncodingUTF8)) {
        return {};
    }
    return QString::fromUtf8(buffer.constData());
}

double readNumber(CFNumberRef number) {
    double value = 0;
    // False only says that precision was lost; the nearest number is still there.
    CFNumberGetValue(number, kCFNumberDoubleType, &value);
    return value;
}

QByteArray readData(CFDataRef data) {
    return {reinterpret_cast<const char*>(CFDataGetBytePtr(data)), CFDataGetLength(data)};
}

// A stored object as the program knows it. Dates, arrays and dictionaries, which it never writes, are
// something that is there and says nothing: no text, the number 0, no.
PreferenceValue readValue(CFTypeRef object) {
    const CFTypeID type = CFGetTypeID(object);
    if (type == CFStringGetTypeID()) {
        return readString(static_cast<CFStringRef>(object));
    }
    if (type == CFBooleanGetTypeID()) {
        return CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0;
    }
    if (type == CFNumberGetTypeID()) {
        return readNumber(static_cast<CFNumberRef>(object));
    }
    if (type == CFDataGetTypeID()) {
        return readData(static_cast<CFDataRef>(object));
    }
    return QByteArray();
}

struct Maker {
    Owned operator()(const QString& text) const { return makeString(text); }

    Owned operator()(bool value) const { return Owned(CFRetain(value ? kCFBooleanTrue : kCFBooleanFalse)); }

    Owned operator()(double number) const {
        return Owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &number));
    }

    Owned operator()(const QByteArray& data) const {
        return Owned(
            CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(data.constData()), data.size()));
    }

    // Those stay with the system, which keeps each key for itself.
    Owned operator()(const UnknownPreference& /*unknown*/) const { return {}; }
};

class UserPreferences final : public PreferencesStore {
private:
    [[nodiscard]] std::optional<PreferenceValue> value(const QString& key) const override {
        const Owned name = makeString(key);
        const Owned application = domain();
        const Owned object(CFPreferencesCopyValue(asString(name), asString(application),
                                                  kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
        return object ? std::optional(readValue(object.get())) : std::nullopt;
    }

    // No value is how the system spells removal. So one that could not be made (a text that is no Unicode)
    // changes nothing.
    void store(const QString& key, std::optional<PreferenceValue> value) override {
        const Owned object = value ? std::visit(Maker(), *value) : Owned();
        if (value && !object) {
            return;
        }
        const Owned name = makeString(key);
        const Owned application = domain();
        CFPreferencesSetValue(asString(name), object.get(), asString(application), kCFPreferencesCurrentUser,
                              kCFPreferencesAnyHost);
        CFPreferencesSynchronize(asString(application), kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    }

    [[nodiscard]] static Owned domain() { return makeString(QStringLiteral("com.fenwhirl.app")); }
};

} // namespace

std::unique_ptr<PreferencesStore> openUserPreferences() {
    return std::make_unique<UserPreferences>();
}
