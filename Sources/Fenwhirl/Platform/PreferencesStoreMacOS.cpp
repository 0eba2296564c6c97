// The system's own preferences, asked for by domain, user and host: the search list of the convenience calls
// also holds the global domain, whose keys could shadow short ones such as "theme". Keys keep their dots.

#include "Fenwhirl/Platform/PreferenceReading.h"
#include "Fenwhirl/Platform/PreferencesStore.h"

#include <CoreFoundation/CoreFoundation.h>
#include <memory>

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

// A stored object as the program knows it; dates, arrays and dictionaries, which it never writes, are none.
std::optional<PreferenceValue> readValue(CFTypeRef object) {
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
    return std::nullopt;
}

class UserPreferences final : public PreferencesStore {
public:
    [[nodiscard]] bool contains(const QString& key) const override { return copy(key) != nullptr; }

    [[nodiscard]] std::optional<QString> text(const QString& key) const override {
        return storedAs<QString>(value(key));
    }

    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override {
        return readAsBoolean(value(key));
    }

    [[nodiscard]] std::optional<double> number(const QString& key) const override {
        return readAsNumber(value(key));
    }

    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override {
        return storedAs<QByteArray>(value(key));
    }

    void setText(const QString& key, const QString& value) override { store(key, makeString(value)); }

    void setBoolean(const QString& key, bool value) override {
        store(key, Owned(CFRetain(value ? kCFBooleanTrue : kCFBooleanFalse)));
    }

    void setNumber(const QString& key, double value) override {
        store(key, Owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &value)));
    }

    void setData(const QString& key, const QByteArray& value) override {
        store(key, Owned(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(value.constData()),
                                      value.size())));
    }

    // No value is how the system spells removal.
    void remove(const QString& key) override { write(key, nullptr); }

private:
    [[nodiscard]] Owned domain() const { return makeString(QStringLiteral("com.fenwhirl.app")); }

    [[nodiscard]] Owned copy(const QString& key) const {
        const Owned name = makeString(key);
        const Owned application = domain();
        return Owned(CFPreferencesCopyValue(asString(name), asString(application), kCFPreferencesCurrentUser,
                                            kCFPreferencesAnyHost));
    }

    [[nodiscard]] std::optional<PreferenceValue> value(const QString& key) const {
        const Owned object = copy(key);
        return object ? readValue(object.get()) : std::nullopt;
    }

    // A value that could not be made (a text that is no Unicode) changes nothing: storing it would remove the
    // key.
    void store(const QString& key, const Owned& value) {
        if (value) {
            write(key, value.get());
        }
    }

    void write(const QString& key, CFPropertyListRef value) {
        const Owned name = makeString(key);
        const Owned application = domain();
        CFPreferencesSetValue(asString(name), value, asString(application), kCFPreferencesCurrentUser,
                              kCFPreferencesAnyHost);
        CFPreferencesSynchronize(asString(application), kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    }
};

} // namespace

std::unique_ptr<PreferencesStore> openUserPreferences() {
    return std::make_unique<UserPreferences>();
}
