#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"

#import "Frameworks/NativeWindows.h"
#import "MacTest.h"

#include <QCoreApplication>
#include <QWindow>

namespace Fenwhirl {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MainWindowBehaviourTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        (void)NSApplication.sharedApplication;
    }

    void TearDown() override {
        QCoreApplication::processEvents(); // runs what the test has left in the event queue
        MacTest::TearDown();
    }

    QWindow window;
};

} // namespace

TEST_F(MainWindowBehaviourTest, HidesTheTitleAndKeepsTheStyleThatIsThere) {
    FakeMac::nativeWindow(window).styleMask = 15;
    beforeTheEventLoop([&] { MainWindowBehaviour::configure(window); });
    NSWindow* native = FakeMac::nativeWindow(window);
    EXPECT_EQ(native.styleMask, 15 | NSWindowStyleMaskFullSizeContentView);
    EXPECT_TRUE(native.titlebarAppearsTransparent);
    EXPECT_EQ(native.titleVisibility, NSWindowTitleHidden);
    EXPECT_TRUE(native.movableByWindowBackground);
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
TEST_F(MainWindowBehaviourTest, TellsQtToKeepTheTitleHidden) {
    const Qt::WindowFlags before = window.flags();
    beforeTheEventLoop([&] { MainWindowBehaviour::configure(window); });
    EXPECT_EQ(window.flags(), before | Qt::ExpandedClientAreaHint | Qt::NoTitleBarBackgroundHint);
}
#endif

TEST_F(MainWindowBehaviourTest, ConfiguresTheNextNativeWindowToo) {
    beforeTheEventLoop([&] { MainWindowBehaviour::configure(window); });
    FakeMac::destroyNative(window);
    beforeTheEventLoop([&] { MainWindowBehaviour::configure(window); });
    EXPECT_TRUE(FakeMac::nativeWindow(window).titlebarAppearsTransparent);
}

// The first window is configured before the event loop runs: an object that its getters autorelease would
// never be freed.
TEST_F(MainWindowBehaviourTest, ReleasesTheFirstWindow) {
    const std::size_t before = Runtime::liveObjects("NSWindow");
    beforeTheEventLoop([&] { MainWindowBehaviour::configure(window); });
    FakeMac::destroyNative(window);
    EXPECT_EQ(Runtime::liveObjects("NSWindow"), before);
}

TEST_F(MainWindowBehaviourTest, BecomesRegularOnceAndComesForward) {
    FakeMac::setSystemVersion(14);
    beforeTheEventLoop([] { MainWindowBehaviour::setRegular(); });
    EXPECT_THAT(FakeMac::journal(), ElementsAre("policy 0", "-[NSApplication activate]",
                                                "-[NSApplication activateIgnoringOtherApps:YES]"));
    FakeMac::journal().clear();
    MainWindowBehaviour::setRegular();
    EXPECT_THAT(FakeMac::journal(), IsEmpty());
}

TEST_F(MainWindowBehaviourTest, ComesForwardTheOldWayBeforeVersion14) {
    MainWindowBehaviour::setRegular();
    EXPECT_THAT(FakeMac::journal(),
                ElementsAre("policy 0", "-[NSApplication activateIgnoringOtherApps:YES]"));
}

TEST_F(MainWindowBehaviourTest, ActivatesAgainAfterTheLaunch) {
    MainWindowBehaviour::setRegular();
    FakeMac::journal().clear();
    beforeTheEventLoop([] { QCoreApplication::processEvents(); });
    EXPECT_THAT(FakeMac::journal(), ElementsAre("-[NSApplication activateIgnoringOtherApps:YES]"));
}

TEST_F(MainWindowBehaviourTest, DoesNotActivateAgainWhenActiveOrAccessory) {
    MainWindowBehaviour::setRegular();
    FakeMac::settings().isActive = true;
    FakeMac::journal().clear();
    QCoreApplication::processEvents();
    EXPECT_THAT(FakeMac::journal(), IsEmpty());
    FakeMac::settings().isActive = false;
    MainWindowBehaviour::setAccessory();
    MainWindowBehaviour::setRegular();
    MainWindowBehaviour::setAccessory();
    FakeMac::journal().clear();
    QCoreApplication::processEvents();
    EXPECT_THAT(FakeMac::journal(), IsEmpty());
}

TEST_F(MainWindowBehaviourTest, BecomesAnAccessory) {
    MainWindowBehaviour::setRegular();
    FakeMac::journal().clear();
    MainWindowBehaviour::setAccessory();
    EXPECT_THAT(FakeMac::journal(), ElementsAre("policy 1"));
}

TEST_F(MainWindowBehaviourTest, BringsTheWindowForwardBeforeTheApplication) {
    beforeTheEventLoop([&] { MainWindowBehaviour::bringToFront(window, {}); });
    EXPECT_TRUE(window.isVisible());
    EXPECT_THAT(FakeMac::journal(), ElementsAre("-[NSWindow makeKeyAndOrderFront:]",
                                                "-[NSApplication activateIgnoringOtherApps:YES]"));
}

TEST_F(MainWindowBehaviourTest, TakesAMinimisedWindowOutOfTheDockFirst) {
    FakeMac::nativeWindow(window).miniaturized = YES;
    beforeTheEventLoop([&] { MainWindowBehaviour::bringToFront(window, {}); });
    EXPECT_THAT(FakeMac::journal(),
                ElementsAre("-[NSWindow deminiaturize:]", "-[NSWindow makeKeyAndOrderFront:]",
                            "-[NSApplication activateIgnoringOtherApps:YES]"));
}

} // namespace Fenwhirl
