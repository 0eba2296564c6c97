// The dashboard, with everything in order and with each kind of problem.

#include "Fenwhirl/Localization/NumberFormat.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QDateTime>
#include <QQuickItem>

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <utility>

namespace Fenwhirl {

namespace {

TEST(Dashboard, NamesTheComputerUnderItsTitle) {
    Stage stage;
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral("MacBook de Camille")));
}

TEST(Dashboard, CallsANamelessComputerThisMac) {
    Stage stage;
    stage.computerName = QString();
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral("Ce Mac")));
}

TEST(Dashboard, ShowsTheMainTemperatureRoundedAndWhatItMeans) {
    Stage stage;
    stage.world.setCelsius(62.5);
    stage.show();
    EXPECT_EQ(stage.models().machine()->temperatureNumber(), QStringLiteral("63"));
    EXPECT_TRUE(stage.shows(QStringLiteral("Mac en bonne santé")));
    stage.world.setCelsius(88);
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("Les ventilateurs travaillent")));
    EXPECT_EQ(stage.models().machine()->temperatureNumber(), QStringLiteral("88"));
}

TEST(Dashboard, TheDotBesideTheVerdictIsGreenWhileAllIsWell) {
    Stage stage;
    stage.show();
    EXPECT_EQ(stage.colorLeftOf(QStringLiteral("Mac en bonne santé"), 10), QColor(0x5B, 0xE4, 0x9B));
    stage.world.setCelsius(88);
    stage.poll();
    static_cast<void>(stage.window().grabWindow()); // the longer text takes its place with the next frame
    EXPECT_EQ(stage.colorLeftOf(QStringLiteral("Les ventilateurs travaillent"), 10),
              QColor(0xFF, 0xB4, 0x54));
}

// A screen reader announces every change of the focused control, so what it said stays until the focus goes.
TEST(Dashboard, TheTemperatureSumsUpTheMachineWhenItGetsTheFocus) {
    Stage stage;
    stage.show();
    QAccessibleInterface* const temperature =
        stage.find(stage.models().machine()->temperatureText(), QAccessible::StaticText);
    ASSERT_NE(temperature, nullptr);
    auto* const item = qobject_cast<QQuickItem*>(temperature->object());
    ASSERT_NE(item, nullptr);
    const QString summary = stage.models().machine()->summary();
    EXPECT_NE(summary, stage.models().machine()->temperatureText());
    item->forceActiveFocus();
    EXPECT_EQ(temperature->text(QAccessible::Name), summary);
    stage.world.setCelsius(70);
    stage.poll();
    EXPECT_EQ(temperature->text(QAccessible::Name), summary);
    item->setFocus(false);
    EXPECT_EQ(temperature->text(QAccessible::Name), stage.models().machine()->temperatureText());
}

TEST(Dashboard, AnotherThresholdChangesTheVerdictAtOnce) {
    Stage stage;
    stage.world.setCelsius(70);
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral("Mac en bonne santé")));
    stage.monitor().setWarmThreshold(65);
    EXPECT_TRUE(stage.shows(QStringLiteral("Les ventilateurs travaillent")));
    stage.monitor().setHotThreshold(70);
    EXPECT_TRUE(stage.shows(QStringLiteral("Ferme des applications")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Surchauffe")));
    stage.monitor().setHotThreshold(92);
    EXPECT_TRUE(stage.shows(QStringLiteral("Les ventilateurs travaillent")));
    stage.monitor().setWarmThreshold(85);
    EXPECT_TRUE(stage.shows(QStringLiteral("Mac en bonne santé")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Tout est normal")));
}

TEST(Dashboard, TheChartSaysItsRangeFromLowestToHighest) {
    Stage stage;
    stage.show();
    stage.world.setCelsius(63);
    stage.poll();
    stage.world.setCelsius(57);
    stage.poll();
    EXPECT_EQ(stage.models().machine()->historyRange(),
              NumberFormat::rangeText(NumberFormat::temperatureText(50), NumberFormat::temperatureText(63)));
}

TEST(Dashboard, TheChartHasItsCaptionsAndTheHistory) {
    Stage stage;
    stage.show();
    stage.world.setCelsius(60);
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("il y a 10 min")));
    EXPECT_TRUE(stage.shows(QStringLiteral("maintenant")));
    EXPECT_EQ(stage.models().machine()->history(), QList<double>({50, 60}));
}

TEST(Dashboard, TheChartReadsEachSampleWithItsOwnTime) {
    Stage stage;
    stage.show();
    stage.world.smc.remove("TC0P");
    for (int i = 0; i < 30; ++i) {
        stage.world.pollAfter(2); // a minute without a temperature
    }
    stage.world.setCelsius(60);
    stage.world.pollAfter(2);
    stage.world.setCelsius(70);
    stage.world.pollAfter(8 * 3600); // the computer sleeps
    const auto clock = [&stage](double seconds) {
        const auto time = stage.world.wallTime(seconds).time_since_epoch();
        return NumberFormat::clockText(
            QDateTime::fromMSecsSinceEpoch(
                std::chrono::duration_cast<std::chrono::milliseconds>(time).count())
                .time());
    };
    const auto description = [&stage] {
        return stage.all(QAccessible::Chart).first()->text(QAccessible::Description);
    };
    const double last = stage.world.seconds();
    EXPECT_EQ(description(), QStringLiteral("50 °C – 70 °C"));
    for (int i = 0; i < 20 && !stage.all(QAccessible::Chart).first()->state().focused; ++i) {
        stage.press(Qt::Key_Tab);
    }
    EXPECT_EQ(description(), clock(last) + QStringLiteral(", 70 °C"));
    stage.press(Qt::Key_Left);
    EXPECT_EQ(description(), clock(last - 8 * 3600) + QStringLiteral(", 60 °C"));
    stage.press(Qt::Key_Left);
    EXPECT_EQ(description(), clock(last - 8 * 3600 - 62) + QStringLiteral(", 50 °C"));
    stage.press(Qt::Key_Escape);
    EXPECT_EQ(description(), QStringLiteral("50 °C – 70 °C"));
}

TEST(Dashboard, TheChartMarksTheAlertThresholdWhileAlertsAreOn) {
    Stage stage;
    stage.show();
    stage.world.setCelsius(70);
    stage.poll();
    stage.monitor().setAlertsEnabled(false);
    stage.monitor().setAlertThreshold(65);
    // Ten points right of the plot's left edge, the line is still cold. Any orange there is the threshold.
    const QRect chart = stage.all(QAccessible::Chart).first()->rect().translated(-stage.window().position());
    const auto hot = [&] {
        const QImage picture = stage.window().grabWindow();
        int rows = 0;
        for (int y = chart.top(); y < chart.top() + 140; ++y) {
            bool found = false;
            for (int x = chart.left() + 34; x < chart.left() + 41; ++x) {
                const QColor color = picture.pixelColor(x, y);
                found = found || color.red() > color.blue() + 60;
            }
            rows += found ? 1 : 0;
        }
        return rows;
    };
    EXPECT_EQ(hot(), 0);
    stage.monitor().setAlertsEnabled(true);
    EXPECT_EQ(hot(), 1);
    stage.monitor().setAlertThreshold(95); // beyond the range of the chart
    EXPECT_EQ(hot(), 0);
    stage.monitor().setAlertThreshold(60);
    EXPECT_EQ(hot(), 1);
    stage.monitor().setAlertsEnabled(false);
    EXPECT_EQ(hot(), 0);
}

TEST(Dashboard, TheTemperatureHasAFixedWidthAndTheSensorsTheRest) {
    Stage stage;
    for (const char* key : {"TC1C", "TC2C", "TG0P", "TM0P", "TB0T"}) {
        stage.world.smc.setNumber(key, "sp78", 40);
    }
    stage.show();
    static_cast<void>(stage.window().grabWindow());
    constexpr int page = 208 + 18; // the left edge of the page's cards
    ASSERT_EQ(stage.all(QAccessible::Chart).size(), 1);
    // 140 for the chart and 22 for the captions, in a card 340 wide with a padding of 20.
    const QRect chart = stage.all(QAccessible::Chart).first()->rect().translated(-stage.window().position());
    EXPECT_EQ(chart.left(), page + 20);
    EXPECT_EQ(chart.size(), QSize(300, 140 + 22));
    const QList<QAccessibleInterface*> rows = stage.all(QAccessible::ListItem);
    ASSERT_EQ(rows.size(), 6);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QRect row = rows.at(i)->rect().translated(-stage.window().position());
        EXPECT_EQ(row.left(), page + 340 + 18 + 20);
        EXPECT_EQ(row.right() + 1, 1040 - 18 - 20);
        EXPECT_EQ(row.height(), 33);
        // The rows end with the chart's captions, except for the padding of the last row.
        EXPECT_NEAR(row.bottom(), chart.bottom() - 33 * (5 - static_cast<int>(i)), 2);
    }
}

TEST(Dashboard, WithoutATemperatureADashStandsInItsPlace) {
    Stage stage;
    stage.world.smc.remove("TC0P");
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral("–")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Mac en bonne santé")));
}

TEST(Dashboard, WithoutFansItStillShowsTemperatureChartAndSensors) {
    Stage stage;
    stage.world.smc.setNumber("FNum", "ui8 ", 0);
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral(
        "Ce Mac n'a pas de ventilateur à piloter : il se refroidit sans bruit. Les températures "
        "restent visibles ci-dessous.")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Température du processeur")));
    EXPECT_TRUE(stage.shows(QStringLiteral("maintenant")));
    EXPECT_FALSE(stage.all(QAccessible::ListItem).isEmpty());
    EXPECT_FALSE(stage.shows(QStringLiteral("Mode")));
}

TEST(Dashboard, SaysWhenTheControllerCannotBeRead) {
    Stage stage;
    stage.world.smcOpens = false;
    stage.onboarded = true;
    stage.world.preferences.setBoolean(QStringLiteral("didOnboard"), true);
    stage.world.make();
    stage.monitor().start();
    ASSERT_TRUE(waitUntil([&] { return !stage.monitor().smcAvailable(); }));
    stage.adopt();
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral("Fenwhirl n'arrive pas à lire les capteurs de ce Mac.")));
    EXPECT_TRUE(stage.shows(QStringLiteral("–")));
}

TEST(Dashboard, SaysSoAlsoWhenThatTurnsOutWhileItIsShown) {
    Stage stage;
    stage.world.smcOpens = false;
    stage.world.preferences.setBoolean(QStringLiteral("didOnboard"), true);
    stage.world.make();
    stage.adopt();
    stage.show();
    const QString text = QStringLiteral("Fenwhirl n'arrive pas à lire les capteurs de ce Mac.");
    EXPECT_FALSE(stage.shows(text));
    stage.monitor().start();
    ASSERT_TRUE(waitUntil([&] { return !stage.monitor().smcAvailable(); }));
    EXPECT_TRUE(stage.shows(text));
}

TEST(Dashboard, OffersControlWhileItIsWantedAndTheHelperIsMissing) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.show();
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
    stage.monitor().apply(Preset::game);
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
    stage.click(QStringLiteral("Activer"));
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperInstalled(); }));
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
}

TEST(Dashboard, TheOfferIsBusyWhileInstallingAndComesBackWhenThatFails) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.world.helper.installSucceeds = false;
    std::mutex gate;
    gate.lock();
    stage.world.helper.onInstall = [&gate] { const std::lock_guard wait(gate); };
    stage.show();
    stage.monitor().apply(Preset::game);
    stage.poll();
    stage.click(QStringLiteral("Activer"));
    EXPECT_TRUE(stage.shows(QStringLiteral("Activation…")));
    gate.unlock();
    ASSERT_TRUE(waitUntil([&] { return !stage.monitor().isInstalling(); }));
    EXPECT_TRUE(stage.shows(QStringLiteral("Activer")));
    EXPECT_TRUE(stage.shows(QStringLiteral("L'activation a été annulée ou a échoué.")));
}

TEST(Dashboard, OffersAnUpdateOfAnOutdatedHelper) {
    Stage stage;
    stage.world.helper.setVersion("2");
    stage.show();
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperOutdated(); }));
    EXPECT_TRUE(stage.shows(QStringLiteral("Une mise à jour de l'assistant est disponible.")));
    stage.world.helper.setVersion("3");
    stage.click(QStringLiteral("Mettre à jour"));
    ASSERT_TRUE(waitUntil([&] { return !stage.monitor().helperOutdated(); }));
    EXPECT_FALSE(stage.shows(QStringLiteral("Mettre à jour")));
}

TEST(Dashboard, EveryBannerReachesToThePagesEdge) {
    const auto endOf = [](Stage& stage, const QString& button) {
        static_cast<void>(stage.window().grabWindow());
        const QAccessibleInterface* found = stage.find(button, QAccessible::Button);
        return found == nullptr ? -1 : stage.window().mapFromGlobal(found->rect().topRight()).x() + 1;
    };
    Stage missing;
    missing.world.helper.installed = false;
    missing.world.loginItemWorks = false;
    missing.start();
    missing.monitor().apply(Preset::game);
    missing.monitor().setLaunchAtLogin(true); // provokes an error message
    missing.poll();
    missing.show();
    EXPECT_EQ(endOf(missing, QStringLiteral("Fermer")), 1040 - 18 - 12);
    EXPECT_EQ(endOf(missing, QStringLiteral("Activer")), 1040 - 18 - 20);
    Stage outdated;
    outdated.world.helper.setVersion("2");
    outdated.show();
    ASSERT_TRUE(waitUntil([&] { return outdated.monitor().helperOutdated(); }));
    EXPECT_EQ(endOf(outdated, QStringLiteral("Mettre à jour")), 1040 - 18 - 20);
}

TEST(Dashboard, AnErrorStaysUntilItIsClosed) {
    Stage stage;
    stage.world.helper.succeeds = false;
    stage.show();
    stage.monitor().apply(Preset::max);
    stage.poll();
    const QString error = QStringLiteral("Ce Mac n'a pas accepté le changement de vitesse du ventilateur.");
    EXPECT_TRUE(stage.shows(error));
    stage.poll();
    EXPECT_TRUE(stage.shows(error));
    // The button has the word for closing a window, not the one for quitting an application.
    for (const auto& [language, word] :
         {std::pair(AppLanguage::en, u"Close"), std::pair(AppLanguage::de, u"Schließen"),
          std::pair(AppLanguage::srCyrl, u"Затвори"), std::pair(AppLanguage::fr, u"Fermer")}) {
        stage.monitor().setLanguage(language);
        EXPECT_TRUE(stage.find(QString::fromUtf16(word), QAccessible::Button)) << rawValue(language);
    }
    stage.click(QStringLiteral("Fermer"));
    EXPECT_FALSE(stage.shows(error));
    EXPECT_EQ(stage.monitor().controlError(), QString());
}

TEST(Dashboard, ShowsItsGroupsInOrder) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.start();
    stage.monitor().apply(Preset::game);
    stage.world.loginItemWorks = false;
    stage.monitor().setLaunchAtLogin(true); // provokes an error message
    stage.poll();
    stage.show();
    const QStringList texts = stage.texts();
    qsizetype last = -1;
    for (const QString& text :
         {QStringLiteral("MacBook de Camille"),
          QStringLiteral("Impossible de changer le démarrage automatique."),
          QStringLiteral("Activer le contrôle des ventilateurs"),
          QStringLiteral("Pour changer la vitesse, Fenwhirl a besoin de ton mot de passe, une seule fois."),
          QStringLiteral("Température du processeur"), QStringLiteral("il y a 10 min"),
          QStringLiteral("maintenant"), QStringLiteral("Préréglage"), QStringLiteral("Ventilateur gauche"),
          QStringLiteral("Ventilateur droit")}) {
        const qsizetype at = texts.indexOf(text, std::max<qsizetype>(last, 0));
        EXPECT_GT(at, last) << text.toStdString() << " in " << texts.join(u'|').toStdString();
        last = at;
    }
}

TEST(Dashboard, ThePresetMenuListsThePresetsInOrder) {
    Stage stage;
    stage.show();
    stage.click(QStringLiteral("Préréglage"), QAccessible::ComboBox);
    QStringList items;
    for (QAccessibleInterface* item : stage.all(QAccessible::MenuItem)) {
        items.append(item->text(QAccessible::Name));
    }
    EXPECT_EQ(items,
              QStringList({QStringLiteral("Auto"), QStringLiteral("Silencieux"), QStringLiteral("Équilibré"),
                           QStringLiteral("Jeu"), QStringLiteral("Max")}));
}

TEST(Dashboard, ThePresetMenuOpensAtTheActivePreset) {
    Stage stage;
    stage.start();
    stage.monitor().apply(Preset::game);
    stage.show();
    stage.click(QStringLiteral("Préréglage"), QAccessible::ComboBox);
    EXPECT_TRUE(stage.find(QStringLiteral("Jeu"), QAccessible::MenuItem)->state().checked);
    stage.press(Qt::Key_Up); // the first arrow key goes to the active preset
    stage.press(Qt::Key_Return);
    EXPECT_EQ(stage.monitor().activePreset(), Preset::game);
}

TEST(Dashboard, ThePresetMenuAppliesWhatIsChosen) {
    Stage stage;
    stage.show();
    QAccessibleInterface* menu = stage.find(QStringLiteral("Préréglage"), QAccessible::ComboBox);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->text(QAccessible::Value), QStringLiteral("Personnalisé"));
    stage.click(menu);
    stage.press(Qt::Key_End);
    stage.press(Qt::Key_Return);
    EXPECT_EQ(stage.monitor().activePreset(), Preset::max);
    EXPECT_EQ(stage.find(QStringLiteral("Préréglage"), QAccessible::ComboBox)->text(QAccessible::Value),
              QStringLiteral("Max"));
}

} // namespace

} // namespace Fenwhirl
