#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"

#import "MacTest.h"

namespace Fenwhirl {

namespace {

class SystemAppearanceTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        (void)NSApplication.sharedApplication;
    }

    // The program creates it after the application object and before the event loop runs.
    static std::unique_ptr<SystemAppearance> make() {
        return beforeTheEventLoop([] { return SystemAppearance::create(); });
    }
};

} // namespace

TEST_F(SystemAppearanceTest, IsWhatTheSystemHasAtTheStart) {
    EXPECT_FALSE(make()->isDark());
    EXPECT_FALSE(make()->prefersReducedMotion());
    FakeMac::settings().systemAppearance = QStringLiteral("NSAppearanceNameDarkAqua");
    FakeMac::settings().reducesMotion = true;
    EXPECT_TRUE(make()->isDark());
    EXPECT_TRUE(make()->prefersReducedMotion());
}

TEST_F(SystemAppearanceTest, FollowsTheSystem) {
    const auto appearance = make();
    int changes = 0;
    QObject::connect(appearance.get(), &SystemAppearance::changed, [&] { ++changes; });
    FakeMac::settings().systemAppearance = QStringLiteral("NSAppearanceNameDarkAqua");
    FakeMac::changeValue(NSApp, @"effectiveAppearance");
    EXPECT_TRUE(appearance->isDark());
    EXPECT_EQ(changes, 1);
    FakeMac::settings().reducesMotion = true;
    FakeMac::post(NSWorkspace.sharedWorkspace.notificationCenter,
                  NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification);
    EXPECT_TRUE(appearance->prefersReducedMotion());
    EXPECT_EQ(changes, 2);
}

TEST_F(SystemAppearanceTest, GivesTheChoiceToTheApplication) {
    const auto appearance = make();
    beforeTheEventLoop([&] { appearance->choose(AppearanceChoice::dark); });
    EXPECT_EQ(QString::fromNSString([static_cast<NSApplication*>(NSApp) appearance].name),
              QStringLiteral("NSAppearanceNameDarkAqua"));
    EXPECT_TRUE(appearance->isDark());
    beforeTheEventLoop([&] { appearance->choose(AppearanceChoice::light); });
    EXPECT_EQ(QString::fromNSString([static_cast<NSApplication*>(NSApp) appearance].name),
              QStringLiteral("NSAppearanceNameAqua"));
    EXPECT_FALSE(appearance->isDark());
    beforeTheEventLoop([&] { appearance->choose(AppearanceChoice::system); });
    EXPECT_EQ([static_cast<NSApplication*>(NSApp) appearance], nil);
}

TEST_F(SystemAppearanceTest, StopsListeningAtItsEnd) {
    auto appearance = make();
    EXPECT_EQ(FakeMac::valueObservers(), 1U);
    EXPECT_EQ(FakeMac::observers(), 1U);
    beforeTheEventLoop([&] { appearance.reset(); });
    EXPECT_EQ(FakeMac::valueObservers(), 0U);
    EXPECT_EQ(FakeMac::observers(), 0U);
}

} // namespace Fenwhirl
