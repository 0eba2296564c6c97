// The frame of the main window: sidebar, pages, status.

#include "Stage.h"

#include <QQmlComponent>
#include <QQuickItem>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

namespace {

TEST(MainWindow, TheSidebarListsThePagesInOrder) {
    Stage stage;
    stage.show();
    QStringList titles;
    for (QAccessibleInterface* tab : stage.all(QAccessible::PageTab))
        titles.append(tab->text(QAccessible::Name));
    EXPECT_EQ(titles, QStringList({QStringLiteral("Tableau de bord"), QStringLiteral("Ventilateurs"),
                                   QStringLiteral("Capteurs"), QStringLiteral("Applications"),
                                   QStringLiteral("Préréglages"), QStringLiteral("Alertes"),
                                   QStringLiteral("Réglages")}));
}

TEST(MainWindow, AClickInTheSidebarShowsThatPageAndMarksIt) {
    Stage stage;
    stage.show();
    stage.click(QStringLiteral("Alertes"), QAccessible::PageTab);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::alerts);
    EXPECT_TRUE(stage.shows(QStringLiteral("Sois prévenu avant que ton Mac ne souffre")));
    EXPECT_TRUE(stage.find(QStringLiteral("Alertes"), QAccessible::PageTab)->state().selected);
    EXPECT_FALSE(stage.find(QStringLiteral("Tableau de bord"), QAccessible::PageTab)->state().selected);
}

TEST(MainWindow, APageChosenElsewhereIsShown) {
    Stage stage;
    stage.show();
    stage.monitor().setSelectedPage(Page::presets);
    EXPECT_TRUE(stage.shows(QStringLiteral("Un clic pour changer le comportement des ventilateurs")));
}

TEST(MainWindow, TheFootSaysHowTheMacFeels) {
    Stage stage;
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral("Tout est normal")));
    stage.world.setCelsius(85);
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("Le Mac est chaud")));
    stage.world.setCelsius(92);
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("Surchauffe")));
}

TEST(MainWindow, TheDotAtTheFootIsGreenOnlyWhileAllIsNormal) {
    Stage stage;
    stage.show();
    const auto dot = [&stage](const QString& word) { return stage.colorLeftOf(word, 20); };
    EXPECT_EQ(dot(QStringLiteral("Tout est normal")), QColor(0x5B, 0xE4, 0x9B));
    stage.world.setCelsius(85);
    stage.poll();
    EXPECT_EQ(dot(QStringLiteral("Le Mac est chaud")), QColor(0xFF, 0xB4, 0x54));
    stage.world.setCelsius(92);
    stage.poll();
    EXPECT_EQ(dot(QStringLiteral("Surchauffe")), QColor(0xFF, 0xB4, 0x54));
}

TEST(MainWindow, HasItsTitleAndNeverGetsTooSmall) {
    Stage stage;
    stage.windowSize = {1040, 680};
    stage.show();
    EXPECT_EQ(stage.window().title(), QStringLiteral("Fenwhirl"));
    EXPECT_EQ(stage.window().minimumSize(), QSize(920, 560));
}

// Whether a press here and a way of 60 points took hold of the window.
bool dragsTheWindow(Stage& stage, QPoint from) {
    QTest::mousePress(&stage.window(), Qt::LeftButton, {}, from);
    for (int way = 10; way <= 60; way += 10)
        QTest::mouseMove(&stage.window(), from + QPoint(way, way / 2));
    // The pages have such handlers as well, but for fingers.
    const auto handlers = stage.window().findChildren<QObject*>();
    const bool active = std::any_of(handlers.begin(), handlers.end(), [](const QObject* object) {
        return object->inherits("QQuickDragHandler") && object->property("active").toBool();
    });
    QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, from + QPoint(60, 30));
    return active;
}

TEST(MainWindow, IsDraggedByWhatNothingElseTakes) {
    Stage stage;
    stage.windowSize = {1040, 680};
    stage.show();
    EXPECT_TRUE(dragsTheWindow(stage, QPoint(100, 16)));  // above the product's name
    EXPECT_TRUE(dragsTheWindow(stage, QPoint(100, 560))); // between the pages and the foot
    const QRect row = stage.find(QStringLiteral("Alertes"), QAccessible::PageTab)->rect();
    EXPECT_FALSE(dragsTheWindow(stage, stage.window().mapFromGlobal(row.center())));
}

TEST(MainWindow, OpensAtItsUsualSize) {
    Stage stage;
    stage.windowSize = {};
    stage.start();
    QQmlEngine engine;
    registerViews();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine, mainWindowFile());
    const std::unique_ptr<QObject> window(component.createWithInitialProperties(
        {{QStringLiteral("models"), QVariant::fromValue(&stage.models())}}));
    ASSERT_TRUE(window);
    EXPECT_EQ(qobject_cast<QQuickWindow*>(window.get())->size(), QSize(1040, 680));
}

// Presses every control there is, in every state of the tab chain, by keyboard alone.
TEST(MainWindow, TheKeyboardReachesEveryPage) {
    Stage stage;
    stage.show();
    stage.press(Qt::Key_Tab);
    for (int i = 0; i < 40 && stage.monitor().selectedPage() != Page::fans; ++i) {
        QQuickItem* focused = stage.window().activeFocusItem();
        QAccessibleInterface* item = QAccessible::queryAccessibleInterface(focused);
        if (item != nullptr && item->text(QAccessible::Name) == QStringLiteral("Ventilateurs"))
            stage.press(Qt::Key_Space);
        else
            stage.press(Qt::Key_Tab);
    }
    EXPECT_EQ(stage.monitor().selectedPage(), Page::fans);
}

TEST(MainWindow, WhatIsAsleepHearsNothing) {
    Stage stage;
    stage.show();
    ASSERT_TRUE(stage.shows(QStringLiteral("50 °C")));
    stage.models().setAwake(false);
    stage.world.setCelsius(61);
    stage.poll();
    EXPECT_FALSE(stage.shows(QStringLiteral("Processeur (proximité) 61 °C")));
    stage.models().setAwake(true);
    EXPECT_TRUE(stage.texts().join(u' ').contains(QStringLiteral("61")));
}

} // namespace
