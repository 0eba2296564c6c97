// The pages in windows of all sizes: what uses the room in a large one, and what is given up in a small one.

#include "Fenwhirl/Views/RowSlice.h"
#include "Fenwhirl/Views/SensorList.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace Fenwhirl {

namespace {

void resize(Stage& stage, int width, int height = 1400) {
    const QSize size(width, height);
    stage.window().resize(size);
    ASSERT_TRUE(waitUntil([&] { return stage.window().contentItem()->size() == size; }));
    for (int i = 0; i < 2; ++i) {
        static_cast<void>(stage.window().grabWindow()); // forces a layout
    }
}

QRect placeOf(Stage& stage, const QAccessibleInterface* item) {
    return item == nullptr ? QRect() : item->rect().translated(-stage.window().position());
}

QRect titleOf(Stage& stage) {
    return placeOf(stage, stage.all(QAccessible::Heading).value(0));
}

int sidebarOf(Stage& stage) {
    const QRect row = placeOf(stage, stage.all(QAccessible::PageTab).value(0));
    return row.left() + row.right() + 1; // the margins on both sides are equal
}

QList<QRect> rowsOf(Stage& stage) {
    QList<QRect> places;
    for (const QAccessibleInterface* row : stage.all(QAccessible::ListItem)) {
        places.append(placeOf(stage, row));
    }
    return places;
}

QStringList namesOf(Stage& stage) {
    QStringList names;
    for (const QAccessibleInterface* row : stage.all(QAccessible::ListItem)) {
        names.append(row->text(QAccessible::Name));
    }
    return names;
}

TEST(WindowSizes, TheSidebarGivesWayInNarrowWindows) {
    Stage stage;
    stage.show();
    for (const auto& [width, sidebar] : {std::pair(920, 184), std::pair(930, 194), std::pair(943, 207),
                                         std::pair(944, 208), std::pair(1040, 208)}) {
        resize(stage, width);
        EXPECT_EQ(sidebarOf(stage), sidebar) << width;
        EXPECT_EQ(titleOf(stage).left(), sidebar + 18) << width;
    }
}

TEST(WindowSizes, EveryPageStandsInTheSameFrame) {
    Stage stage;
    stage.show();
    for (const auto& [width, left] : {std::pair(1040, 226), std::pair(1680, 226), std::pair(2128, 226),
                                      std::pair(2130, 227), std::pair(2560, 208 + (2560 - 208 - 1884) / 2)}) {
        resize(stage, width);
        for (const Page page : allPages) {
            stage.monitor().setSelectedPage(page);
            static_cast<void>(stage.window().grabWindow());
            EXPECT_EQ(titleOf(stage).topLeft(), QPoint(left, 18)) << rawValue(page) << " at " << width;
        }
    }
}

TEST(WindowSizes, PagesOfTextStayAtTheLeftOfTheFrame) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.start();
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.setApps({runningApp(QStringLiteral("Blender"), 36.5, 71)});
    stage.show();
    for (const auto& [window, column] :
         {std::pair(920, 700), std::pair(980, 736), std::pair(1680, 760), std::pair(2560, 760)}) {
        resize(stage, window, 2400);
        for (const Page page : {Page::apps, Page::presets, Page::alerts, Page::settings}) {
            stage.monitor().setSelectedPage(page);
            static_cast<void>(stage.window().grabWindow());
            EXPECT_EQ(titleOf(stage).width(), column) << rawValue(page) << " at " << window;
        }
        // Their banners stay at the left, too.
        stage.monitor().setSelectedPage(Page::presets);
        static_cast<void>(stage.window().grabWindow());
        const QRect activate = placeOf(stage, stage.find(QStringLiteral("Activer"), QAccessible::Button));
        EXPECT_EQ(activate.right() + 1, titleOf(stage).right() + 1 - 20) << window;
        // Other pages fill the frame.
        stage.monitor().setSelectedPage(Page::fans);
        static_cast<void>(stage.window().grabWindow());
        EXPECT_EQ(titleOf(stage).width(), std::min(window - sidebarOf(stage) - 36, 1884)) << window;
    }
}

TEST(WindowSizes, InTheSmallestWindowBothFansStandSideBySide) {
    Stage stage;
    stage.show();
    resize(stage, 920, 560);
    QList<QRect> cards;
    for (const QAccessibleInterface* group : stage.all(QAccessible::Grouping)) {
        if (group->text(QAccessible::Name).startsWith(QStringLiteral("Ventilateur"))) {
            cards.append(placeOf(stage, group));
        }
    }
    ASSERT_EQ(cards.size(), 2);
    EXPECT_EQ(cards.at(0).top(), cards.at(1).top());
    EXPECT_EQ(cards.at(0).width(), 341);
    EXPECT_EQ(cards.at(1).right() + 1, 920 - 18);
    // The dashboard's bars are 88 long: rows of 302, minus the columns of 150 and 52 and the spacing.
    EXPECT_EQ(rowsOf(stage).first().width(), 302);
}

// Counts the coloured pixels between two rows of the sensors' card, where only the lines of a scale are
// drawn.
int colouredPixelsBetweenRows(Stage& stage) {
    const QList<QRect> rows = rowsOf(stage);
    const QImage picture = stage.window().grabWindow();
    const int y = rows.at(1).bottom();
    if (y >= picture.height()) {
        return -1;
    }
    int ink = 0;
    for (int x = rows.at(1).left() + 156; x < rows.at(1).right() - 40; ++x) {
        ink += picture.pixelColor(x, y) == picture.pixelColor(rows.at(1).left() + 1, y) ? 0 : 1;
    }
    return ink;
}

TEST(WindowSizes, TheDashboardsBarsHaveAScaleWhereTheyAreLong) {
    Stage stage;
    stage.setSensors(6);
    stage.show();
    // The window's width minus sidebar, margins, the chart's card and its spacing, padding and columns.
    constexpr int besideBars = 208 + 36 + 340 + 18 + 40 + 156 + 58;
    resize(stage, besideBars + 359);
    EXPECT_EQ(colouredPixelsBetweenRows(stage), 0);
    resize(stage, besideBars + 360);
    EXPECT_EQ(colouredPixelsBetweenRows(stage), 6); // 0, 20, 40, 60, 80 and 100
    resize(stage, 2560);
    EXPECT_EQ(colouredPixelsBetweenRows(stage), 6);
    for (const QRect& row : rowsOf(stage)) {
        EXPECT_EQ(row.height(), 33);
    }
    resize(stage, 1040);
    EXPECT_EQ(colouredPixelsBetweenRows(stage), 0);
}

TEST(WindowSizes, SensorsHaveColumnsOfAtLeastTwelveRowsAndFourHundredPoints) {
    for (const auto& [count, window, columns] :
         {std::tuple(23, 2560, 1), std::tuple(24, 2560, 2), std::tuple(27, 2560, 2), std::tuple(35, 2560, 2),
          std::tuple(36, 2560, 3), std::tuple(70, 2560, 3), std::tuple(70, 1040, 1), std::tuple(27, 1680, 2),
          // 208 for the sidebar, 36 and 40 around the columns, 40 between them.
          std::tuple(70, 208 + 76 + 839, 1), std::tuple(70, 208 + 76 + 840, 2),
          std::tuple(70, 208 + 76 + 1279, 2), std::tuple(70, 208 + 76 + 1280, 3)}) {
        Stage stage;
        stage.setSensors(count);
        stage.windowSize = {window, 2600};
        stage.showPage(Page::sensors);
        resize(stage, window, 2600);
        const QList<QRect> rows = rowsOf(stage);
        ASSERT_EQ(rows.size(), count);
        QList<int> lefts;
        for (const QRect& row : rows) {
            if (!lefts.contains(row.left())) {
                lefts.append(row.left());
            }
            EXPECT_EQ(row.height(), 24);
        }
        EXPECT_EQ(lefts.size(), columns) << count << " in " << window;
        EXPECT_EQ(rows.at(1).top() - rows.at(0).top(), 32);
        // The last column ends at the card's padding.
        EXPECT_EQ(rows.last().right(), titleOf(stage).right() - 20) << count << " in " << window;
        for (qsizetype i = 1; i < lefts.size(); ++i) {
            EXPECT_NEAR(lefts.at(i) - lefts.at(i - 1) - rows.first().width(), 40, 1);
        }
    }
}

TEST(WindowSizes, SensorsAreReadColumnAfterColumn) {
    Stage stage;
    stage.setSensors(40);
    stage.windowSize = {2560, 2600};
    stage.showPage(Page::sensors);
    resize(stage, 2560, 2600);
    const QStringList three = namesOf(stage);
    const QList<QRect> places = rowsOf(stage);
    ASSERT_EQ(places.size(), 40);
    // The columns are filled from top to bottom: fourteen, fourteen and twelve.
    EXPECT_EQ(places.at(13).left(), places.at(0).left());
    EXPECT_GT(places.at(14).left(), places.at(0).left());
    EXPECT_EQ(places.at(14).top(), places.at(0).top());
    EXPECT_EQ(places.at(28).top(), places.at(0).top());
    // Changing the number of columns must not change what a screen reader finds.
    resize(stage, 1040, 2600);
    EXPECT_EQ(namesOf(stage), three);
    EXPECT_EQ(
        std::count_if(three.begin(), three.end(), [&](const QString& name) { return name == three.first(); }),
        1);
}

TEST(WindowSizes, SensorsThatComeAndGoFindTheirColumns) {
    Stage stage;
    stage.setSensors(23);
    stage.windowSize = {2560, 2600};
    stage.showPage(Page::sensors);
    resize(stage, 2560, 2600);
    EXPECT_EQ(rowsOf(stage).last().left(), rowsOf(stage).first().left());
    // The controller's keys are enumerated once, when it is opened. A sensor that appears later must have
    // existed then.
    stage.world.smc.remove("T101");
    stage.poll();
    static_cast<void>(stage.window().grabWindow());
    EXPECT_EQ(rowsOf(stage).size(), 22);
    stage.world.smc.setNumber("T101", "flt ", 33);
    stage.poll();
    static_cast<void>(stage.window().grabWindow());
    EXPECT_EQ(rowsOf(stage).size(), 23);
}

TEST(WindowSizes, OfFiveHundredSensorsInColumnsOnlyThoseInViewHaveRows) {
    Stage stage;
    stage.setSensors(500);
    stage.windowSize = {2560, 1400};
    stage.showPage(Page::sensors);
    EXPECT_GT(rowsOf(stage).size(), 3 * 30);
    EXPECT_LT(rowsOf(stage).size(), 3 * 80);
    for (int i = 0; i < 8; ++i) {
        stage.press(Qt::Key_PageDown);
        static_cast<void>(stage.window().grabWindow());
    }
    const QList<QRect> rows = rowsOf(stage);
    EXPECT_LT(rows.size(), 3 * 80);
    const int end = std::max_element(rows.begin(), rows.end(), [](const QRect& a, const QRect& b) {
                        return a.bottom() < b.bottom();
                    })->bottom();
    EXPECT_EQ(end + 1, 1400 - 18 - 20);
}

TEST(WindowSizes, WithTextsOfTwiceTheSizeTheSmallestWindowHasOneColumn) {
    Stage stage;
    stage.setSensors(40);
    stage.show();
    stage.setTextScale(2);
    resize(stage, 920, 560);
    EXPECT_EQ(sidebarOf(stage), 184 + 112);
    const QRect chart = placeOf(stage, stage.all(QAccessible::Chart).value(0));
    EXPECT_EQ(chart.width(), 920 - 296 - 36 - 40); // the plot has the full width of the card
    EXPECT_GT(rowsOf(stage).first().top(), chart.bottom());
    stage.monitor().setSelectedPage(Page::sensors);
    static_cast<void>(stage.window().grabWindow());
    const QList<QRect> rows = rowsOf(stage);
    EXPECT_EQ(rows.first().left(), rows.last().left());
    stage.setTextScale(1);
}

TEST(RowSlice, ShowsItsPartOfAListThatGrowsAndShrinks) {
    SensorList source;
    QList<SensorListEntry> sensors;
    for (int i = 0; i < 10; ++i) {
        sensors.append(shown({QStringLiteral("T%1").arg(i, 3, 10, QLatin1Char('0')), 30.0 + i}));
    }
    source.setSensors(sensors);
    RowSlice slice;
    slice.setSourceModel(&source);
    EXPECT_EQ(slice.rowCount(), 0);
    slice.setFirst(4);
    slice.setRows(4);
    ASSERT_EQ(slice.rowCount(), 4);
    const int temperature = source.roleNames().key("temperature");
    EXPECT_EQ(slice.data(slice.index(0, 0), temperature), QStringLiteral("34 °C"));
    EXPECT_EQ(slice.data(slice.index(3, 0), temperature), QStringLiteral("37 °C"));
    EXPECT_EQ(slice.roleNames(), source.roleNames());
    // It only announces changes within its own part.
    QSignalSpy changed(&slice, &RowSlice::dataChanged);
    sensors[0].temperature = QStringLiteral("99 °C");
    sensors[5].temperature = QStringLiteral("99 °C");
    source.setSensors(sensors);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.first().first().toModelIndex().row(), 1);
    source.setSensors(sensors.mid(0, 6));
    EXPECT_EQ(slice.rowCount(), 2);
    source.setSensors(sensors);
    EXPECT_EQ(slice.rowCount(), 4);
    slice.setFirst(8);
    EXPECT_EQ(slice.rowCount(), 2);
}

TEST(RowSlice, KeepsItsPartWhenRowsComeAndGoBeforeIt) {
    SensorList source;
    QList<SensorListEntry> sensors;
    for (int i = 0; i < 10; ++i) {
        sensors.append(shown({QStringLiteral("T%1").arg(i, 3, 10, QLatin1Char('0')), 30.0 + i}));
    }
    source.setSensors(sensors);
    RowSlice first;
    RowSlice second;
    for (RowSlice* const slice : {&first, &second}) {
        slice->setSourceModel(&source);
        slice->setRows(5);
    }
    second.setFirst(5);
    const int temperature = source.roleNames().key("temperature");
    sensors.insert(2, shown({QStringLiteral("Tnew"), 20.0}));
    source.setSensors(sensors);
    EXPECT_EQ(first.rowCount(), 5);
    ASSERT_EQ(second.rowCount(), 5);
    EXPECT_EQ(second.data(second.index(0, 0), temperature), QStringLiteral("34 °C"));
    sensors.remove(0, 2);
    source.setSensors(sensors);
    EXPECT_EQ(first.rowCount(), 5);
    ASSERT_EQ(second.rowCount(), 4);
    EXPECT_EQ(second.data(second.index(0, 0), temperature), QStringLiteral("36 °C"));
}

} // namespace

} // namespace Fenwhirl
