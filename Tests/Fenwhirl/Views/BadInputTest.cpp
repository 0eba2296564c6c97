// Input that no sane machine gives: thirty fans and 500 sensors, names of 200 characters, readings that are not numbers or
// have no end. Whatever is shown, its coordinates are finite, nothing leaves the card or the window that it belongs to, and
// no text is cut without an ellipsis or lies over another. A warning of Qt fails each of these tests, too.

#include "Fenwhirl/Views/SensorList.h"
#include "ShownText.h"
#include "Stage.h"

#include <QQuickItem>
#include <QTest>

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double largestOfController = static_cast<double>(std::numeric_limits<float>::max());
constexpr std::array badSpeeds = {noNumber, infinity, -infinity, largestOfController, -1.0};

// 200 characters each.
QStringList longNames() {
    const auto repeated = [](const QString& part) { return part.repeated(200).first(200); };
    return {repeated(QStringLiteral("W")), repeated(QStringLiteral("Carte graphique ")),
            repeated(QStringLiteral("<b><img src=\"http://localhost/x.png\"></b>&amp;")),
            repeated(QString::fromUtf8("ß字\u202Eabc\u202C"))};
}

std::string printed(double number) {
    return QString::number(number).toStdString();
}

bool isA(const QQuickItem& item, const char* type) {
    for (const QMetaObject* at = item.metaObject(); at != nullptr; at = at->superClass()) {
        if (QByteArrayView(at->className()).startsWith(type)) {
            return true;
        }
    }
    return false;
}

QString nameOf(const QQuickItem& item) {
    return QStringLiteral("%1 \"%2\"")
        .arg(QString::fromLatin1(item.metaObject()->className()), item.property("text").toString());
}

// Describes each visible item without finite geometry, or that leaves `within`: the card that contains it, otherwise the
// window. The bubble and the shadow of a control may leave a card by `allowed`, but not by its whole padding.
void collectFaults(const QQuickItem& item, const QRectF& within, QStringList& into) {
    constexpr double allowed = 12;
    if (!item.isVisible() || item.opacity() == 0 || isA(item, "Fenwhirl::SoftShadow")) {
        return; // the edge of a window may cut a shadow
    }
    for (const double number : {item.x(), item.y(), item.width(), item.height(), item.implicitWidth(),
                                item.implicitHeight(), item.scale(), item.opacity()}) {
        if (!std::isfinite(number)) {
            into.append(QStringLiteral("no finite geometry: ") + nameOf(item));
            return;
        }
    }
    if (item.width() < 0 || item.height() < 0) {
        into.append(QStringLiteral("negative size: ") + nameOf(item));
    }
    const QRectF place = item.mapRectToScene(QRectF(QPointF(), item.size()));
    const QRectF room = within.adjusted(-allowed, -allowed, allowed, allowed);
    if (!place.isEmpty() && (place.left() < room.left() || place.right() > room.right() ||
                             place.top() < room.top() || place.bottom() > room.bottom())) {
        into.append(QStringLiteral("outside: %1 from %2 to %3 in %4 to %5")
                        .arg(nameOf(item))
                        .arg(place.left())
                        .arg(place.right())
                        .arg(within.left())
                        .arg(within.right()));
        return;
    }
    const bool bounds = isA(item, "Card_QMLTYPE") || item.clip();
    for (const QQuickItem* child : item.childItems()) {
        if (!item.clip()) {
            collectFaults(*child, bounds ? place : within, into);
        }
    }
}

// `within` as for shownTexts. A page is as high as it needs to be, so the window bounds its items on the left and right only.
void expectInPlace(Stage& stage, const std::string& where, double scale = 1, const QByteArray& within = {}) {
    // What follows the size of something else, as a window that follows its content, comes a frame later.
    static_cast<void>(stage.window().grabWindow());
    static_cast<void>(stage.window().grabWindow());
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return stage.window().contentItem()->size() == stage.window().size(); }));
    QStringList faults;
    collectFaults(*stage.window().contentItem(), QRectF(0, -1e6, stage.window().width(), 2e6), faults);
    const QList<ShownText> texts = shownTexts(stage.window(), within);
    EXPECT_FALSE(texts.isEmpty()) << where;
    QStringList mayBeCut;
    for (const ShownText& shown : texts) {
        // A name of three lines ends in an ellipsis, too.
        if (shown.explained || (shown.wraps && shown.text.size() >= 200)) {
            mayBeCut.append(shown.text);
        }
    }
    faults += layoutFaults(texts, mayBeCut, scale);
    for (const QString& fault : faults) {
        ADD_FAILURE() << where << ": " << fault.left(300).toStdString();
    }
}

void resize(Stage& stage, QSize size) {
    stage.window().resize(size);
    ASSERT_TRUE(QTest::qWaitFor([&] { return stage.window().contentItem()->size() == size; }));
}

FanSetting fanSetting(FanModeKind mode) {
    FanSetting setting;
    setting.mode = mode;
    return setting;
}

// A fan that runs at a constant speed and one that follows a temperature.
void setModes(Stage& stage, int fans = 2) {
    for (int fan = 0; fan < fans; ++fan) {
        stage.monitor().setSetting(fan,
                                   fanSetting(fan % 2 == 0 ? FanModeKind::constant : FanModeKind::sensor));
    }
}

// Shows `name` wherever `before` is shown.
int rename(QQuickItem& item, const QString& before, const QString& name) {
    int found = 0;
    for (const char* property : {"content", "text"}) {
        if (item.property(property).toString() == before) {
            item.setProperty(property, name);
            ++found;
            break;
        }
    }
    for (QQuickItem* child : item.childItems()) {
        found += rename(*child, before, name);
    }
    return found;
}

QList<SensorListEntry> sensorsNamed(const QString& name) {
    QList<SensorListEntry> rows;
    for (const double celsius : {noNumber, infinity, -infinity, 1e300, -1e300, 63.0}) {
        SensorListEntry row = shown({.id = QStringLiteral("T%1").arg(rows.size()),
                                     .celsius = celsius,
                                     .lowestCelsius = -infinity,
                                     .highestCelsius = infinity});
        row.name = name;
        rows.append(row);
    }
    return rows;
}

TEST(BadInput, SpeedsAndLimitsThatAreNoneFitTheCards) {
    Stage stage;
    stage.start();
    setModes(stage);
    stage.show();
    for (const Page page : {Page::fans, Page::dashboard}) {
        stage.monitor().setSelectedPage(page);
        for (const double bad : badSpeeds) {
            const std::array fans = {
                FanState{
                    .id = 0, .rpm = bad, .minRPM = 1200, .maxRPM = 6000, .target = bad, .requestedRPM = bad},
                FanState{
                    .id = 0, .rpm = 2000, .minRPM = bad, .maxRPM = 6000, .target = bad, .requestedRPM = 2000},
                FanState{
                    .id = 0, .rpm = 2000, .minRPM = 1200, .maxRPM = bad, .target = bad, .requestedRPM = 2000},
                FanState{
                    .id = 0, .rpm = bad, .minRPM = bad, .maxRPM = bad, .target = bad, .requestedRPM = bad}};
            for (std::size_t i = 0; i < fans.size(); ++i) {
                FanState other = fans[i];
                other.id = 1;
                stage.models().machine()->fans()->setFans({fans[i], other});
                expectInPlace(stage, printed(bad) + " at " + std::to_string(i));
            }
        }
    }
}

TEST(BadInput, SpeedsAndLimitsThatAreNoneFitThePanel) {
    Stage stage;
    stage.start();
    setModes(stage);
    stage.show(menuPanelFile());
    for (const double bad : badSpeeds) {
        stage.models().machine()->fans()->setFans(
            {{.id = 0, .rpm = bad, .minRPM = bad, .maxRPM = bad, .target = bad, .requestedRPM = bad},
             {.id = 1, .rpm = bad, .minRPM = 1200, .maxRPM = bad, .target = bad}});
        expectInPlace(stage, printed(bad));
    }
}

// By the real route: what the controller answers.
TEST(BadInput, AControllerThatAnswersWithSuchNumbersIsShown) {
    for (const double bad : {noNumber, infinity, -infinity, largestOfController}) {
        Stage stage;
        stage.world.smc.setNumber("TG0P", "flt ", bad);
        stage.start();
        setModes(stage);
        stage.show();
        for (const char* key : {"F0Ac", "F0Mn", "F0Mx", "F0Tg", "F1Ac", "TC0P"}) {
            stage.world.smc.setNumber(key, "flt ", bad);
        }
        for (int i = 0; i < 3; ++i) {
            stage.world.pollAfter(2);
        }
        for (const Page page : {Page::dashboard, Page::fans, Page::sensors}) {
            stage.monitor().setSelectedPage(page);
            expectInPlace(stage, printed(bad));
        }
    }
}

TEST(BadInput, ASliderOfAFanWithoutLimitsAsksForAFiniteSpeed) {
    Stage stage;
    stage.start();
    setModes(stage);
    stage.showPage(Page::fans);
    for (const double bad : {noNumber, infinity, -infinity}) {
        stage.models().machine()->fans()->setFans(
            {{.id = 0, .rpm = bad, .minRPM = bad, .maxRPM = bad, .target = bad}});
        QAccessibleValueInterface* const slider = stage.range(QAccessible::Slider);
        ASSERT_NE(slider, nullptr);
        slider->setCurrentValue(slider->maximumValue());
        for (const QVariant& value :
             {slider->minimumValue(), slider->maximumValue(), slider->currentValue()}) {
            EXPECT_TRUE(std::isfinite(value.toDouble())) << bad;
        }
        EXPECT_TRUE(std::isfinite(stage.monitor().setting(0).constantRPM)) << bad;
    }
}

TEST(BadInput, LongNamesOfFansFitTheCardsAndThePanel) {
    const QString given = QStringLiteral("Ventilateur gauche");
    for (const QUrl& file : {mainWindowFile(), menuPanelFile()}) {
        Stage stage;
        stage.start();
        setModes(stage);
        stage.monitor().setSelectedPage(Page::fans);
        stage.show(file);
        QString before = given;
        for (const QString& name : longNames()) {
            ASSERT_GE(rename(*stage.window().contentItem(), before, name), 1) << name.toStdString();
            for (const double scale : {1.0, 2.0}) {
                stage.setTextScale(scale);
                expectInPlace(stage, file.fileName().toStdString(), scale);
            }
            before = name;
        }
    }
}

TEST(BadInput, LongNamesOfSensorsFitTheirRows) {
    Stage stage;
    stage.show();
    for (const Page page : {Page::sensors, Page::dashboard}) {
        stage.monitor().setSelectedPage(page);
        for (const QString& name : longNames()) {
            stage.models().machine()->sensors()->setSensors(sensorsNamed(name));
            stage.models().machine()->featured()->setSensors(sensorsNamed(name));
            for (const int width : {920, 1040, 2560}) {
                resize(stage, {width, 1400});
                expectInPlace(stage, std::to_string(width));
            }
        }
    }
}

TEST(BadInput, LongNamesOfSensorsFitThePanel) {
    Stage stage;
    stage.show(menuPanelFile());
    for (const QString& name : longNames()) {
        stage.models().machine()->panelSensors()->setSensors(sensorsNamed(name));
        expectInPlace(stage, "panel");
    }
}

TEST(BadInput, LongNamesOfSensorsFitTheMenuOfACurve) {
    Stage stage;
    stage.start();
    setModes(stage);
    stage.showPage(Page::fans);
    for (const QString& name : longNames()) {
        QList<SensorState> sensors;
        for (int i = 0; i < 40; ++i) {
            sensors.append({.id = name + QString::number(i), .celsius = 50});
        }
        stage.models().machine()->sensorChoices()->setSensors(sensors);
        stage.models().machine()->fans()->at(1)->setSensorChoice(3);
        expectInPlace(stage, "picker");
        stage.click(stage.all(QAccessible::ComboBox).value(0));
        expectInPlace(stage, "menu", 1, "QQuickOverlay");
        stage.press(Qt::Key_Escape);
    }
}

TEST(BadInput, LongNamesOfTheComputerAndOfApplicationsFitTheirPages) {
    for (const QString& name : longNames()) {
        Stage stage;
        stage.computerName = name;
        stage.start();
        stage.setApps(
            {runningApp(name, 1e300, 80, true, 1e300), runningApp(name, noNumber, 81, true, infinity)});
        stage.windowSize = {920, 1400};
        stage.show();
        for (const Page page : {Page::dashboard, Page::apps, Page::settings}) {
            stage.monitor().setSelectedPage(page);
            expectInPlace(stage, rawValue(page).data());
        }
    }
}

TEST(BadInput, ThirtyFansAndFiveHundredSensorsFitWindowsOfEverySize) {
    Stage stage;
    stage.setSensors(500, 60);
    stage.start();
    setModes(stage, 10);
    stage.show();
    stage.showFans(30);
    for (const Page page : {Page::dashboard, Page::fans, Page::sensors}) {
        stage.monitor().setSelectedPage(page);
        for (const auto& [size, scale] : {std::pair(QSize(920, 560), 1.0), std::pair(QSize(2560, 1400), 1.0),
                                          std::pair(QSize(920, 560), 2.0)}) {
            resize(stage, size);
            stage.setTextScale(scale);
            expectInPlace(stage, std::to_string(size.width()) + " x " + printed(scale), scale);
        }
    }
}

TEST(BadInput, ThirtyFansFitThePanel) {
    Stage stage;
    stage.start();
    setModes(stage, 30);
    stage.show(menuPanelFile());
    stage.showFans(30);
    for (const double height : {300.0, 500.0, 900.0}) {
        stage.window().setProperty("maximumPanelHeight", height);
        for (const double scale : {1.0, 2.0}) {
            stage.setTextScale(scale);
            // The rows that are scrolled away would lie below the buttons, so only the header is read.
            expectInPlace(stage, std::to_string(height), scale, "MenuHeader");
            EXPECT_LE(stage.window().height(), height);
        }
    }
}

} // namespace

} // namespace Fenwhirl
