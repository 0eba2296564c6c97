// The status item's panel.

#include "Fenwhirl/Views/Components/AccessibleNode.h"
#include "Fenwhirl/Views/Components/Palette.h"
#include "FittingWindow.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QQuickItem>
#include <QTest>

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

constexpr auto sliderRole = QAccessible::Slider;
constexpr auto chip = QAccessible::RadioButton;

TEST(MenuPanel, ShowsAtMostThreeTemperatures) {
    Stage stage;
    for (const char* key : {"TC1C", "TC2C", "TG0P", "TM0P"}) {
        stage.world.smc.setNumber(key, "sp78", 40);
    }
    stage.show(menuPanelFile());
    EXPECT_EQ(stage.models().machine()->featured()->count(), 5);
    EXPECT_EQ(stage.all(QAccessible::ListItem).size(), 3);
}

TEST(MenuPanel, SaysHowTheMacFeelsWithADotOfThatColour) {
    Stage stage;
    stage.show(menuPanelFile());
    const auto dot = [&stage](const QString& word) { return stage.colorLeftOf(word, 17); };
    EXPECT_EQ(dot(QStringLiteral("Tout est normal")), QColor(0x5B, 0xE4, 0x9B));
    stage.world.setCelsius(85);
    stage.poll();
    EXPECT_EQ(dot(QStringLiteral("Le Mac est chaud")), QColor(0xFF, 0xB4, 0x54));
    stage.world.setCelsius(92);
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("Surchauffe")));
}

TEST(MenuPanel, NamesEachSensorWithItsTemperatureInWholeDegrees) {
    Stage stage;
    stage.world.setCelsius(62.5);
    stage.show(menuPanelFile());
    const QList<QAccessibleInterface*> rows = stage.all(QAccessible::ListItem);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.first()->text(QAccessible::Name).replace(QChar(0xA0), u' '),
              QStringLiteral("Processeur (proximité) 63 °C"));
}

TEST(MenuPanel, EachFanHasItsNameSpeedAndUnit) {
    Stage stage;
    stage.show(menuPanelFile());
    const QStringList texts = stage.texts();
    EXPECT_TRUE(texts.contains(QStringLiteral("Ventilateur gauche")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Ventilateur droit")));
    EXPECT_EQ(texts.count(QStringLiteral("tr/min")), 2);
}

TEST(MenuPanel, WithoutSensorsItHasNoTemperatures) {
    Stage stage;
    stage.world.smc.remove("TC0P");
    stage.show(menuPanelFile());
    EXPECT_TRUE(stage.all(QAccessible::ListItem).isEmpty());
    EXPECT_EQ(stage.all(chip).size(), 5);
}

TEST(MenuPanel, WithoutFansThePresetsStillShow) {
    Stage stage;
    stage.world.smc.setNumber("FNum", "ui8 ", 0);
    stage.show(menuPanelFile());
    EXPECT_TRUE(stage.all(sliderRole).isEmpty());
    QStringList titles;
    for (QAccessibleInterface* preset : stage.all(chip)) {
        titles.append(preset->text(QAccessible::Name));
    }
    EXPECT_EQ(titles,
              QStringList({QStringLiteral("Auto"), QStringLiteral("Silencieux"), QStringLiteral("Équilibré"),
                           QStringLiteral("Jeu"), QStringLiteral("Max")}));
}

TEST(MenuPanel, AClickOnAPresetAppliesAndMarksIt) {
    Stage stage;
    stage.show(menuPanelFile());
    for (QAccessibleInterface* preset : stage.all(chip)) {
        EXPECT_FALSE(preset->state().checked);
    }
    stage.click(QStringLiteral("Jeu"), chip);
    EXPECT_EQ(stage.monitor().activePreset(), Preset::game);
    EXPECT_TRUE(stage.find(QStringLiteral("Jeu"), chip)->state().checked);
}

TEST(MenuPanel, OnlyTheActivePresetStandsOnTheAccent) {
    Stage stage;
    stage.show(menuPanelFile());
    const auto grounds = [&stage] {
        QList<QColor> colors;
        for (QAccessibleInterface* preset : stage.all(chip)) {
            const QRect place = preset->rect();
            colors.append(
                stage.colorAt(stage.window().mapFromGlobal(QPoint(place.left() + 5, place.center().y()))));
        }
        return colors;
    };
    const QColor accent = palette(true)[static_cast<std::size_t>(PaletteColor::accent)];
    const QColor well = palette(true)[static_cast<std::size_t>(PaletteColor::well)];
    EXPECT_EQ(grounds(), QList<QColor>({well, well, well, well, well}));
    stage.monitor().apply(Preset::game);
    EXPECT_EQ(grounds(), QList<QColor>({well, well, well, accent, well}));
}

TEST(MenuPanel, TheSliderOfAFanThatFollowsASensorStandsAtItsMeasuredSpeed) {
    Stage stage;
    stage.start();
    FanSetting sensor;
    sensor.mode = FanModeKind::sensor;
    sensor.constantRPM = 4000;
    stage.monitor().setSetting(0, sensor);
    stage.show(menuPanelFile());
    EXPECT_EQ(stage.range(sliderRole)->currentValue().toDouble(), 2000);
    EXPECT_EQ(stage.range(sliderRole)->minimumStepSize().toDouble(), 50);
    stage.world.setFan(0, 2600);
    stage.poll();
    EXPECT_EQ(stage.range(sliderRole)->currentValue().toDouble(), 2600);
    sensor.mode = FanModeKind::constant;
    stage.monitor().setSetting(0, sensor);
    EXPECT_EQ(stage.range(sliderRole)->currentValue().toDouble(), 4000);
}

TEST(MenuPanel, ASliderSaysItsSpeedOnceAndTheMeasuredOneWhereThatDiffers) {
    Stage stage;
    stage.start();
    FanSetting setting;
    setting.mode = FanModeKind::sensor;
    setting.constantRPM = 4000;
    stage.monitor().setSetting(0, setting);
    stage.show(menuPanelFile());
    const auto said = [&] {
        const QAccessibleInterface* item = stage.all(sliderRole).first();
        // The separator is that of the computer's region, or none.
        return QStringList{item->text(QAccessible::Value).remove(u','),
                           item->text(QAccessible::Description).remove(u',')};
    };
    EXPECT_EQ(said(), QStringList({u"2000 tr/min"_s, Fenwhirl::isSliderTextHeard() ? u""_s : u"tr/min"_s}));
    setting.mode = FanModeKind::constant;
    stage.monitor().setSetting(0, setting);
    EXPECT_EQ(said(), QStringList({u"4000 tr/min"_s, u"2000 tr/min"_s}));
}

TEST(MenuPanel, MovingTheSliderOfAnAutomaticFanMakesItConstant) {
    Stage stage;
    stage.show(menuPanelFile());
    stage.monitor().apply(Preset::automatic);
    FanSetting custom = stage.monitor().setting(0);
    ASSERT_EQ(custom.mode, FanModeKind::automatic);
    custom.sensorKey = "TC0P";
    custom.startTemp = 41;
    custom.maxTemp = 77;
    stage.monitor().setSetting(0, custom);
    stage.poll();
    QAccessibleValueInterface* range = stage.range(sliderRole);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->currentValue().toDouble(), 2000); // the measured speed
    range->setCurrentValue(3000.0);
    EXPECT_EQ(stage.monitor().setting(0).mode, FanModeKind::constant);
    EXPECT_EQ(stage.monitor().setting(0).constantRPM, 3000);
    EXPECT_EQ(stage.monitor().setting(0).sensorKey, custom.sensorKey);
    EXPECT_EQ(stage.monitor().setting(0).startTemp, custom.startTemp);
    EXPECT_EQ(stage.monitor().setting(0).maxTemp, custom.maxTemp);
    EXPECT_EQ(stage.monitor().activePreset(), std::nullopt);
    EXPECT_EQ(stage.range(sliderRole)->currentValue().toDouble(), 3000);
    EXPECT_FALSE(stage.find(QStringLiteral("Auto"), chip)->state().checked);
}

TEST(MenuPanel, TheSymbolOfAFansModeLeadsBackToAutomaticAndKeepsTheRest) {
    Stage stage;
    stage.start();
    FanSetting setting;
    setting.mode = FanModeKind::sensor;
    setting.sensorKey = "TC0P";
    setting.startTemp = 41;
    stage.monitor().setSetting(1, setting);
    stage.show(menuPanelFile());
    // For the automatic fan, the symbol is a picture and not a button.
    EXPECT_NE(stage.find(QStringLiteral("Auto"), QAccessible::Graphic), nullptr);
    EXPECT_EQ(stage.find(QStringLiteral("Auto"), QAccessible::Button, 1), nullptr);
    const QAccessibleInterface* symbol = stage.find(QStringLiteral("Auto"), QAccessible::Button);
    ASSERT_NE(symbol, nullptr);
    EXPECT_EQ(symbol->text(QAccessible::Description), QStringLiteral("Ventilateur droit, Selon un capteur"));
    stage.click(QStringLiteral("Auto"));
    setting.mode = FanModeKind::automatic;
    EXPECT_EQ(stage.monitor().setting(1), setting);
    EXPECT_EQ(stage.find(QStringLiteral("Auto"), QAccessible::Button), nullptr);
    const QAccessibleInterface* picture = stage.find(QStringLiteral("Auto"), QAccessible::Graphic, 1);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->text(QAccessible::Description), QString());
    // The keyboard continues from where the symbol was.
    const QAccessibleInterface* focused =
        QAccessible::queryAccessibleInterface(stage.window().activeFocusItem());
    EXPECT_EQ(focused->role(), sliderRole);
    EXPECT_EQ(focused->text(QAccessible::Name), QStringLiteral("Ventilateur droit"));
}

// The number of fan rows that are at least partly visible.
int fansInView(Stage& stage, const QRect& list) {
    int seen = 0;
    for (const QAccessibleInterface* fan : stage.all(sliderRole)) {
        seen += list.intersects(fan->rect()) ? 1 : 0;
    }
    return seen;
}

TEST(MenuPanel, ShowsTheScrollBarOfManyFansForAMomentWhenItOpens) {
    Stage stage;
    stage.show(menuPanelFile());
    stage.showFans(30);
    stage.window().setProperty("maximumPanelHeight", 600);
    ASSERT_TRUE(waitUntil([&] {
        static_cast<void>(stage.window().grabWindow());
        return stage.window().height() <= 600;
    }));
    // In the middle of the bar, beside the upper part of the list.
    const QRect lastChip = stage.find(QStringLiteral("Max"), chip)->rect();
    const QPoint place = QPoint(stage.window().width() - 6, lastChip.bottom() + 14 + 20 - stage.window().y());
    const QColor card = palette(true)[static_cast<std::size_t>(PaletteColor::card)];
    ASSERT_TRUE(waitUntil([&] { return stage.colorAt(place) == card; }));
    stage.window().hide();
    stage.window().show();
    QCoreApplication::processEvents(); // the panel begins to appear
    EXPECT_NE(stage.colorAt(place), card);
    EXPECT_TRUE(waitUntil([&] { return stage.colorAt(place) == card; }));
}

TEST(MenuPanel, ManyFansScrollBetweenWhatStaysInItsPlace) {
    Stage stage;
    stage.show(menuPanelFile());
    const int fans = 30;
    stage.showFans(fans);
    ASSERT_EQ(stage.all(sliderRole).size(), fans);
    stage.window().setProperty("maximumPanelHeight", 600);
    ASSERT_TRUE(waitUntil([&] {
        static_cast<void>(stage.window().grabWindow());
        return stage.window().height() <= 600;
    }));
    const int height = stage.window().height();
    EXPECT_GT(height, 600 - 62) << "a row more would fit";
    const auto quit = [&] { return stage.find(QStringLiteral("Quitter"), QAccessible::Button)->rect(); };
    const auto lastChip = [&] { return stage.find(QStringLiteral("Max"), chip)->rect(); };
    const QRect quitBefore = quit();
    const QRect chipBefore = lastChip();
    EXPECT_EQ(quitBefore.bottom() + 1 + 16, stage.window().y() + height);
    const int firstButton = stage.find(QStringLiteral("Ouvrir Fenwhirl"), QAccessible::Button)->rect().top();
    const QRect list(QPoint(stage.window().x(), chipBefore.bottom() + 14),
                     QPoint(quitBefore.right(), firstButton - 14));
    EXPECT_LT(fansInView(stage, list), fans);
    EXPECT_GE(fansInView(stage, list), 2);
    // The last row is cut, whatever the height: its name is in the list, and its slider is not.
    for (const int room : {600, 590, 580, 570, 560, 550, 600}) {
        stage.window().setProperty("maximumPanelHeight", room);
        ASSERT_TRUE(waitUntil([&] {
            static_cast<void>(stage.window().grabWindow());
            return stage.window().height() <= room && stage.window().height() > room - 62;
        }));
        const int end = stage.find(QStringLiteral("Ouvrir Fenwhirl"), QAccessible::Button)->rect().top() - 14;
        int cut = 0;
        for (const QAccessibleInterface* row : stage.all(sliderRole)) {
            const QRect place = row->rect();
            cut += place.top() - 10 < end && place.bottom() >= end ? 1 : 0;
        }
        EXPECT_EQ(cut, 1) << room;
    }
    // The keyboard brings the last fan into view, and only the list scrolls.
    while (QAccessible::queryAccessibleInterface(stage.window().activeFocusItem()) == nullptr ||
           QAccessible::queryAccessibleInterface(stage.window().activeFocusItem())->role() != sliderRole) {
        stage.press(Qt::Key_Tab);
    }
    for (int i = 1; i < fans; ++i) {
        stage.press(Qt::Key_Tab);
    }
    static_cast<void>(stage.window().grabWindow());
    EXPECT_TRUE(list.contains(stage.all(sliderRole).last()->rect()))
        << stage.all(sliderRole).last()->rect().top();
    EXPECT_EQ(quit(), quitBefore);
    EXPECT_EQ(lastChip(), chipBefore);
}

TEST(MenuPanel, WhereNotEvenThreeFansFitAllOfItScrolls) {
    Stage stage;
    stage.world.smc.addOlderFans(10);
    stage.show(menuPanelFile());
    stage.window().setProperty("maximumPanelHeight", 380);
    ASSERT_TRUE(waitUntil([&] {
        static_cast<void>(stage.window().grabWindow());
        return stage.window().height() == 380;
    }));
    EXPECT_GT(stage.find(QStringLiteral("Quitter"), QAccessible::Button)->rect().top(),
              stage.window().y() + 380);
    EXPECT_TRUE(stage.all(sliderRole).last()->rect().bottom() <
                stage.find(QStringLiteral("Ouvrir Fenwhirl"), QAccessible::Button)->rect().top());
}

TEST(MenuPanel, CtrlQQuits) {
    Stage stage;
    stage.show(menuPanelFile());
    QTest::keyClick(&stage.window(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(stage.timesQuit, 1);
}

TEST(MenuPanel, AFanWithoutARangeGetsOneOfOneTurn) {
    Stage stage;
    stage.world.smc.setNumber("F0Mn", "fpe2", 1200);
    stage.world.smc.setNumber("F0Mx", "fpe2", 1200);
    stage.show(menuPanelFile());
    QAccessibleValueInterface* range = stage.range(sliderRole);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->minimumValue().toDouble(), 1200);
    EXPECT_EQ(range->maximumValue().toDouble(), 1201);
}

TEST(MenuPanel, AFanWhoseSpeedIsNoNumberStandsAtItsMinimumAndShowsZero) {
    Stage stage;
    stage.world.smc.setNumber("F0Ac", "flt ", std::numeric_limits<double>::quiet_NaN());
    stage.world.smc.setNumber("F1Ac", "flt ", std::numeric_limits<double>::infinity());
    stage.show(menuPanelFile());
    ASSERT_EQ(stage.all(sliderRole).size(), 2);
    for (int fan = 0; fan < 2; ++fan) {
        EXPECT_EQ(stage.range(sliderRole, fan)->currentValue().toDouble(), 1200) << fan;
        EXPECT_EQ(stage.models().machine()->fans()->at(fan)->speedText(), QStringLiteral("0"));
    }
    stage.range(sliderRole)->setCurrentValue(3000.0);
    EXPECT_EQ(stage.monitor().setting(0).constantRPM, 3000);
}

TEST(MenuPanel, OffersControlOnlyWhileItIsWantedAndMissing) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.show(menuPanelFile());
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.click(QStringLiteral("Activer le contrôle des ventilateurs"));
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperInstalled(); }));
    EXPECT_EQ(stage.world.helper.installs, 1);
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
}

TEST(MenuPanel, ItsButtonsOpenAndQuit) {
    Stage stage;
    stage.show(menuPanelFile());
    stage.click(QStringLiteral("Ouvrir Fenwhirl"));
    EXPECT_EQ(stage.timesOpenedMain, 1);
    stage.click(QStringLiteral("Quitter"));
    EXPECT_EQ(stage.timesQuit, 1);
}

TEST(MenuPanel, EscapeClosesIt) {
    Stage stage;
    stage.show(menuPanelFile());
    stage.press(Qt::Key_Escape);
    EXPECT_FALSE(stage.window().isVisible());
}

TEST(MenuPanel, IsAsWideAsDrawnAndAsHighAsItsContent) {
    Stage stage;
    stage.show(menuPanelFile());
    EXPECT_EQ(stage.window().width(), 340);
    EXPECT_GT(stage.window().height(), 400);
    EXPECT_LT(stage.window().height(), 600);
}

// The lower edge of the last button, in window coordinates.
int endOfPanel(Stage& stage) {
    static_cast<void>(stage.window().grabWindow());
    const QList<QAccessibleInterface*> buttons = stage.all(QAccessible::Button);
    return buttons.isEmpty() ? -1 : buttons.last()->rect().bottom() + 1 - stage.window().y();
}

// Waits until the window ends just below its last button, and returns its height.
int fittingHeight(Stage& stage) {
    EXPECT_TRUE(waitUntil([&] { return endOfPanel(stage) + 16 == stage.window().height(); }))
        << "the last button ends at " << endOfPanel(stage) << " of " << stage.window().height();
    expectFixedSize(stage.window(), QSize(340, stage.window().height()));
    return stage.window().height();
}

TEST(MenuPanel, FollowsFansThatComeAndGoWhileItIsOpen) {
    Stage stage;
    stage.show(menuPanelFile());
    const SizeLimitsCheck limits(stage.window());
    const int withFans = fittingHeight(stage);
    for (int round = 0; round < 2; ++round) {
        stage.world.smc.setNumber("FNum", "ui8 ", 0);
        stage.poll();
        EXPECT_LT(fittingHeight(stage), withFans - 50);
        stage.world.smc.setNumber("FNum", "ui8 ", 2);
        stage.poll();
        EXPECT_EQ(fittingHeight(stage), withFans);
    }
}

TEST(MenuPanel, GrowsWithWhatIsOfferedAndShrinksAgain) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.show(menuPanelFile());
    const SizeLimitsCheck limits(stage.window());
    const int before = fittingHeight(stage);
    stage.click(QStringLiteral("Max"), chip);
    stage.poll();
    EXPECT_EQ(fittingHeight(stage), before + 34 + 8);
    stage.click(QStringLiteral("Auto"), chip);
    stage.poll();
    EXPECT_EQ(fittingHeight(stage), before);
}

TEST(MenuPanel, FollowsTheLanguageAndTheSizeOfTexts) {
    Stage stage;
    stage.show(menuPanelFile());
    const SizeLimitsCheck limits(stage.window());
    const int french = fittingHeight(stage);
    stage.monitor().setLanguage(AppLanguage::ru);
    EXPECT_GT(fittingHeight(stage), french);
    stage.monitor().setLanguage(AppLanguage::fr);
    EXPECT_EQ(fittingHeight(stage), french);
    stage.setTextScale(2);
    ASSERT_TRUE(waitUntil([&] { return endOfPanel(stage) + 16 == stage.window().height(); }));
    expectFixedSize(stage.window(), QSize(680, stage.window().height()));
    stage.setTextScale(1);
    EXPECT_EQ(fittingHeight(stage), french);
}

TEST(MenuPanel, HasRoomForItsShadowWhereItDrawsOne) {
    Stage stage;
    stage.show(menuPanelFile());
    const int height = stage.window().height();
    EXPECT_EQ(stage.window().property("panelArea").toRectF(), QRectF(0, 0, 340, height));
    stage.window().setProperty("shadowed", true);
    EXPECT_EQ(stage.window().property("panelArea").toRectF(), QRectF(50, 32, 340, height));
    EXPECT_EQ(stage.window().size(), QSize(440, height + 100));
    ASSERT_TRUE(waitUntil([&] { return stage.colorAt({60, 100}) == QColor(0x1F, 0x22, 0x29); }));
}

TEST(MenuPanel, ClosesOnAPressOnItsShadowAndNotOnItself) {
    Stage stage;
    stage.show(menuPanelFile());
    stage.window().setProperty("shadowed", true);
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, QPoint(56, 60)); // in the panel's padding
    EXPECT_TRUE(stage.window().isVisible());
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, QPoint(40, 60));
    EXPECT_FALSE(stage.window().isVisible());
}

TEST(MenuPanel, IsOfOneColourToItsEdgesWhereItIsCut) {
    Stage stage;
    stage.show(menuPanelFile());
    EXPECT_EQ(stage.window().color().alpha(), 0);
    stage.window().setProperty("composed", false);
    EXPECT_EQ(stage.window().color(), QColor(0x1F, 0x22, 0x29));
}

} // namespace

} // namespace Fenwhirl
