#include "Fenwhirl/Platform/Desktop/SystemAppearanceLinux.h"
#include "PrivateBus.h"
#include "Support/WaitUntil.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSignalSpy>

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

// A settings portal that returns the values that the test chose, or does not answer at all.
class FakePortal : public QDBusVirtualObject {
public:
    uint colorScheme = 0;
    bool animations = true;
    double textScale = 1.0;
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
        colorScheme = scheme; // returned to later requests, too
        announce(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"), scheme);
    }

    void announceTextScale(double scale) {
        textScale = scale;
        announce(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("text-scaling-factor"), scale);
    }

    void announce(const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        ++asked;
        if (!answers) {
            return true;
        }
        const QString key = message.arguments().value(1).toString();
        const QVariant value = key == QStringLiteral("color-scheme")        ? QVariant(colorScheme)
                               : key == QStringLiteral("enable-animations") ? QVariant(animations)
                                                                            : QVariant(textScale);
        // Wrapped twice, as the real portal does.
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
    EXPECT_FALSE(appearance.isDark()); // construction does not wait for an answer
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    portal.announce(2);
    ASSERT_TRUE(waitUntil([&] { return !appearance.isDark(); }));
    portal.announce(1);
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
}

TEST(SystemAppearance, ReadsWhetherThingsMayMove) {
    FakePortal portal;
    portal.animations = false;
    SystemAppearanceLinux appearance(PrivateBus::connect());
    ASSERT_TRUE(waitUntil([&] { return appearance.prefersReducedMotion(); }));
    EXPECT_FALSE(appearance.isDark());
}

TEST(SystemAppearance, IsLightWithoutAnAnswer) {
    FakePortal portal;
    portal.answers = false;
    SystemAppearanceLinux appearance(PrivateBus::connect());
    ASSERT_TRUE(waitUntil([&] { return portal.asked == 3; }));
    EXPECT_FALSE(appearance.isDark());
    EXPECT_FALSE(appearance.prefersReducedMotion());
    EXPECT_EQ(appearance.textScale(), 1.0);
}

TEST(SystemAppearance, AsksAPortalThatStartsLater) {
    SystemAppearanceLinux appearance(PrivateBus::connect());
    FakePortal portal;
    portal.colorScheme = 1;
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
}

TEST(SystemAppearance, FollowsHowLargeTextsAre) {
    FakePortal portal;
    portal.textScale = 1.25;
    SystemAppearanceLinux appearance(PrivateBus::connect());
    QSignalSpy changed(&appearance, &SystemAppearance::changed);
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 1.25; }));
    portal.announceTextScale(1.5);
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 1.5; }));
    EXPECT_EQ(changed.size(), 2);
    portal.announceTextScale(1.0);
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 1.0; }));
}

TEST(SystemAppearance, KeepsTextsWithinWhatTheWindowsHold) {
    FakePortal portal;
    portal.textScale = 1.5;
    SystemAppearanceLinux appearance(PrivateBus::connect());
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 1.5; }));
    portal.announceTextScale(3.0);
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 2.0; }));
    portal.announceTextScale(0.5);
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 1.0; }));
    portal.announceTextScale(1.25);
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 1.25; }));
    portal.announceTextScale(std::numeric_limits<double>::quiet_NaN());
    ASSERT_TRUE(waitUntil([&] { return appearance.textScale() == 1.0; }));
}

TEST(SystemAppearance, LeavesTextsThatQtHasMadeLargerAsTheyAre) {
    FakePortal portal;
    portal.colorScheme = 1;
    portal.textScale = 1.5;
    SystemAppearanceLinux appearance(PrivateBus::connect(), TextScaling::ofQt);
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    portal.announceTextScale(1.25);
    portal.announce(2); // once this has arrived, so has the change above
    ASSERT_TRUE(waitUntil([&] { return !appearance.isDark(); }));
    EXPECT_EQ(appearance.textScale(), 1.0);
}

} // namespace

} // namespace Fenwhirl
