// All sensors, as the page shows them and as rows of its model.

#include "Fenwhirl/Views/SensorList.h"
#include "Stage.h"
#include "Support/QtWarnings.h"

#include <QSignalSpy>

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

// Languages differ in the spaces around a range's dash.
QString withoutSpaces(QString text) {
    return text.remove(u' ');
}

TEST(SensorRow, IsHotFromEightyDegreesWhateverTheThresholds) {
    EXPECT_FALSE(shown({QStringLiteral("TC0P"), 79.9}).hot);
    EXPECT_TRUE(shown({QStringLiteral("TC0P"), 80.0}).hot);
    EXPECT_FALSE(shown({QStringLiteral("TC0P"), 60, 55, 95}).hot); // it was
}

TEST(SensorRow, IsFullFromAHundredDegrees) {
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), 50}).fraction, 0.5);
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), 100}).fraction, 1);
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), 130}).fraction, 1);
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), -5}).fraction, 0);
}

TEST(SensorRow, ShowsTheTemperatureRounded) {
    EXPECT_TRUE(shown({QStringLiteral("TC0P"), 62.5}).temperature.startsWith(QStringLiteral("63")));
}

TEST(SensorRow, MarksAPeakOfTwoDegreesOrMore) {
    const SensorState cooled = {QStringLiteral("TC0P"), 60, 55.4, 71.6};
    EXPECT_DOUBLE_EQ(shown(cooled).peak, 0.716);
    EXPECT_FALSE(shown(cooled).peakHot);
    EXPECT_EQ(withoutSpaces(shown(cooled).range), QStringLiteral("55–72°C"));
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), 60, 55, 61.9}).peak, 0);
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), 60, 55, 62}).peak, 0.62);
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), 60}).peak, 0);
    EXPECT_TRUE(shown({QStringLiteral("TC0P"), 60, 55, 80}).peakHot);
    EXPECT_DOUBLE_EQ(shown({QStringLiteral("TC0P"), 60, 55, 130}).peak, 1);
}

TEST(SensorRow, SurvivesRecordsThatAreNoNumbers) {
    constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
    constexpr double beyond = std::numeric_limits<double>::infinity();
    for (const double odd : {nowhere, beyond, -beyond}) {
        const SensorListEntry row = shown({QStringLiteral("TC0P"), odd, odd, odd});
        EXPECT_EQ(withoutSpaces(row.range), QStringLiteral("0–0°C"));
        EXPECT_GE(row.peak, 0);
        EXPECT_LE(row.peak, 1);
    }
}

TEST(SensorsSorted, AreAscendingByNameAndEqualNamesKeepTheirOrder) {
    // Both ambient sensors have the same name; the battery comes after "Air".
    const QList<SensorState> sensors = {{QStringLiteral("TB0T"), 31},
                                        {QStringLiteral("TA1P"), 25},
                                        {QStringLiteral("TA0P"), 24},
                                        {QStringLiteral("TA2P"), 23}};
    const QList<SensorListEntry> rows = shownSortedByName(sensors);
    QStringList names;
    for (const SensorListEntry& row : rows) {
        names.append(row.name);
    }
    QStringList sorted = names;
    std::stable_sort(sorted.begin(), sorted.end());
    EXPECT_EQ(names, sorted);
    QList<int> ofEqualName;
    for (const SensorListEntry& row : rows) {
        if (row.name == shown(sensors.at(1)).name) {
            ofEqualName.append(static_cast<int>(row.fraction * 100 + 0.5));
        }
    }
    QList<int> inReadingOrder;
    for (const SensorState& sensor : sensors) {
        if (shown(sensor).name == shown(sensors.at(1)).name) {
            inReadingOrder.append(static_cast<int>(sensor.celsius));
        }
    }
    EXPECT_EQ(ofEqualName, inReadingOrder);
}

TEST(SensorList, TellsOnlyOfWhatDiffers) {
    SensorList list;
    list.setSensors({shown({QStringLiteral("TC0P"), 50}), shown({QStringLiteral("TB0T"), 31})});
    QSignalSpy changed(&list, &SensorList::dataChanged);
    list.setSensors({shown({QStringLiteral("TC0P"), 50}), shown({QStringLiteral("TB0T"), 31.2})});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(changed.at(0).at(2).value<QList<int>>(), QList<int>({list.roleNames().key("fraction")}));
    list.setSensors({shown({QStringLiteral("TC0P"), 50}), shown({QStringLiteral("TB0T"), 31.2})});
    EXPECT_EQ(changed.count(), 1);
}

TEST(SensorList, SensorsComeGoAndMoveAsThemselves) {
    SensorList list;
    const SensorListEntry first = shown({QStringLiteral("TC0P"), 50});
    const SensorListEntry second = shown({QStringLiteral("TB0T"), 31});
    const SensorListEntry third = shown({QStringLiteral("TM0P"), 40});
    const int name = list.roleNames().key("name");
    const int hot = list.roleNames().key("hot");
    QSignalSpy inserted(&list, &SensorList::rowsInserted);
    QSignalSpy removed(&list, &SensorList::rowsRemoved);
    QSignalSpy moved(&list, &SensorList::rowsMoved);
    QSignalSpy changed(&list, &SensorList::dataChanged);
    QSignalSpy counted(&list, &SensorList::countChanged);
    list.setSensors({first});
    list.setSensors({second, third, first});
    ASSERT_EQ(inserted.count(), 2);
    EXPECT_EQ(inserted.at(1).mid(1), QVariantList({0, 1})); // both at once
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.data(list.index(1), name), third.name);
    EXPECT_EQ(list.data(list.index(1), hot), false);
    EXPECT_FALSE(list.data(list.index(1), list.roleNames().key("range") + 1).isValid());
    EXPECT_EQ(removed.count(), 0);
    list.setSensors({first, second, third});
    ASSERT_EQ(moved.count(), 1);
    EXPECT_EQ(list.data(list.index(0), name), first.name);
    list.setSensors({third});
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).mid(1), QVariantList({0, 1}));
    EXPECT_EQ(list.data(list.index(0), name), third.name);
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(counted.count(), 3);
    list.setSensors({});
    EXPECT_EQ(list.rowCount(), 0);
    const QtWarnings::ExpectedWarnings noSuchRow;
    EXPECT_FALSE(list.data(list.index(0), name).isValid());
}

// No controller has two sensors of the same name. If one did, no row may be lost.
TEST(SensorList, TheSameSensorTwiceIsTwoRows) {
    SensorList list;
    const SensorListEntry one = shown({QStringLiteral("TC0P"), 50});
    const SensorListEntry other = shown({QStringLiteral("TB0T"), 31});
    list.setSensors({one, one});
    EXPECT_EQ(list.count(), 2);
    list.setSensors({one, other, one});
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.data(list.index(1), list.roleNames().key("name")), other.name);
    list.setSensors({one, other});
    EXPECT_EQ(list.count(), 2);
}

TEST(SensorsPage, ListsThemByNameWithTheirCount) {
    Stage stage;
    stage.world.smc.setNumber("TB0T", "sp78", 31);
    stage.world.smc.setNumber("TM0P", "sp78", 42);
    stage.showPage(Page::sensors);
    EXPECT_TRUE(stage.shows(QStringLiteral("3 capteurs de température")));
    QStringList names;
    for (QAccessibleInterface* row : stage.all(QAccessible::ListItem)) {
        names.append(row->text(QAccessible::Name).section(u' ', 0, 0));
    }
    EXPECT_EQ(names, QStringList({QStringLiteral("Batterie"), QStringLiteral("Mémoire"),
                                  QStringLiteral("Processeur")}));
    stage.world.smc.remove("TB0T");
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("2 capteurs de température")));
}

TEST(SensorsPage, ABarIsHotFromEightyDegreesAndFullFromAHundred) {
    Stage stage;
    stage.world.smc.setNumber("TB0T", "flt ", 79.9);
    stage.world.smc.setNumber("TM0P", "flt ", 80.0);
    stage.world.smc.setNumber("TG0P", "flt ", 129.5);
    stage.showPage(Page::sensors);
    const QColor accent(0x4F, 0xC3, 0xF7);
    const QColor hot(0xFF, 0xB4, 0x54);
    const QColor track(0x2B, 0x30, 0x3A);
    // The colours just inside the two ends of a row's bar.
    const auto ends = [&stage](const QString& name) {
        for (QAccessibleInterface* row : stage.all(QAccessible::ListItem)) {
            const QRect place = row->rect().translated(-stage.window().position());
            if (row->text(QAccessible::Name).startsWith(name)) {
                return std::pair(stage.colorAt({place.left() + 156 + 5, place.center().y()}),
                                 stage.colorAt({place.right() - 52 - 6 - 5, place.center().y()}));
            }
        }
        ADD_FAILURE() << "there is no " << name.toStdString();
        return std::pair(QColor(), QColor());
    };
    EXPECT_EQ(ends(QStringLiteral("Batterie")), std::pair(accent, track));
    EXPECT_EQ(ends(QStringLiteral("Mémoire")), std::pair(hot, track));
    EXPECT_EQ(ends(QStringLiteral("Graphisme")), std::pair(hot, hot));
}

TEST(SensorsPage, TellsHowHotItWasInTheLastTenMinutes) {
    Stage stage;
    stage.showPage(Page::sensors);
    const auto row = [&stage] {
        return stage.all(QAccessible::ListItem).first()->text(QAccessible::Description);
    };
    // Whether the bar has the mark of a peak at this temperature.
    const auto marked = [&stage](double celsius) {
        const QRect place =
            stage.all(QAccessible::ListItem).first()->rect().translated(-stage.window().position());
        const int left = place.left() + 156;
        const int width = place.width() - 156 - 58;
        return stage.colorAt({left + static_cast<int>(width * celsius / 100), place.center().y()}) ==
               QColor(0x4F, 0xC3, 0xF7);
    };
    EXPECT_EQ(row(), QStringLiteral("50 – 50 °C"));
    stage.world.setCelsius(71);
    stage.world.pollAfter(2);
    stage.world.setCelsius(55);
    stage.world.pollAfter(2);
    EXPECT_EQ(row(), QStringLiteral("50 – 71 °C"));
    EXPECT_TRUE(marked(71));
    EXPECT_FALSE(marked(65));
    stage.world.pollAfter(590); // a sleep short enough for the record to be kept
    EXPECT_EQ(row(), QStringLiteral("50 – 71 °C"));
    for (int i = 0; i < 20; ++i) {
        stage.world.pollAfter(2); // the same reading again and again
    }
    EXPECT_EQ(row(), QStringLiteral("55 – 55 °C"));
    EXPECT_FALSE(marked(71));
    stage.world.setCelsius(40);
    stage.world.pollAfter(700); // a sleep too long for the record to be kept
    EXPECT_EQ(row(), QStringLiteral("40 – 40 °C"));
}

TEST(SensorsPage, SensorsOfOneNameKeepTheOrderOfTheirReadings) {
    Stage stage;
    for (const auto& [key, celsius] : {std::pair("TH0P", 25), std::pair("TH0A", 24), std::pair("TH0a", 26)}) {
        stage.world.smc.setNumber(key, "sp78", celsius);
    }
    stage.showPage(Page::sensors);
    QStringList expected;
    QString name;
    for (const SensorState& sensor : stage.monitor().sensors()) {
        const SensorListEntry row = shown(sensor);
        if (sensor.id == QStringLiteral("TH0A")) {
            name = row.name;
        }
    }
    for (const SensorState& sensor : stage.monitor().sensors()) {
        const SensorListEntry row = shown(sensor);
        if (row.name == name) {
            expected.append(row.name + u' ' + row.temperature);
        }
    }
    ASSERT_GE(expected.size(), 2) << "there must be two of one name";
    QStringList found;
    for (QAccessibleInterface* row : stage.all(QAccessible::ListItem)) {
        if (row->text(QAccessible::Name).startsWith(name)) {
            found.append(row->text(QAccessible::Name));
        }
    }
    EXPECT_EQ(found, expected);
}

TEST(SensorsPage, OfFiveHundredSensorsOnlyThoseInViewHaveRows) {
    Stage stage;
    stage.setSensors(500);
    stage.windowSize = {1040, 680};
    stage.showPage(Page::sensors);
    EXPECT_EQ(stage.models().machine()->sensors()->count(), 500);
    EXPECT_GT(stage.all(QAccessible::ListItem).size(), 15);
    EXPECT_LT(stage.all(QAccessible::ListItem).size(), 60);
}

} // namespace

} // namespace Fenwhirl
