// The calls by which the system learns about the main window and the kind of program that owns it, and their
// order. On a Mac they decide whether there is a Dock icon and what the window looks like; elsewhere they do
// nothing.

#include "Life.h"
#include "Support/WaitUntil.h"

#include <QGuiApplication>
#include <QStringList>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>
#include <optional>
#include <utility>

namespace Fenwhirl {

namespace {

const QStringList opened = {QStringLiteral("regular"), QStringLiteral("front"), QStringLiteral("configure")};

class WindowPolicy : public testing::Test {
protected:
    QStringList told; // since the last query
    bool pointerLeads = false;
    bool asksWhereToSave = false;

    WindowSystem system() {
        return {
            .configure =
                [this](QWindow& window) {
                    // The native window must exist: it is what gets configured.
                    told.append(window.handle() != nullptr ? QStringLiteral("configure")
                                                           : QStringLiteral("too early"));
                },
            .setRegular = [this] { told.append(QStringLiteral("regular")); },
            .setAccessory = [this] { told.append(QStringLiteral("accessory")); },
            .bringToFront =
                [this](QWindow& window, const QString& token) {
                    told.append(QStringLiteral("front"));
                    MainWindowBehaviour::bringToFront(window, token);
                },
            .focusFollowsPointer = [this] { return pointerLeads; },
            .isAskingSavePath = [this] { return asksWhereToSave; },
        };
    }

    QStringList takeCalls() { return std::exchange(told, {}); }

    // Opens this program's panel and then gives another window the focus.
    static void leavePanel(Life& life, bool reached) {
        life.windows->togglePanel(QRect(400, 0, 30, 24));
        QQuickWindow* panel = life.windows->panel();
        ASSERT_TRUE(QTest::qWaitForWindowActive(panel));
        if (reached) {
            QEnterEvent come(QPointF(9, 9), QPointF(9, 9), QPointF(9, 9));
            QCoreApplication::sendEvent(panel, &come);
        }
        QWindow another;
        another.show();
        another.requestActivate();
        ASSERT_TRUE(waitUntil([&] { return !panel->isActive(); }));
    }
};

// On macOS, Qt resets the title bar whenever the window enters or leaves full screen.
TEST_F(WindowPolicy, ConfiguresTheWindowAgainWhenItFillsTheScreenAndWhenItNoLongerDoes) {
    Life life(true, system());
    life.windows->openMain();
    takeCalls();
    life.windows->main()->setWindowState(Qt::WindowFullScreen);
    EXPECT_TRUE(takeCalls().contains(QStringLiteral("configure")));
    life.windows->main()->setWindowState(Qt::WindowNoState);
    EXPECT_TRUE(takeCalls().contains(QStringLiteral("configure")));
}

TEST_F(WindowPolicy, TheFirstLaunchIsOneOfARegularProgram) {
    Life life(false, system());
    life.delegate->applicationDidFinishLaunching();
    EXPECT_EQ(takeCalls().mid(0, 3), opened);
}

TEST_F(WindowPolicy, ALaterLaunchIsOneOfAnAccessory) {
    Life life(true, system());
    life.delegate->applicationDidFinishLaunching();
    EXPECT_EQ(takeCalls(), QStringList(QStringLiteral("accessory")));
}

TEST_F(WindowPolicy, ClosingLeavesAnAccessoryAndReopeningMakesANewWindow) {
    Life life(true, system());
    life.windows->openMain();
    for (int i = 0; i < 2; ++i) {
        told.clear();
        life.windows->main()->close();
        QStringList closed = takeCalls();
        closed.removeDuplicates();
        EXPECT_EQ(closed, QStringList(QStringLiteral("accessory")));
        life.windows->openMain();
        // Closing destroyed the native window; this one is new.
        EXPECT_EQ(takeCalls().mid(0, 3), opened);
    }
}

TEST_F(WindowPolicy, AWindowThatIsOpenIsOnlyRaised) {
    Life life(true, system());
    life.windows->openMain();
    told.clear();
    life.windows->openMain();
    EXPECT_EQ(takeCalls(), opened.mid(0, 2));
}

TEST_F(WindowPolicy, AWindowThatBecomesActiveIsOneOfARegularProgram) {
    Life life(true, system());
    life.windows->openMain();
    ASSERT_TRUE(QTest::qWaitForWindowActive(life.windows->main()));
    QWindow another;
    another.show();
    another.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    told.clear();
    life.windows->main()->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(life.windows->main()));
    EXPECT_EQ(takeCalls(), QStringList(QStringLiteral("regular")));
}

TEST_F(WindowPolicy, ThePanelOfAnAccessoryChangesNothing) {
    Life life(true, system());
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    EXPECT_EQ(takeCalls(), QStringList());
}

TEST_F(WindowPolicy, OpeningTheWindowFromThePanelMakesItARegularProgramForGood) {
    Life life(true, system());
    life.windows->openMain();
    life.windows->main()->close();
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    ASSERT_TRUE(life.windows->panel()->isVisible());
    told.clear();
    life.windows->openMain(); // as the panel closes, no window is shown for a moment
    const QStringList all = takeCalls();
    EXPECT_LT(all.lastIndexOf(QStringLiteral("accessory")), all.indexOf(QStringLiteral("regular")));
}

TEST_F(WindowPolicy, ThePanelClosesWhenItLosesTheFocus) {
    Life life(true, system());
    leavePanel(life, false);
    EXPECT_FALSE(life.windows->panel()->isVisible());
}

TEST_F(WindowPolicy, WithFocusFollowingThePointerThePanelStaysOpenUntilEntered) {
    pointerLeads = true;
    for (const bool reached : {false, true}) {
        Life life(true, system());
        leavePanel(life, reached);
        EXPECT_NE(life.windows->panel()->isVisible(), reached);
    }
}

// The panel grabs the mouse. While a dialog keeps the input from it, no click would reach any program.
TEST_F(WindowPolicy, ClickingTheItemBringsAnOpenAlertForwardAndNoPanel) {
    Life life(true, system());
    life.windows->showAlert({}, [] {});
    takeCalls();
    Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24), QStringLiteral("token"));
    EXPECT_EQ(takeCalls(), QStringList(QStringLiteral("front")));
    EXPECT_EQ(life.windows->panel(), nullptr);
    QWindow* const alert = QGuiApplication::modalWindow();
    ASSERT_NE(alert, nullptr);
    alert->close();
    Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24), {});
    ASSERT_NE(life.windows->panel(), nullptr);
    EXPECT_TRUE(life.windows->panel()->isVisible());
}

TEST_F(WindowPolicy, ThePanelStaysClosedWhileTheUserIsAskedWhereToSave) {
    Life life(true, system());
    asksWhereToSave = true;
    Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24), {});
    EXPECT_EQ(life.windows->panel(), nullptr);
    EXPECT_EQ(takeCalls(), QStringList());
    asksWhereToSave = false;
    Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24), {});
    ASSERT_NE(life.windows->panel(), nullptr);
    EXPECT_TRUE(life.windows->panel()->isVisible());
}

TEST_F(WindowPolicy, ThePanelIsClosedBeforeTheUserIsAskedWhereToSave) {
    Life life(true, system());
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    ASSERT_TRUE(life.windows->panel()->isVisible());
    std::optional<bool> panelWasOpen;
    life.saveReport = [&](const QString& text) {
        EXPECT_FALSE(text.isEmpty());
        panelWasOpen = life.windows->panel()->isVisible();
    };
    life.windows->createReport();
    ASSERT_TRUE(waitUntil([&] { return panelWasOpen.has_value(); }));
    EXPECT_EQ(panelWasOpen, false);
}

TEST_F(WindowPolicy, AnAlertClosesThePanel) {
    Life life(true, system());
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    ASSERT_TRUE(life.windows->panel()->isVisible());
    life.windows->showAlert({}, [] {});
    EXPECT_FALSE(life.windows->panel()->isVisible());
}

TEST_F(WindowPolicy, AnyModalWindowClosesThePanel) {
    Life life(true, system());
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(life.windows->panel()));
    QWindow dialog;
    dialog.setModality(Qt::ApplicationModal);
    dialog.show();
    EXPECT_FALSE(life.windows->panel()->isVisible());
}

TEST_F(WindowPolicy, AnAlertIsOnlyRaised) {
    Life life(true, system());
    life.windows->showAlert({}, [] {});
    EXPECT_EQ(takeCalls(), QStringList(QStringLiteral("front")));
}

} // namespace

} // namespace Fenwhirl
