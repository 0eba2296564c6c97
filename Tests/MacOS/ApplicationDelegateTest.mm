#import "AtStart.h"
#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"
#include "Fenwhirl/Platform/Desktop/SessionEnd.h"
#import "MacTest.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTimer>

namespace Fenwhirl {

namespace {

constexpr std::uint32_t shutDown = 0x73687574;
constexpr std::uint32_t quitAll = 0x71756961;

class ApplicationDelegateTest : public MacTest {
protected:
    static id<NSApplicationDelegate> delegate() { return AtStart::delegate(); }
};

} // namespace

TEST_F(ApplicationDelegateTest, IsThereBeforeQtLooksForOne) {
    EXPECT_TRUE(AtStart::hadDelegate());
    EXPECT_TRUE(AtStart::hadEnvironment());
    EXPECT_FALSE(AtStart::autoreleasedWithoutPool());
    EXPECT_FALSE(QGuiApplication::quitOnLastWindowClosed());
}

TEST_F(ApplicationDelegateTest, StaysWhenItsLastWindowCloses) {
    EXPECT_FALSE([delegate() applicationShouldTerminateAfterLastWindowClosed:NSApp]);
}

TEST_F(ApplicationDelegateTest, ShowsTheProgramOnReopen) {
    int shown = 0;
    ApplicationEvents::setReopenHandler([&] { ++shown; });
    EXPECT_FALSE([delegate() applicationShouldHandleReopen:NSApp hasVisibleWindows:NO]);
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE([delegate() applicationShouldHandleReopen:NSApp hasVisibleWindows:YES]);
    EXPECT_EQ(shown, 1);
    ApplicationEvents::setReopenHandler({});
}

TEST_F(ApplicationDelegateTest, HandsFansBackBeforeTheSessionEnds) {
    for (const bool asParameter : {false, true}) {
        for (const int kind : {0, 1}) {
            FakeMac::settings().hasAppleEvent = true;
            FakeMac::settings().quitReasons = {{{kind, asParameter}, shutDown}};
            int handedBack = 0;
            const SessionEnd end([&] { ++handedBack; });
            EXPECT_EQ([delegate() applicationShouldTerminate:NSApp], NSTerminateNow);
            EXPECT_EQ(handedBack, 1);
        }
    }
}

TEST_F(ApplicationDelegateTest, LeavesTheEventLoopOtherwise) {
    int handedBack = 0;
    const SessionEnd end([&] { ++handedBack; });
    for (const bool hasEvent : {false, true}) {
        FakeMac::settings().hasAppleEvent = hasEvent;
        FakeMac::settings().quitReasons = {{{1, false}, quitAll}};
        bool left = false;
        QTimer::singleShot(0, [&] {
            EXPECT_EQ([delegate() applicationShouldTerminate:NSApp], NSTerminateCancel);
            left = true;
        });
        EXPECT_EQ(QCoreApplication::exec(), 0);
        EXPECT_TRUE(left);
    }
    EXPECT_EQ(handedBack, 0);
}

} // namespace Fenwhirl
