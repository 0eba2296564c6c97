#include "Fenwhirl/Platform/Desktop/SystemAppearanceLinux.h"
#include "PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

// A settings portal that says what the test wants, or nothing at all.
class FakePortal : public QDBusVirtualObject {
public:
    uint colorScheme = 0;
    bool animations = true;
    bool answers = true;
    int asked = 0;

    explicit FakePortal() : bus_(PrivateBus::connect()) {
        bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
        bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    ~FakePortal() override {
        bus_.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        QDBusConnection::disconnectFromBus(bus_.name());
    }

    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

    void announce(uint scheme) {
        colorScheme = scheme; // whoever asks again is told the same
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme")
               << QVariant::fromValue(QDBusVariant(scheme));
        bus_.send(signal);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        ++asked;
        if (!answers)
            return true;
        const bool appearance =
            message.arguments().value(0).toString() == QStringLiteral("org.freedesktop.appearance");
        const QVariant value = appearance ? QVariant(colorScheme) : QVariant(animations);
        // Wrapped twice, as the real one does.
        connection.send(
            message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(value))))));
        return true;
    }

private:
    QDBusConnection bus_;
};

TEST(SystemAppearance, IsWhatThePortalSaysAndFollowsIt) {
    FakePortal portal;
    portal.colorScheme = 1;
    SystemAppearanceLinux appearance(PrivateBus::connect());
    EXPECT_FALSE(appearance.isDark()); // nothing was waited for
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return appearance.isDark(); }));
    portal.announce(2);
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return !appearance.isDark(); }));
    portal.announce(1);
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return appearance.isDark(); }));
}

TEST(SystemAppearance, ReadsWhetherThingsMayMove) {
    FakePortal portal;
    portal.animations = false;
    SystemAppearanceLinux appearance(PrivateBus::connect());
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return appearance.prefersReducedMotion(); }));
    EXPECT_FALSE(appearance.isDark());
}

TEST(SystemAppearance, IsLightWithoutAnAnswer) {
    FakePortal portal;
    portal.answers = false;
    SystemAppearanceLinux appearance(PrivateBus::connect());
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return portal.asked == 2; }));
    EXPECT_FALSE(appearance.isDark());
    EXPECT_FALSE(appearance.prefersReducedMotion());
}

TEST(SystemAppearance, AsksAPortalThatStartsLater) {
    SystemAppearanceLinux appearance(PrivateBus::connect());
    FakePortal portal;
    portal.colorScheme = 1;
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return appearance.isDark(); }));
}

} // namespace
