// The system's own preferences, accessed by domain, user and host. The convenience functions search the
// global domain, too, whose keys could shadow short ones such as "theme". Dots in keys are kept as they are.

#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <variant>

namespace Fenwhirl {

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
    // A false result only means that precision was lost; the value is the nearest number.
    CFNumberGetValue(number, kCFNumberDoubleType, &value);
    return value;
}

QByteArray readData(CFDataRef data) {
    return {reinterpret_cast<const char*>(CFDataGetBytePtr(data)), CFDataGetLength(data)};
}

// Converts a stored object to one of the program's types. Dates, arrays and dictionaries, which the program
// never writes, become empty data: they exist, but read as no text, the number 0 and false.
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

    // Nothing to create: the system stores each key separately and keeps these values itself.
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

    // A null value tells the system to remove the key. A value that could not be created (a text that is not
    // valid Unicode) must therefore change nothing.
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

// The system keeps each key for itself: those of a trial meet none of the user's.
std::unique_ptr<PreferencesStore> openTrialPreferences() {
    return openUserPreferences();
}

void removeTrialPreferences() {}

} // namespace Fenwhirl
