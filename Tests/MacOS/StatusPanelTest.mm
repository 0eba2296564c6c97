#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

#import "Frameworks/NativeWindows.h"
#import "MacTest.h"

#include <QCursor>
#include <QVariant>
#include <QWindow>

#include <unistd.h>

namespace Fenwhirl {

namespace {

class StatusPanelTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        panel.setFlags(statusPanelFlags());
        prepareStatusPanel(panel);
        QCursor::setPos(200, 300);
    }

    std::unique_ptr<OutsideClickMonitor> watch() {
        return beforeTheEventLoop([this] {
            return OutsideClickMonitor::begin(panel, QRect(1000, 0, 60, 24), [this] { ++outside; });
        });
    }

    QWindow panel;
    int outside = 0;
};

} // namespace

TEST_F(StatusPanelTest, TakesKeyboardFocusWithoutActivatingTheApplication) {
    beforeTheEventLoop([&] { showStatusPanel(panel, {}); });
    NSWindow* native = FakeMac::nativeWindow(panel);
    EXPECT_TRUE([native isKindOfClass:[NSPanel class]]);
    EXPECT_NE(native.styleMask & NSWindowStyleMaskNonactivatingPanel, 0U);
    EXPECT_FALSE(native.hidesOnDeactivate);
    EXPECT_TRUE(panel.property("_q_macAlwaysShowToolWindow").toBool());
    EXPECT_EQ(native.level, NSPopUpMenuWindowLevel);
    EXPECT_NE(native.collectionBehavior & NSWindowCollectionBehaviorFullScreenAuxiliary, 0U);
    EXPECT_NE(native.collectionBehavior & NSWindowCollectionBehaviorCanJoinAllSpaces, 0U);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_THAT(FakeMac::journal(), testing::ElementsAre("-[NSWindow makeKeyAndOrderFront:]"));
}

TEST_F(StatusPanelTest, ReportsPressesInOtherApplications) {
    const auto watching = watch();
    for (const NSEventMask button :
         {NSEventMaskLeftMouseDown, NSEventMaskRightMouseDown, NSEventMaskOtherMouseDown}) {
        FakeMac::pressElsewhere(button);
    }
    EXPECT_EQ(outside, 3);
    FakeMac::pressElsewhere(NSEventMaskLeftMouseUp);
    EXPECT_EQ(outside, 3);
}

TEST_F(StatusPanelTest, IgnoresPressesOnTheStatusItem) {
    const auto watching = watch();
    QCursor::setPos(1030, 12);
    FakeMac::pressElsewhere();
    EXPECT_EQ(outside, 0);
}

TEST_F(StatusPanelTest, ReportsPressesInOurOtherVisibleWindowsOnly) {
    showStatusPanel(panel, {});
    QWindow main;
    main.show();
    QWindow hidden;
    const auto watching = watch();
    EXPECT_TRUE(FakeMac::pressIn(FakeMac::nativeWindow(panel)));
    EXPECT_TRUE(FakeMac::pressIn(nil)); // an event without a window: a press on the status item
    EXPECT_TRUE(FakeMac::pressIn(FakeMac::nativeWindow(hidden)));
    EXPECT_EQ(outside, 0);
    EXPECT_TRUE(FakeMac::pressIn(FakeMac::nativeWindow(main))) << "the press does what it does";
    EXPECT_EQ(outside, 1);
}

TEST_F(StatusPanelTest, ReportsActivationOfAnotherApplication) {
    const auto watching = watch();
    FakeMac::activateApplication(getpid());
    EXPECT_EQ(outside, 0);
    FakeMac::activateApplication(1);
    EXPECT_EQ(outside, 1);
}

TEST_F(StatusPanelTest, WatchesNothingAfterwards) {
    auto watching = watch();
    EXPECT_EQ(FakeMac::eventMonitors(), 2U);
    beforeTheEventLoop([&] { watching.reset(); });
    EXPECT_EQ(FakeMac::eventMonitors(), 0U);
    EXPECT_EQ(FakeMac::observers(), 0U);
}

TEST_F(StatusPanelTest, LivesWithoutMonitors) {
    FakeMac::settings().makesMonitors = false;
    watch().reset();
}

TEST_F(StatusPanelTest, GetsTheShadowOfItsNewShape) {
    declareShadow(panel, {});
    EXPECT_TRUE(FakeMac::journal().empty()) << "nothing is made for it";
    showStatusPanel(panel, {});
    FakeMac::journal().clear();
    beforeTheEventLoop([&] { declareShadow(panel, {}); });
    EXPECT_THAT(FakeMac::journal(), testing::ElementsAre("-[NSWindow invalidateShadow]"));
}

} // namespace Fenwhirl
