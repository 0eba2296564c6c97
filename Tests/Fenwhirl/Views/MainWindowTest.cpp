// The frame of the main window: sidebar, page area, status.

#include "Fenwhirl/Views/Components/Palette.h"
#include "Stage.h"

#include <QQmlComponent>
#include <QQuickItem>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(MainWindow, TheSidebarListsThePagesInOrder) {
    Stage stage;
    stage.show();
    QStringList titles;
    for (QAccessibleInterface* tab : stage.all(QAccessible::PageTab)) {
        titles.append(tab->text(QAccessible::Name));
    }
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

TEST(MainWindow, TheSelectedRowAloneIsTintedAndRowsFollowTheHeader) {
    Stage stage;
    stage.showPage(Page::sensors);
    const auto color = [](PaletteColor which) { return palette(true)[static_cast<std::size_t>(which)]; };
    QList<QRect> rows;
    for (QAccessibleInterface* tab : stage.all(QAccessible::PageTab)) {
        rows.append(QRect(stage.window().mapFromGlobal(tab->rect().topLeft()), tab->rect().size()));
    }
    for (int i = 0; i < rows.size(); ++i) {
        // The header is 32 high and begins at 34. After 18 points the rows follow, each 40 high and 2 apart.
        EXPECT_EQ(rows.at(i), QRect(10, 34 + 32 + 18 + 42 * i, 188, 40));
        const QColor ground = stage.colorAt(QPoint(rows.at(i).right() - 12, rows.at(i).center().y()));
        const QColor sidebar = color(PaletteColor::sidebar);
        if (i != static_cast<int>(Page::sensors)) {
            EXPECT_EQ(ground, sidebar) << i;
            continue;
        }
        const QColor accent = color(PaletteColor::accent);
        EXPECT_NEAR(ground.red(), 0.16 * accent.red() + 0.84 * sidebar.red(), 1.5);
        EXPECT_NEAR(ground.green(), 0.16 * accent.green() + 0.84 * sidebar.green(), 1.5);
        EXPECT_NEAR(ground.blue(), 0.16 * accent.blue() + 0.84 * sidebar.blue(), 1.5);
    }
    // The emblem: a square of 32 with rounded corners, in the accent colour.
    EXPECT_EQ(stage.colorAt({18 + 3, 34 + 16}), color(PaletteColor::accent));
    EXPECT_EQ(stage.colorAt({18 + 31, 34 + 16}), color(PaletteColor::accent));
    EXPECT_EQ(stage.colorAt({18 + 33, 34 + 16}), color(PaletteColor::sidebar));
    EXPECT_EQ(stage.colorAt({18, 34}), color(PaletteColor::sidebar));
}

TEST(MainWindow, APageBegins18PointsInsideItsArea) {
    Stage stage;
    stage.show();
    for (const Page page : allPages) {
        stage.monitor().setSelectedPage(page);
        const QString name = QString::fromLatin1(rawValue(page).data());
        const QList<QAccessibleInterface*> headings = stage.all(QAccessible::Heading);
        ASSERT_FALSE(headings.isEmpty()) << qPrintable(name);
        const QPoint corner = stage.window().mapFromGlobal(headings.first()->rect().topLeft());
        EXPECT_EQ(corner, QPoint(208 + 18, 18)) << qPrintable(name);
    }
}

TEST(MainWindow, APageChosenElsewhereIsShown) {
    Stage stage;
    stage.show();
    stage.monitor().setSelectedPage(Page::presets);
    EXPECT_TRUE(stage.shows(QStringLiteral("Un clic pour changer le comportement des ventilateurs")));
}

TEST(MainWindow, TheFooterShowsTheHealthOfTheMac) {
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

// Whether a press at this point and a drag of 60 points move the window.
bool dragsTheWindow(Stage& stage, QPoint from) {
    QTest::mousePress(&stage.window(), Qt::LeftButton, {}, from);
    for (int way = 10; way <= 60; way += 10) {
        QTest::mouseMove(&stage.window(), from + QPoint(way, way / 2));
    }
    // The pages have drag handlers as well, but only for fingers.
    const auto handlers = stage.window().findChildren<QObject*>();
    const bool active = std::any_of(handlers.begin(), handlers.end(), [](const QObject* object) {
        return object->inherits("QQuickDragHandler") && object->property("active").toBool();
    });
    QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, from + QPoint(60, 30));
    return active;
}

TEST(MainWindow, WithoutATitleBarEmptyAreasDragIt) {
    Stage stage;
    stage.windowSize = {1040, 680};
    stage.show();
    const bool isMac = QSysInfo::productType() == QLatin1String("macos");
    EXPECT_EQ(dragsTheWindow(stage, QPoint(100, 16)), isMac);  // above the product name
    EXPECT_EQ(dragsTheWindow(stage, QPoint(100, 560)), isMac); // between the pages and the footer
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

TEST(MainWindow, TheKeyboardReachesEveryPage) {
    Stage stage;
    stage.show();
    for (int i = 0; i < 40 && stage.monitor().selectedPage() != Page::fans; ++i) {
        const QAccessibleInterface* item =
            QAccessible::queryAccessibleInterface(stage.window().activeFocusItem());
        stage.press(item != nullptr && item->role() == QAccessible::PageTab ? Qt::Key_Down : Qt::Key_Tab);
    }
    EXPECT_EQ(stage.monitor().selectedPage(), Page::fans);
}

TEST(MainWindow, SleepingViewsAreNotUpdated) {
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

void pressWithControl(Stage& stage, Qt::Key key) {
    QTest::keyClick(&stage.window(), key, Qt::ControlModifier);
}

TEST(MainWindow, CtrlAndADigitShowThatPage) {
    Stage stage;
    stage.showPage(Page::dashboard);
    int number = 0;
    for (const Page page : {Page::dashboard, Page::fans, Page::sensors, Page::apps, Page::presets,
                            Page::alerts, Page::settings}) {
        pressWithControl(stage, static_cast<Qt::Key>(Qt::Key_1 + number++));
        EXPECT_EQ(stage.monitor().selectedPage(), page);
    }
    pressWithControl(stage, Qt::Key_8);
    pressWithControl(stage, Qt::Key_0);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::settings);
    pressWithControl(stage, Qt::Key_2);
    pressWithControl(stage, Qt::Key_Comma);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::settings);
}

TEST(MainWindow, CtrlWClosesItAndCtrlQQuits) {
    Stage stage;
    stage.showPage(Page::fans);
    pressWithControl(stage, Qt::Key_Q);
    EXPECT_EQ(stage.timesQuit, 1);
    EXPECT_TRUE(stage.window().isVisible());
    pressWithControl(stage, Qt::Key_W);
    EXPECT_FALSE(stage.window().isVisible());
    EXPECT_EQ(stage.timesQuit, 1);
}

TEST(MainWindow, ReloadKeysChangeNothing) {
    Stage stage;
    stage.showPage(Page::fans);
    stage.click(QStringLiteral("Vitesse fixe"), QAccessible::RadioButton);
    const QStringList texts = stage.texts();
    const FanSetting setting = stage.monitor().setting(0);
    stage.press(Qt::Key_F5);
    pressWithControl(stage, Qt::Key_R);
    EXPECT_EQ(stage.texts(), texts);
    EXPECT_EQ(stage.monitor().setting(0), setting);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::fans);
}

TEST(MainWindow, BehindTheIntroductionNoPageIsChosen) {
    Stage stage;
    stage.onboarded = false;
    stage.showPage(Page::dashboard);
    pressWithControl(stage, Qt::Key_3);
    pressWithControl(stage, Qt::Key_Comma);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::dashboard);
}

} // namespace

} // namespace Fenwhirl
