// Using only the keyboard: it reaches every control of every page and of the panel, and at every stop exactly
// one focus ring is visible.

#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QQuickItem>
#include <QTest>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

int ringsShown(const QQuickItem& item) {
    int rings = item.objectName() == QStringLiteral("focusRing") && item.isVisible() ? 1 : 0;
    const QList<QQuickItem*> children = item.childItems();
    for (const QQuickItem* child : children) {
        rings += ringsShown(*child);
    }
    return rings;
}

// A control as "role name". The name of a reading is replaced, because it changes while it has the focus.
QString described(const QAccessibleInterface& control) {
    const bool reading = control.role() == QAccessible::StaticText;
    return QString::number(control.role()) + u' ' +
           (reading ? QStringLiteral("reading") : control.text(QAccessible::Name));
}

// The control that has the keyboard focus.
QString focused(Stage& stage) {
    const QQuickItem* item = stage.window().activeFocusItem();
    const QAccessibleInterface* control =
        QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(item));
    if (control == nullptr) {
        return {};
    }
    return described(*control);
}

// Whether Tab stops at the control. It does not stop at members of a group that arrow keys reach.
bool isStop(const QAccessibleInterface& control) {
    const auto* item = qobject_cast<QQuickItem*>(control.object());
    return control.role() == QAccessible::ListItem ? item->hasFocus() : item->activeFocusOnTab();
}

// Everything visible that the keyboard must reach: all controls that can be used, and the readings. A group
// of choices or a list counts once.
QStringList controls(Stage& stage) {
    QStringList found;
    const QList<QAccessible::Role> roles = {
        QAccessible::Button,     QAccessible::CheckBox, QAccessible::ComboBox, QAccessible::Slider,
        QAccessible::SpinBox,    QAccessible::PageTab,  QAccessible::ListItem, QAccessible::RadioButton,
        QAccessible::StaticText, QAccessible::Chart};
    for (const QAccessible::Role role : roles) {
        for (const QAccessibleInterface* control : stage.all(role)) {
            if (control->state().focusable && !control->state().disabled && isStop(*control)) {
                found.append(described(*control));
            }
        }
    }
    found.sort();
    return found;
}

// Presses Tab until the first stop comes again, and checks the focus ring at each stop. Returns the stops in
// order.
QStringList tabStops(Stage& stage, Qt::KeyboardModifiers modifiers = {}) {
    QStringList visited;
    const QQuickItem* first = nullptr;
    for (int i = 0; i < 200; ++i) {
        QTest::keyClick(&stage.window(), modifiers ? Qt::Key_Backtab : Qt::Key_Tab, modifiers);
        const QQuickItem* now = stage.window().activeFocusItem();
        if (now == first) {
            return visited;
        }
        if (first == nullptr) {
            first = now;
        }
        visited.append(focused(stage));
        EXPECT_EQ(ringsShown(*stage.window().contentItem()), 1) << "at " << visited.last().toStdString();
    }
    ADD_FAILURE() << "Tab never comes back to where it began";
    return visited;
}

void expectEverythingIsReachable(Stage& stage) {
    const QStringList forward = tabStops(stage);
    QStringList backward = tabStops(stage, Qt::ShiftModifier);
    QStringList sorted = forward;
    sorted.sort();
    EXPECT_EQ(sorted, controls(stage)) << sorted.join(u'\n').toStdString() << "\n--- instead of\n"
                                       << controls(stage).join(u'\n').toStdString();
    backward.sort();
    EXPECT_EQ(backward, sorted);
    EXPECT_GT(forward.size(), 1);
}

AppLoad busyApp() {
    AppLoad load;
    load.id = QStringLiteral("/Applications/Firefox.app");
    load.name = QStringLiteral("Firefox");
    load.cpu = 40;
    load.pids = {80};
    load.canQuit = true;
    load.starts = {ProcessStart{}};
    return load;
}

class EveryPage : public testing::TestWithParam<Page> {};

TEST_P(EveryPage, IsReachedWholeByTabWithOneRingAtEachStop) {
    Stage stage;
    stage.world.helper.installed = false; // shows the banners with their buttons, too
    stage.start();
    FanSetting constant;
    constant.mode = FanModeKind::constant;
    stage.monitor().setSetting(0, constant);
    FanSetting sensor;
    sensor.mode = FanModeKind::sensor;
    stage.monitor().setSetting(1, sensor);
    stage.setApps({busyApp()});
    stage.poll();
    stage.showPage(GetParam());
    expectEverythingIsReachable(stage);
}

INSTANTIATE_TEST_SUITE_P(Keyboard, EveryPage, testing::ValuesIn(allPages),
                         [](const auto& page) { return std::string(rawValue(page.param)); });

TEST(KeyboardInThePanel, ReachesEverythingWithOneRingAtEachStop) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.start();
    stage.monitor().apply(Preset::game);
    stage.poll();
    stage.show(menuPanelFile());
    expectEverythingIsReachable(stage);
}

TEST(KeyboardInTheSidebar, ArrowsLeadFromPageToPage) {
    Stage stage;
    stage.show();
    stage.click(QStringLiteral("Ventilateurs"), QAccessible::PageTab);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Ventilateurs"));
    EXPECT_EQ(ringsShown(*stage.window().contentItem()), 0); // the focus came from the pointer
    stage.press(Qt::Key_Down);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Capteurs"));
    EXPECT_EQ(stage.monitor().selectedPage(), Page::sensors);
    EXPECT_EQ(ringsShown(*stage.window().contentItem()), 1);
    for (int i = 0; i < 3; ++i) {
        stage.press(Qt::Key_Up);
    }
    EXPECT_EQ(stage.monitor().selectedPage(), Page::dashboard); // the arrow keys stop there
    stage.press(Qt::Key_End);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::settings);
    stage.press(Qt::Key_Home);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Tableau de bord"));
    EXPECT_EQ(stage.monitor().selectedPage(), Page::dashboard);
}

TEST(KeyboardInTheSidebar, AShortcutToAPageMovesTheFocusToItsRow) {
    Stage stage;
    stage.show();
    stage.click(QStringLiteral("Ventilateurs"), QAccessible::PageTab);
    QTest::keyClick(&stage.window(), Qt::Key_6, Qt::ControlModifier);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::alerts);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Alertes"));
    stage.press(Qt::Key_Down);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::settings);
}

// The vertical position of the page, read from its title.
int titleTop(Stage& stage, const QString& title) {
    static_cast<void>(stage.window().grabWindow());
    const QAccessibleInterface* text = stage.find(title, QAccessible::StaticText);
    return text == nullptr ? 9999 : stage.window().mapFromGlobal(text->rect().topLeft()).y();
}

TEST(KeyboardInTheSidebar, PageKeysScrollThePageFromThereToo) {
    Stage stage;
    stage.windowSize = {1040, 560};
    stage.show();
    stage.click(QStringLiteral("Réglages"), QAccessible::PageTab);
    const QString title = QStringLiteral("Apparence");
    const int before = titleTop(stage, title);
    stage.press(Qt::Key_PageDown);
    EXPECT_LT(titleTop(stage, title), before - 100);
    stage.press(Qt::Key_PageUp);
    EXPECT_EQ(titleTop(stage, title), before);
}

// A control that disappears passes the focus on with a short delay.
void waitForFocus(Stage& stage, const QString& name) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    ASSERT_TRUE(waitUntil([&] { return focused(stage).section(u' ', 1) == name; }))
        << focused(stage).toStdString();
}

TEST(KeyboardInTheWindow, PageKeysScrollThePageFromTheBeginning) {
    Stage stage;
    stage.windowSize = {1040, 560};
    stage.showPage(Page::settings);
    waitForFocus(stage, QStringLiteral("Réglages")); // the sidebar row of the shown page
    const QString title = QStringLiteral("Apparence");
    const int before = titleTop(stage, title);
    stage.press(Qt::Key_PageDown);
    EXPECT_LT(titleTop(stage, title), before - 100);
}

TEST(KeyboardInTheWindow, WhatIsClickedTakesTheFocus) {
    Stage stage;
    stage.showPage(Page::settings);
    stage.click(QStringLiteral("Ouvrir Fenwhirl au démarrage du Mac"), QAccessible::CheckBox);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Ouvrir Fenwhirl au démarrage du Mac"));
    stage.click(QStringLiteral("Remettre les ventilateurs en automatique"));
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Remettre les ventilateurs en automatique"));
}

TEST(KeyboardInTheWindow, TheFocusGoesToTheNextControlWhenWhatHadItIsGone) {
    Stage stage;
    stage.world.helper.succeeds = false;
    stage.showPage(Page::fans);
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.click(QStringLiteral("Fermer"));
    ASSERT_EQ(stage.monitor().controlError(), QString());
    // The focus must be on the first fan's mode, not back on the window's first control.
    waitForFocus(stage, QStringLiteral("Vitesse fixe"));
}

TEST(KeyboardInTheWindow, AButtonsReplacementGetsItsFocus) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.showPage(Page::settings);
    stage.click(QStringLiteral("Activer le contrôle"));
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperInstalled(); }));
    waitForFocus(stage, QStringLiteral("Réinstaller")); // the button that replaced it
}

TEST(KeyboardInTheWindow, TheFocusStaysWithAnApplicationThatIsOvertakenAndSoDoesItsQuestion) {
    Stage stage;
    stage.start();
    const AppLoad beta = runningApp(QStringLiteral("Beta"), 40, 81, true, 100);
    AppLoad alfa = runningApp(QStringLiteral("Alfa"), 20, 82, true, 100);
    stage.setApps({beta, alfa});
    stage.showPage(Page::apps);
    for (int i = 0; i < 20 && focused(stage).section(u' ', 1) != QStringLiteral("Beta"); ++i) {
        stage.press(Qt::Key_Tab);
    }
    const QQuickItem* before = stage.window().activeFocusItem();
    alfa.cpu = 70;
    stage.setApps({alfa, beta});
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Beta"));
    EXPECT_EQ(stage.window().activeFocusItem(), before);
    stage.press(Qt::Key_Space);
    EXPECT_EQ(stage.models().apps()->questionTitle(), QStringLiteral("Fermer Beta ?"));
    stage.setApps({alfa, beta});
    stage.press(Qt::Key_Escape);
    waitForFocus(stage, QStringLiteral("Beta"));
    stage.setApps({alfa});
    waitForFocus(stage, QStringLiteral("Alfa")); // it is the last control
}

// The name of the sensor that has the focus.
QString focusedSensor(Stage& stage) {
    const QQuickItem* const item = stage.window().activeFocusItem();
    return item == nullptr ? QString() : item->property("name").toString();
}

void tabToTheSensors(Stage& stage) {
    for (int i = 0; i < 20 && focusedSensor(stage).isEmpty(); ++i) {
        stage.press(Qt::Key_Tab);
    }
    ASSERT_FALSE(focusedSensor(stage).isEmpty());
}

QString sensorNameAt(Stage& stage, int row) {
    const SensorList* const list = stage.models().machine()->sensors();
    return list->data(list->index(row, 0), list->roleNames().key("name")).toString();
}

TEST(KeyboardOnTheSensorsPage, TheFocusOfASensorGoesToThePagesRowWhenThePageIsLeft) {
    Stage stage;
    stage.showPage(Page::sensors);
    tabToTheSensors(stage);
    QTest::keyClick(&stage.window(), Qt::Key_2, Qt::ControlModifier);
    waitForFocus(stage, QStringLiteral("Ventilateurs"));
}

TEST(KeyboardOnTheSensorsPage, TheFocusStaysWithItsSensorWhileOthersComeAndGo) {
    for (const int width : {1040, 1500}) { // one column, and two
        Stage stage;
        stage.windowSize.setWidth(width);
        stage.setSensors(31);
        stage.showPage(Page::sensors);
        tabToTheSensors(stage);
        for (int i = 0; i < 4; ++i) {
            stage.press(Qt::Key_Down);
        }
        const QString name = focusedSensor(stage);
        const QString next = sensorNameAt(stage, 5);
        ASSERT_FALSE(name.isEmpty());
        stage.world.smc.setNumber("T101", "sp78", -1); // not a plausible temperature
        stage.poll();
        EXPECT_EQ(focusedSensor(stage), name) << width;
        stage.press(Qt::Key_Down);
        EXPECT_EQ(focusedSensor(stage), next) << width;
        stage.world.smc.setNumber("T101", "sp78", 31);
        stage.poll();
        EXPECT_EQ(focusedSensor(stage), next) << width;
        stage.press(Qt::Key_Up);
        EXPECT_EQ(focusedSensor(stage), name) << width;
        stage.press(Qt::Key_End);
        EXPECT_EQ(focusedSensor(stage),
                  sensorNameAt(stage, stage.models().machine()->sensors()->count() - 1));
    }
}

TEST(KeyboardOnTheSensorsPage, RightAndLeftGoToTheNextColumn) {
    Stage stage;
    stage.setSensors(40);
    stage.windowSize = {1500, 900};
    stage.showPage(Page::sensors);
    tabToTheSensors(stage);
    stage.press(Qt::Key_Home);
    stage.press(Qt::Key_Right);
    EXPECT_EQ(focusedSensor(stage), sensorNameAt(stage, 20)); // of forty, in two columns
    stage.press(Qt::Key_Down);
    stage.press(Qt::Key_Left);
    EXPECT_EQ(focusedSensor(stage), sensorNameAt(stage, 1));
}

TEST(KeyboardOnTheSensorsPage, TheFocusedSensorIsScrolledIntoView) {
    Stage stage;
    stage.setSensors(101);
    stage.windowSize = {920, 560};
    stage.showPage(Page::sensors);
    tabToTheSensors(stage);
    const auto place = [&stage] {
        const QQuickItem* const item = stage.window().activeFocusItem();
        return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    };
    const QRectF window(0, 0, 920, 560);
    for (const Qt::Key key : {Qt::Key_End, Qt::Key_Home}) {
        stage.press(key);
        EXPECT_EQ(focusedSensor(stage), sensorNameAt(stage, key == Qt::Key_End ? 100 : 0));
        EXPECT_TRUE(QTest::qWaitFor([&] { return window.contains(place()); })) << key;
    }
}

TEST(KeyboardInAMenu, AKeyThatIsStillHeldAfterOpeningItChoosesNothing) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(0, {.mode = FanModeKind::constant, .constantRPM = 2500, .sensorKey = {}});
    stage.show();
    for (int i = 0; i < 20 && focused(stage).section(u' ', 1) != QStringLiteral("Préréglage"); ++i) {
        stage.press(Qt::Key_Tab);
    }
    stage.press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !stage.all(QAccessible::MenuItem).isEmpty(); }));
    for (int i = 0; i < 3; ++i) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(&stage.window(), &held);
    }
    EXPECT_FALSE(stage.all(QAccessible::MenuItem).isEmpty());
    EXPECT_EQ(stage.monitor().setting(0).mode, FanModeKind::constant);
    stage.press(Qt::Key_Return);
    EXPECT_EQ(stage.monitor().setting(0).mode, FanModeKind::automatic);
}

TEST(KeyboardInThePanel, ArrowsChooseFromPresetToPresetAndSpaceTheOneThatHasTheFocus) {
    Stage stage;
    stage.show(menuPanelFile());
    waitForFocus(stage, QStringLiteral("Auto")); // the first control, and the first of its group
    EXPECT_EQ(stage.monitor().activePreset(), std::nullopt);
    stage.press(Qt::Key_Space);
    EXPECT_EQ(stage.monitor().activePreset(), Preset::automatic);
    stage.press(Qt::Key_Right);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Silencieux"));
    EXPECT_EQ(stage.monitor().activePreset(), Preset::silent);
    stage.press(Qt::Key_Right);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Équilibré"));
    EXPECT_EQ(stage.monitor().activePreset(), Preset::balanced);
    stage.press(Qt::Key_Tab);
    EXPECT_EQ(focused(stage).section(u' ', 1),
              QStringLiteral("Auto")); // the left fan's button for automatic control
    stage.press(Qt::Key_Tab);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Ventilateur gauche"));
    stage.press(Qt::Key_Backtab);
    stage.press(Qt::Key_Backtab);
    EXPECT_EQ(focused(stage).section(u' ', 1), QStringLiteral("Équilibré"));
}

TEST(KeyboardInThePanel, ArrowsMoveAFansSpeedByOneStep) {
    Stage stage;
    stage.show(menuPanelFile());
    while (focused(stage).section(u' ', 1) != QStringLiteral("Ventilateur gauche")) {
        stage.press(Qt::Key_Tab);
    }
    stage.press(Qt::Key_Right);
    EXPECT_EQ(stage.monitor().setting(0).mode, FanModeKind::constant);
    EXPECT_EQ(stage.monitor().setting(0).constantRPM, 2050);
    stage.press(Qt::Key_PageDown);
    EXPECT_EQ(stage.monitor().setting(0).constantRPM, 1550);
}

TEST(KeyboardInThePanel, ReturnPressesItsButtonsAndEscapeClosesFromAnywhere) {
    Stage stage;
    stage.show(menuPanelFile());
    while (focused(stage).section(u' ', 1) != QStringLiteral("Ouvrir Fenwhirl")) {
        stage.press(Qt::Key_Tab);
    }
    stage.press(Qt::Key_Return);
    EXPECT_EQ(stage.timesOpenedMain, 1);
    while (focused(stage).section(u' ', 1) != QStringLiteral("Ventilateur droit")) {
        stage.press(Qt::Key_Tab);
    }
    stage.press(Qt::Key_Escape);
    EXPECT_FALSE(stage.window().isVisible());
}

TEST(KeyboardInADialog, StaysInsideIt) {
    Stage stage;
    stage.start();
    stage.setApps({busyApp()});
    stage.showPage(Page::apps);
    stage.click(QStringLiteral("Firefox"), QAccessible::CheckBox);
    QStringList visited;
    for (int i = 0; i < 6; ++i) {
        stage.press(Qt::Key_Tab);
        visited.append(focused(stage).section(u' ', 1));
        EXPECT_EQ(ringsShown(*stage.window().contentItem()), 1) << visited.last().toStdString();
    }
    visited.removeDuplicates();
    visited.sort();
    EXPECT_EQ(visited, QStringList({QStringLiteral("Annuler"), QStringLiteral("Fermer"),
                                    QStringLiteral("Forcer la fermeture")}));
    EXPECT_TRUE(stage.quitRequests.empty());
}

TEST(FocusRing, IsNotShownToThoseWhoUseThePointer) {
    Stage stage;
    stage.showPage(Page::settings);
    stage.press(Qt::Key_Tab);
    ASSERT_EQ(ringsShown(*stage.window().contentItem()), 1);
    stage.click(QStringLiteral("Clair"), QAccessible::RadioButton);
    EXPECT_EQ(ringsShown(*stage.window().contentItem()), 0);
    stage.press(Qt::Key_Tab);
    EXPECT_EQ(ringsShown(*stage.window().contentItem()), 1);
}

} // namespace

} // namespace Fenwhirl
