// The cards of the fans, on their page and on the dashboard.

#include "Fenwhirl/Localization/DrawnText.h"
#include "Fenwhirl/Localization/NumberFormat.h"
#include "ShownText.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QImage>
#include <QQuickItem>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

constexpr auto slider = QAccessible::Slider;
constexpr auto stepper = QAccessible::SpinBox;

FanSetting sensorSetting(double start = 50, double max = 90, const std::string& key = {}) {
    FanSetting setting;
    setting.mode = FanModeKind::sensor;
    setting.startTemp = start;
    setting.maxTemp = max;
    setting.sensorKey = key;
    return setting;
}

FanSetting constantSetting(double rpm) {
    FanSetting setting;
    setting.mode = FanModeKind::constant;
    setting.constantRPM = rpm;
    return setting;
}

TEST(FanCard, ShowsNameRangeAndSpeed) {
    Stage stage;
    stage.showPage(Page::fans);
    const QStringList texts = stage.texts();
    EXPECT_TRUE(texts.contains(QStringLiteral("Ventilateur gauche")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Ventilateur droit")));
    const QString joined = texts.join(u'|').remove(QChar(0x202F)).remove(u',').remove(QChar(0xA0));
    EXPECT_TRUE(joined.contains(QStringLiteral("1200 – 6000 tr/min"))) << joined.toStdString();
    EXPECT_TRUE(joined.contains(QStringLiteral("2000 tr/min"))) << joined.toStdString();
}

TEST(FanCard, ANewReadingReplacesTheSpeedInPlace) {
    Stage stage;
    stage.showPage(Page::fans);
    const FanRow* before = stage.models().machine()->fans()->at(0);
    stage.world.setFan(0, 3210);
    stage.poll();
    EXPECT_EQ(stage.models().machine()->fans()->at(0), before);
    EXPECT_TRUE(before->speedText().endsWith(QStringLiteral("210"))) << before->speedText().toStdString();
    EXPECT_TRUE(stage.shows(before->speedText() + QStringLiteral(" tr/min")));
}

TEST(FanCard, AnAutomaticFanHasNothingMoreToSet) {
    Stage stage;
    stage.showPage(Page::fans);
    EXPECT_TRUE(stage.all(slider).isEmpty());
    EXPECT_TRUE(stage.all(stepper).isEmpty());
}

TEST(FanCard, AClickOnAModeChangesOnlyThatFan) {
    Stage stage;
    stage.showPage(Page::fans);
    stage.click(QStringLiteral("Vitesse fixe"), QAccessible::RadioButton, 1);
    EXPECT_EQ(stage.monitor().setting(0).mode, FanModeKind::automatic);
    EXPECT_EQ(stage.monitor().setting(1).mode, FanModeKind::constant);
    EXPECT_EQ(stage.all(slider).size(), 1);
}

TEST(FanCard, TheConstantSpeedHasTheFansRangeInStepsOfFifty) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(0, constantSetting(3400));
    stage.showPage(Page::fans);
    QAccessibleValueInterface* range = stage.range(slider);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->minimumValue().toDouble(), 1200);
    EXPECT_EQ(range->maximumValue().toDouble(), 6000);
    EXPECT_EQ(range->minimumStepSize().toDouble(), 50);
    EXPECT_EQ(range->currentValue().toDouble(), 3400);
    range->setCurrentValue(4000.0);
    EXPECT_EQ(stage.monitor().setting(0).constantRPM, 4000);
}

TEST(FanCard, AFanWithoutARangeStillHasAUsableSlider) {
    Stage stage;
    stage.world.smc.setNumber("F0Mn", "fpe2", 1200);
    stage.world.smc.setNumber("F0Mx", "fpe2", 1200);
    stage.start();
    stage.monitor().setSetting(0, constantSetting(1200));
    stage.showPage(Page::fans);
    QAccessibleValueInterface* range = stage.range(slider);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->minimumValue().toDouble(), 1200);
    EXPECT_EQ(range->maximumValue().toDouble(), 1201);
}

constexpr QColor trackColor(0x2B, 0x30, 0x3A);
constexpr QColor accentColor(0x4F, 0xC3, 0xF7);

// The colours of a fan's gauge at the two ends of its arc: lower left and lower right.
std::pair<QColor, QColor> endsOfGauge(Stage& stage, int fan) {
    for (const QAccessibleInterface* item : stage.all(QAccessible::StaticText)) {
        if (item->rect().size() != QSize(128, 128) || fan-- != 0) {
            continue;
        }
        const QPoint gauge = item->rect().topLeft() - stage.window().position();
        return {stage.colorAt(gauge + QPoint(23, 105)), stage.colorAt(gauge + QPoint(105, 105))};
    }
    ADD_FAILURE() << "there is no such gauge";
    return {};
}

TEST(FanCard, TheGaugeOfAFanWithoutARangeDividesByOne) {
    Stage stage;
    for (const char* key : {"F0Mn", "F0Mx", "F1Mn", "F1Mx"}) {
        stage.world.smc.setNumber(key, "fpe2", 1200);
    }
    stage.world.setFan(0, 1200);
    stage.world.setFan(1, 1201);
    stage.showPage(Page::fans);
    EXPECT_EQ(endsOfGauge(stage, 0), std::pair(trackColor, trackColor));
    EXPECT_EQ(endsOfGauge(stage, 1), std::pair(accentColor, accentColor));
}

TEST(FanCard, ASpeedBelowTheMinimumShowsAnEmptyGaugeAndOneAboveTheMaximumAFullOne) {
    Stage stage;
    stage.world.setFan(0, 900);
    stage.world.setFan(1, 7000);
    stage.showPage(Page::fans);
    EXPECT_EQ(endsOfGauge(stage, 0), std::pair(trackColor, trackColor));
    EXPECT_EQ(endsOfGauge(stage, 1), std::pair(accentColor, accentColor));
}

TEST(FanCard, ASpeedThatIsNoNumberShowsAnEmptyGauge) {
    Stage stage;
    stage.showPage(Page::fans);
    using Numbers = std::numeric_limits<double>;
    stage.models().machine()->fans()->setFans(
        {{.id = 0, .rpm = Numbers::infinity(), .minRPM = 1200, .maxRPM = 6000, .target = 2000},
         {.id = 1, .rpm = Numbers::quiet_NaN(), .minRPM = 1200, .maxRPM = 6000, .target = 2000}});
    EXPECT_EQ(endsOfGauge(stage, 0), std::pair(trackColor, trackColor));
    EXPECT_EQ(endsOfGauge(stage, 1), std::pair(trackColor, trackColor));
}

TEST(FanCard, TheSteppersStopAtTheirBounds) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(0, sensorSetting(35, 95));
    stage.showPage(Page::fans);
    ASSERT_EQ(stage.all(stepper).size(), 2);
    for (int i = 0; i < 3; ++i) {
        stage.all(stepper).at(0)->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    }
    EXPECT_EQ(stage.monitor().setting(0).startTemp, 30);
    for (int i = 0; i < 20; ++i) {
        stage.all(stepper).at(0)->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    }
    EXPECT_EQ(stage.monitor().setting(0).startTemp, 80);
    for (int i = 0; i < 3; ++i) {
        stage.all(stepper).at(1)->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    }
    EXPECT_EQ(stage.monitor().setting(0).maxTemp, 100);
    for (int i = 0; i < 20; ++i) {
        stage.all(stepper).at(1)->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    }
    EXPECT_EQ(stage.monitor().setting(0).maxTemp, 50);
    // Nothing prevents a start above the end.
    EXPECT_GT(stage.monitor().setting(0).startTemp, stage.monitor().setting(0).maxTemp);
    EXPECT_TRUE(stage.shows(QStringLiteral("La vitesse augmente à partir de 80 °C")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Vitesse maximale à 50 °C")));
}

TEST(FanCard, TheSensorPickerBeginsWithTheMainTemperature) {
    Stage stage;
    stage.world.smc.setNumber("TB0T", "sp78", 31);
    stage.start();
    stage.monitor().setSetting(0, sensorSetting());
    stage.showPage(Page::fans);
    const QStringList names = stage.models().machine()->sensorChoices()->names();
    EXPECT_EQ(names, QStringList({QStringLiteral("Température principale (processeur)"),
                                  QStringLiteral("Processeur (proximité)"), QStringLiteral("Batterie")}));
    stage.click(QStringLiteral("Capteur"), QAccessible::ComboBox);
    stage.press(Qt::Key_End);
    stage.press(Qt::Key_Return);
    EXPECT_EQ(stage.monitor().setting(0).sensorKey, "TB0T");
}

TEST(FanCard, TheSensorPickerShowsItsSensorWhileOthersComeAndGo) {
    Stage stage;
    stage.world.smc.setNumber("TB0T", "sp78", 31);
    stage.world.smc.setNumber("TW0P", "sp78", 40);
    stage.start();
    stage.monitor().setSetting(0, sensorSetting(50, 90, "TW0P"));
    stage.showPage(Page::fans);
    const auto shown = [&] {
        return stage.find(QStringLiteral("Capteur"), QAccessible::ComboBox)->text(QAccessible::Value);
    };
    EXPECT_EQ(shown(), QStringLiteral("Wi-Fi"));
    stage.world.smc.setNumber("TB0T", "sp78", -1); // not a plausible temperature
    stage.poll();
    EXPECT_EQ(shown(), QStringLiteral("Wi-Fi"));
    stage.world.smc.setNumber("TB0T", "sp78", 31);
    stage.world.smc.setNumber("TW0P", "sp78", -1);
    stage.poll();
    EXPECT_EQ(shown(), QString());
    stage.world.smc.setNumber("TW0P", "sp78", 40);
    stage.poll();
    EXPECT_EQ(shown(), QStringLiteral("Wi-Fi"));
}

TEST(FanCard, ItsMenuClosesWithoutAChoiceWhenASensorGoes) {
    Stage stage;
    stage.world.smc.setNumber("TB0T", "sp78", 31);
    stage.start();
    stage.monitor().setSetting(0, sensorSetting());
    stage.showPage(Page::fans);
    stage.click(QStringLiteral("Capteur"), QAccessible::ComboBox);
    stage.press(Qt::Key_End);
    stage.world.smc.setNumber("TB0T", "sp78", -1);
    stage.poll();
    EXPECT_TRUE(waitUntil([&] { return stage.all(QAccessible::MenuItem).isEmpty(); }));
    EXPECT_EQ(stage.monitor().setting(0).sensorKey, "");
}

TEST(FanCard, MayGoWhileItsMenuIsOpen) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(0, sensorSetting());
    stage.showPage(Page::fans);
    stage.click(QStringLiteral("Capteur"), QAccessible::ComboBox);
    ASSERT_FALSE(stage.all(QAccessible::MenuItem).isEmpty());
    stage.world.smc.remove("F0Ac");
    stage.poll();
    ASSERT_EQ(stage.models().machine()->fans()->count(), 1);
    EXPECT_TRUE(waitUntil([&] { return stage.all(QAccessible::MenuItem).isEmpty(); }));
}

TEST(FanCard, AStoredSensorThatIsGoneShowsNoChoice) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(0, sensorSetting(50, 90, "TXXX"));
    stage.showPage(Page::fans);
    EXPECT_EQ(stage.models().machine()->fans()->at(0)->sensorChoice(), -1);
    QAccessibleInterface* picker = stage.find(QStringLiteral("Capteur"), QAccessible::ComboBox);
    ASSERT_NE(picker, nullptr);
    EXPECT_EQ(picker->text(QAccessible::Value), QString());
    EXPECT_EQ(stage.monitor().setting(0).sensorKey, "TXXX"); // showing the fan changes nothing
}

TEST(FanCard, AnyChangeClearsTheHighlightedPreset) {
    Stage stage;
    stage.showPage(Page::dashboard);
    stage.monitor().apply(Preset::game);
    QAccessibleInterface* menu = stage.find(QStringLiteral("Préréglage"), QAccessible::ComboBox);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->text(QAccessible::Value), QStringLiteral("Jeu"));
    stage.all(stepper).at(0)->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(stage.find(QStringLiteral("Préréglage"), QAccessible::ComboBox)->text(QAccessible::Value),
              QStringLiteral("Personnalisé"));
}

TEST(FanCard, EveryControlClearsTheHighlightedPresetInThePanelToo) {
    const auto change = [](const FanSetting& setting, const std::function<void(Stage&)>& use) {
        Stage stage;
        stage.start();
        stage.monitor().setSetting(0, setting);
        stage.monitor().setSetting(1, setting);
        stage.showPage(Page::fans);
        stage.monitor().apply(Preset::balanced);
        if (setting.mode == FanModeKind::constant) {
            stage.monitor().apply(Preset::max);
        }
        ASSERT_NE(stage.monitor().activePreset(), std::nullopt);
        use(stage);
        EXPECT_EQ(stage.monitor().activePreset(), std::nullopt);
        stage.show(menuPanelFile());
        for (QAccessibleInterface* preset : stage.all(QAccessible::RadioButton)) {
            EXPECT_FALSE(preset->state().checked) << preset->text(QAccessible::Name).toStdString();
        }
    };
    change(sensorSetting(),
           [](Stage& stage) { stage.click(QStringLiteral("Auto"), QAccessible::RadioButton); });
    change(sensorSetting(), [](Stage& stage) { stage.range(stepper, 0)->setCurrentValue(60.0); });
    change(sensorSetting(), [](Stage& stage) { stage.range(stepper, 1)->setCurrentValue(95.0); });
    change(sensorSetting(), [](Stage& stage) {
        stage.click(QStringLiteral("Capteur"), QAccessible::ComboBox);
        stage.press(Qt::Key_End);
        stage.press(Qt::Key_Return);
    });
    change(constantSetting(3000), [](Stage& stage) { stage.range(slider)->setCurrentValue(2500.0); });
}

TEST(FanCard, TheTextsBesideTheSteppersHaveOneLineInTheNarrowestOfTwoColumns) {
    Stage stage;
    stage.windowSize = {960, 2400};
    stage.start();
    stage.monitor().setSetting(0, sensorSetting());
    stage.showPage(Page::fans);
    const FanRow* fan = stage.models().machine()->fans()->at(0);
    for (const AppLanguage language : allAppLanguages) {
        stage.monitor().setLanguage(language);
        for (const double celsius : {50.0, 100.0}) {
            stage.monitor().setSetting(0, sensorSetting(50, celsius));
            static_cast<void>(stage.window().grabWindow());
            for (const ShownText& shown : shownTexts(stage.window())) {
                EXPECT_FALSE(shown.wraps && (shown.text == drawnText(fan->startText()) ||
                                             shown.text == drawnText(fan->maxText())))
                    << rawValue(language) << ": " << shown.text.toStdString();
            }
        }
    }
}

TEST(FanCard, GrowsToWhatAModeNeedsAndWithReducedMotionAtOnce) {
    Stage stage;
    stage.showPage(Page::fans);
    const auto height = [&stage] {
        static_cast<void>(stage.window().grabWindow());
        return stage.find(QStringLiteral("Ventilateur gauche"), QAccessible::Grouping)->rect().height();
    };
    const int automatic = height();
    const auto choose = [&stage](const char* mode) {
        stage.click(QString::fromUtf8(mode), QAccessible::RadioButton);
    };
    choose("Selon un capteur");
    EXPECT_EQ(height(), 481);
    choose("Auto");
    EXPECT_EQ(height(), automatic);
    stage.setReducedMotion(false);
    choose("Selon un capteur");
    EXPECT_LT(height(), 481);
    EXPECT_TRUE(waitUntil([&] { return height() == 481; }));
    choose("Auto");
    EXPECT_GT(height(), automatic);
    EXPECT_TRUE(waitUntil([&] { return height() == automatic; }));
}

TEST(FanCard, TheCurvesHandlesWriteWhatTheSteppersWrite) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(0, sensorSetting(50, 90, "TC0P"));
    stage.showPage(Page::fans);
    const FanRow* fan = stage.models().machine()->fans()->at(0);
    QAccessibleInterface* lower = stage.find(QStringLiteral("La vitesse augmente à partir de"), slider);
    QAccessibleInterface* upper = stage.find(QStringLiteral("Vitesse maximale à"), slider);
    ASSERT_NE(lower, nullptr);
    ASSERT_NE(upper, nullptr);
    EXPECT_EQ(lower->valueInterface()->currentValue().toDouble(), 50);
    EXPECT_EQ(lower->valueInterface()->minimumStepSize().toDouble(), 5);
    EXPECT_EQ(upper->valueInterface()->maximumValue().toDouble(), 100);
    lower->valueInterface()->setCurrentValue(65.0);
    upper->valueInterface()->setCurrentValue(70.0);
    EXPECT_EQ(stage.monitor().setting(0), sensorSetting(65, 70, "TC0P"));
    EXPECT_EQ(stage.range(stepper, 0)->currentValue().toDouble(), 65);
    stage.range(stepper, 1)->setCurrentValue(50.0); // below the start, which nothing forbids
    EXPECT_EQ(upper->valueInterface()->currentValue().toDouble(), 50);
    EXPECT_EQ(upper->valueInterface()->currentValue().toString(), u"50 °C"_s);
    EXPECT_TRUE(fan->maxText().endsWith(u"50 °C"));
    EXPECT_NE(stage.find(QStringLiteral("Selon un capteur"), QAccessible::Chart), nullptr);
}

// The first drawing of a curve in this item, or null.
const QQuickItem* drawnCurve(const QQuickItem& item) {
    for (const QQuickItem* child : item.childItems()) {
        const QQuickItem* const found = child->inherits("Fenwhirl::FanCurve") ? child : drawnCurve(*child);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

TEST(FanCard, TheCurveStandsBesideTheTemperatureAndTheRulesThatCountForIt) {
    Stage stage;
    stage.world.smc.setNumber("TG0P", "sp78", 44);
    stage.start();
    stage.monitor().setAlertsEnabled(false);
    stage.monitor().setSetting(0, sensorSetting());
    stage.showPage(Page::fans);
    const FanRow* fan = stage.models().machine()->fans()->at(0);
    const QQuickItem* const drawn = drawnCurve(*stage.window().contentItem());
    ASSERT_NE(drawn, nullptr);
    EXPECT_EQ(fan->drivingTemperature(), 50);
    EXPECT_TRUE(fan->followsMainTemperature());
    EXPECT_TRUE(std::isnan(fan->alertAt()));
    EXPECT_EQ(drawn->property("now").toDouble(), 50);
    EXPECT_TRUE(drawn->property("limited").toBool());
    EXPECT_FALSE(drawn->property("protecting").toBool());
    stage.monitor().setAlertsEnabled(true);
    stage.monitor().setAlertThreshold(85);
    EXPECT_EQ(fan->alertAt(), 85);
    stage.world.setCelsius(86);
    stage.poll();
    EXPECT_EQ(fan->drivingTemperature(), 86);
    EXPECT_TRUE(fan->isProtecting());
    EXPECT_EQ(drawn->property("now").toDouble(), 86);
    EXPECT_EQ(drawn->property("alertAt").toDouble(), 85);
    EXPECT_TRUE(drawn->property("protecting").toBool());
    stage.monitor().setSetting(0, sensorSetting(50, 90, "TG0P"));
    EXPECT_EQ(fan->drivingTemperature(), 44);
    EXPECT_FALSE(fan->followsMainTemperature());
    EXPECT_TRUE(std::isnan(fan->alertAt()));
    EXPECT_FALSE(drawn->property("limited").toBool());
    // When the sensor disappears, the main temperature replaces it.
    stage.world.smc.remove("TG0P");
    stage.poll();
    EXPECT_EQ(fan->drivingTemperature(), 86);
    EXPECT_TRUE(fan->followsMainTemperature());
    EXPECT_EQ(fan->alertAt(), 85);
    stage.world.smc.remove("TC0P");
    stage.poll();
    EXPECT_TRUE(std::isnan(fan->drivingTemperature()));
}

// The description of a fan's gauge, which names the requested speed.
QString askedFor(Stage& stage) {
    const FanRow* fan = stage.models().machine()->fans()->at(0);
    const QAccessibleInterface* gauge =
        stage.find(fan->speedText() + QStringLiteral(" tr/min"), QAccessible::StaticText);
    return gauge == nullptr ? QStringLiteral("no gauge") : gauge->text(QAccessible::Description);
}

TEST(FanCard, TheGaugeSaysWhatTheFanWasReallyAskedFor) {
    Stage stage;
    stage.showPage(Page::fans);
    EXPECT_EQ(askedFor(stage), QString());
    stage.click(QStringLiteral("Vitesse fixe"), QAccessible::RadioButton);
    EXPECT_EQ(askedFor(stage), QString()); // set, but not requested before the next poll
    stage.poll();
    const FanRow* fan = stage.models().machine()->fans()->at(0);
    EXPECT_EQ(askedFor(stage), fan->constantText());
    EXPECT_DOUBLE_EQ(fan->requestedFraction(), 1800.0 / 4800.0);
    const QString asked = askedFor(stage);
    stage.range(slider)->setCurrentValue(4000.0);
    EXPECT_EQ(askedFor(stage), asked); // the setting has already changed
    EXPECT_EQ(fan->requestedText(), asked);
    EXPECT_DOUBLE_EQ(fan->requestedFraction(), 1800.0 / 4800.0);
    stage.poll();
    EXPECT_EQ(askedFor(stage), fan->constantText());
    EXPECT_DOUBLE_EQ(fan->requestedFraction(), 2800.0 / 4800.0);
    stage.world.setCelsius(92);
    stage.poll();
    EXPECT_EQ(askedFor(stage), QString());
    EXPECT_TRUE(std::isnan(fan->requestedFraction()));
}

TEST(FanCard, ChoosingTheModeThatIsSetKeepsThePreset) {
    Stage stage;
    stage.showPage(Page::fans);
    stage.monitor().apply(Preset::automatic);
    stage.click(QStringLiteral("Auto"), QAccessible::RadioButton);
    EXPECT_EQ(stage.monitor().activePreset(), Preset::automatic);
}

TEST(FansPage, SaysWhenThereAreNoFans) {
    Stage stage;
    stage.world.smc.setNumber("FNum", "ui8 ", 0);
    stage.showPage(Page::fans);
    EXPECT_TRUE(stage.shows(QStringLiteral("Aucun ventilateur détecté sur ce Mac.")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Mode")));
}

TEST(FansPage, SaysSoWhenTheLastFanGoes) {
    Stage stage;
    stage.showPage(Page::fans);
    stage.showFans(0);
    EXPECT_TRUE(stage.shows(QStringLiteral("Aucun ventilateur détecté sur ce Mac.")));
    stage.showFans(1);
    EXPECT_FALSE(stage.shows(QStringLiteral("Aucun ventilateur détecté sur ce Mac.")));
}

TEST(FansPage, OffersControlWhileItIsWantedAndTheHelperIsMissing) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.showPage(Page::fans);
    EXPECT_TRUE(stage.shows(QStringLiteral("Choisis la vitesse de chaque ventilateur")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.click(QStringLiteral("Activer"));
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperInstalled(); }));
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
}

TEST(FansPage, ThirtyFansHaveThirtyCards) {
    Stage stage;
    stage.showPage(Page::fans);
    stage.showFans(30);
    EXPECT_EQ(stage.texts().count(QStringLiteral("Vitesse fixe")), 30); // in the mode picker of each card
}

TEST(FansPage, AFanThatVanishesTakesOnlyItsOwnCard) {
    Stage stage;
    stage.showPage(Page::fans);
    const FanRow* right = stage.models().machine()->fans()->at(1);
    stage.world.smc.remove("F0Ac");
    stage.poll();
    ASSERT_EQ(stage.models().machine()->fans()->count(), 1);
    EXPECT_EQ(stage.models().machine()->fans()->at(0), right);
    EXPECT_TRUE(stage.shows(QStringLiteral("Ventilateur"))); // a single fan has neither a side nor a number
    EXPECT_FALSE(stage.shows(QStringLiteral("Ventilateur droit")));
}

TEST(FansPage, FansThatChangePlacesKeepTheirCardsAndShowTheirNewReadings) {
    Stage stage;
    stage.showPage(Page::fans);
    FanList& fans = *stage.models().machine()->fans();
    const FanRow* const left = fans.at(0);
    fans.setFans({{.id = 1, .rpm = 3100, .minRPM = 1200, .maxRPM = 6000, .target = 3100},
                  {.id = 0, .rpm = 2900, .minRPM = 1200, .maxRPM = 6000, .target = 2900}});
    EXPECT_EQ(fans.at(1), left);
    EXPECT_EQ(fans.at(0)->speedText(), NumberFormat::rpmText(3100));
    EXPECT_EQ(fans.at(1)->speedText(), NumberFormat::rpmText(2900));
}

TEST(FansPage, FansThatComeRenameThoseThatAreThere) {
    Stage stage;
    stage.showPage(Page::fans);
    EXPECT_TRUE(stage.shows(QStringLiteral("Ventilateur gauche")));
    stage.world.smc.setNumber("FNum", "ui8 ", 3);
    for (const char* key : {"F2Ac", "F2Mn", "F2Mx"}) {
        stage.world.smc.setNumber(key, "fpe2", 2000);
    }
    stage.poll();
    for (const char* name : {"Ventilateur 1", "Ventilateur 2", "Ventilateur 3"}) {
        EXPECT_TRUE(stage.shows(QString::fromUtf8(name))) << name;
    }
    EXPECT_FALSE(stage.shows(QStringLiteral("Ventilateur gauche")));
}

// A controller may report another range while the program runs. The window then looks as if that had been the range from
// the beginning.
TEST(FanCard, ANewRangeReachesEverythingThatDependsOnIt) {
    const auto prepare = [](Stage& stage) {
        stage.start();
        stage.monitor().setSetting(0, constantSetting(3600));
        stage.showPage(Page::fans);
        stage.poll();
    };
    Stage changed;
    prepare(changed);
    const QImage before = changed.window().grabWindow();
    changed.world.smc.setNumber("F0Mn", "fpe2", 1000);
    changed.world.smc.setNumber("F0Mx", "fpe2", 4800);
    changed.poll();
    EXPECT_EQ(changed.range(slider)->minimumValue().toDouble(), 1000);
    EXPECT_EQ(changed.range(slider)->maximumValue().toDouble(), 4800);
    const FanRow* const fan = changed.models().machine()->fans()->at(0);
    EXPECT_EQ(fan->lowestText(), NumberFormat::rpmText(1000));
    EXPECT_EQ(fan->highestText(), NumberFormat::rpmText(4800));

    Stage started;
    started.world.smc.setNumber("F0Mn", "fpe2", 1000);
    started.world.smc.setNumber("F0Mx", "fpe2", 4800);
    prepare(started);
    EXPECT_EQ(changed.window().grabWindow(), started.window().grabWindow());
    EXPECT_NE(changed.window().grabWindow(), before);
}

TEST(FanCard, AChoiceThatThereIsNotChangesNothing) {
    Stage stage;
    stage.showPage(Page::fans);
    FanRow& fan = *stage.models().machine()->fans()->at(0);
    const int choices = static_cast<int>(stage.models().machine()->sensorChoices()->names().size());
    fan.setSensorChoice(choices - 1);
    const FanSetting before = stage.monitor().setting(0);
    EXPECT_NE(before.sensorKey, std::string());
    for (const int choice : {-1, choices, choices + 1}) {
        fan.setSensorChoice(choice);
    }
    for (const int mode : {-1, 3, 4}) {
        fan.setMode(mode);
    }
    EXPECT_EQ(stage.monitor().setting(0), before);
}

} // namespace

} // namespace Fenwhirl
