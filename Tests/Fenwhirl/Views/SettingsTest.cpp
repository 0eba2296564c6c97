// The pages for presets, alerts and settings: how they show the user's choices and change them.

#include "Fenwhirl/Views/HealthThresholds.h"
#include "ShownText.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <mutex>
#include <optional>
#include <string>
#include <sys/resource.h>

namespace Fenwhirl {

namespace {

constexpr auto slider = QAccessible::Slider;

TEST(PresetsPage, MarksTheActivePresetAndOffersTheOthers) {
    Stage stage;
    stage.showPage(Page::presets);
    EXPECT_FALSE(stage.shows(QStringLiteral("Actif")));
    stage.click(QStringLiteral("Appliquer: Équilibré"));
    EXPECT_EQ(stage.monitor().activePreset(), Preset::balanced);
    EXPECT_EQ(stage.texts().filter(QStringLiteral("Actif")), QStringList(QStringLiteral("Actif: Équilibré")));
    EXPECT_EQ(stage.find(QStringLiteral("Appliquer: Équilibré"), QAccessible::Button), nullptr);
    EXPECT_NE(stage.find(QStringLiteral("Appliquer: Jeu"), QAccessible::Button), nullptr);
    EXPECT_TRUE(stage.shows(QStringLiteral("Refroidit tôt pour les jeux et les gros calculs.")));
}

TEST(AlertsPage, ShowsAndChangesSwitchAndThreshold) {
    Stage stage;
    stage.showPage(Page::alerts);
    EXPECT_TRUE(stage.shows(QStringLiteral("Seuil d'alerte : 90 °C")));
    QAccessibleValueInterface* range = stage.range(slider);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->minimumValue().toDouble(), 60);
    EXPECT_EQ(range->maximumValue().toDouble(), 100);
    EXPECT_EQ(range->minimumStepSize().toDouble(), 5);
    range->setCurrentValue(75.0);
    EXPECT_EQ(stage.monitor().alertThreshold(), 75);
    EXPECT_TRUE(stage.shows(QStringLiteral("Seuil d'alerte : 75 °C")));
    stage.click(QStringLiteral("Prévenir quand le Mac chauffe trop"), QAccessible::CheckBox);
    EXPECT_FALSE(stage.monitor().alertsEnabled());
}

TEST(AlertsPage, TheThresholdsUnitStaysWhereItIsWhateverTheDigits) {
    Stage stage;
    stage.showPage(Page::alerts);
    const auto unit = [&stage] {
        static_cast<void>(stage.window().grabWindow());
        for (const ShownText& shown : shownTexts(stage.window())) {
            if (shown.text == QStringLiteral("\u00a0°C")) {
                return shown.place.left();
            }
        }
        ADD_FAILURE() << "there is no unit";
        return 0.0;
    };
    const double before = unit();
    for (const double celsius : {60.0, 75.0, 95.0}) {
        stage.range(slider)->setCurrentValue(celsius);
        EXPECT_EQ(unit(), before) << celsius;
    }
}

TEST(AlertsPage, TheTestButtonSendsTheTestNotification) {
    Stage stage;
    stage.showPage(Page::alerts);
    stage.click(QStringLiteral("Tester l'alerte"));
    ASSERT_EQ(stage.notifications.size(), 1U);
    EXPECT_EQ(stage.notifications.front().first, QStringLiteral("Fenwhirl"));
    EXPECT_EQ(stage.notifications.front().second, QStringLiteral("Ceci est une alerte de test."));
}

TEST(HealthThresholds, KeepTheirDistance) {
    EXPECT_EQ(withWarm({70, 80}, 100), (HealthThresholds{100, 105}));
    EXPECT_EQ(withHot({100, 105}, 65), (HealthThresholds{60, 65}));
    EXPECT_EQ(withWarm({70, 80}, 75), (HealthThresholds{75, 80}));
    EXPECT_EQ(withWarm({70, 80}, 76), (HealthThresholds{76, 81}));
    EXPECT_EQ(withWarm({70, 80}, 103), (HealthThresholds{103, 105}));
    EXPECT_EQ(withHot({70, 80}, 58), (HealthThresholds{55, 58}));
}

TEST(SettingsPage, TheThresholdSlidersPushEachOther) {
    Stage stage;
    stage.start();
    stage.monitor().setWarmThreshold(70);
    stage.monitor().setHotThreshold(80);
    stage.showPage(Page::settings);
    stage.range(slider, 0)->setCurrentValue(100.0);
    EXPECT_EQ(stage.monitor().hotThreshold(), 105);
    EXPECT_TRUE(stage.shows(QStringLiteral("Surchauffe à partir de 105 °C")));
    stage.range(slider, 1)->setCurrentValue(65.0);
    EXPECT_EQ(stage.monitor().warmThreshold(), 60);
    EXPECT_TRUE(stage.shows(QStringLiteral("Mac chaud à partir de 60 °C")));
}

TEST(SettingsPage, ShowsItsGroupsInOrder) {
    Stage stage;
    stage.showPage(Page::settings);
    const QStringList texts = stage.texts();
    qsizetype last = -1;
    for (const QString& heading :
         {QStringLiteral("Fenwhirl 0.1"), QStringLiteral("Démarrage"), QStringLiteral("Thème"),
          QStringLiteral("Langue"), QStringLiteral("État du Mac"),
          QStringLiteral("Contrôle des ventilateurs"), QStringLiteral("Rapport de diagnostic")}) {
        const qsizetype at = texts.indexOf(heading);
        EXPECT_GT(at, last) << heading.toStdString();
        last = at;
    }
}

TEST(SettingsPage, TheLoginItemSwitchShowsTheActualState) {
    Stage stage;
    stage.showPage(Page::settings);
    const QString label = QStringLiteral("Ouvrir Fenwhirl au démarrage du Mac");
    stage.click(label, QAccessible::CheckBox);
    EXPECT_TRUE(stage.world.loginItemEnabled);
    EXPECT_TRUE(stage.find(label, QAccessible::CheckBox)->state().checked);
    stage.world.loginItemWorks = false;
    stage.click(label, QAccessible::CheckBox);
    EXPECT_TRUE(stage.find(label, QAccessible::CheckBox)->state().checked);
    EXPECT_TRUE(stage.shows(QStringLiteral("Impossible de changer le démarrage automatique.")));
}

TEST(SettingsPage, TheAppearanceIsChosenFromThree) {
    Stage stage;
    stage.showPage(Page::settings);
    const QAccessibleInterface* const row = stage.find(QStringLiteral("Apparence"), QAccessible::Grouping);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->childCount(), 3);
    EXPECT_TRUE(stage.find(QStringLiteral("Sombre"), QAccessible::RadioButton)->state().checked);
    stage.click(QStringLiteral("Clair"), QAccessible::RadioButton);
    EXPECT_EQ(stage.monitor().theme(), AppTheme::light);
    stage.click(QStringLiteral("Automatique"), QAccessible::RadioButton);
    EXPECT_EQ(stage.monitor().theme(), AppTheme::automatic);
}

TEST(SettingsPage, TheLanguagesAreNamedInThemselves) {
    Stage stage;
    stage.showPage(Page::settings);
    EXPECT_EQ(
        stage.models().preferences()->languageNames(),
        QStringList({QStringLiteral("Automatique"), QStringLiteral("Français"), QStringLiteral("English"),
                     QStringLiteral("Srpski (latinica)"), QStringLiteral("Српски (ћирилица)"),
                     QStringLiteral("Deutsch"), QStringLiteral("Español"), QStringLiteral("Italiano"),
                     QStringLiteral("Português"), QStringLiteral("Русский")}));
    stage.click(QStringLiteral("Langue"), QAccessible::ComboBox);
    stage.press(Qt::Key_End);
    stage.press(Qt::Key_Return);
    EXPECT_EQ(stage.monitor().language(), AppLanguage::ru);
}

// What a control shows: whether it is on, its value, or its chosen entry.
QString stateOf(QAccessibleInterface& control) {
    if (control.role() == QAccessible::CheckBox || control.role() == QAccessible::RadioButton) {
        return control.state().checked ? QStringLiteral("on") : QStringLiteral("off");
    }
    QAccessibleValueInterface* const range = control.valueInterface();
    return range != nullptr ? range->currentValue().toString() : control.text(QAccessible::Value);
}

// Sets a control to something else, as a user would.
void change(Stage& stage, QAccessibleInterface& control) {
    if (control.role() == QAccessible::ComboBox) {
        stage.click(&control);
        stage.press(Qt::Key_End);
        stage.press(Qt::Key_Return);
    } else if (control.role() == QAccessible::Slider) {
        QAccessibleValueInterface& range = *control.valueInterface();
        const bool isLowest = range.currentValue() == range.minimumValue();
        range.setCurrentValue(isLowest ? range.maximumValue() : range.minimumValue());
    } else {
        stage.click(&control);
    }
}

// Changes the n-th control of this role, and starts the program again. Returns false when there is no such control.
bool expectIsRemembered(Page page, QAccessible::Role role, int n) {
    Stage first;
    first.showPage(page);
    const auto control = [role, n](Stage& stage) { return stage.all(role).value(n); };
    if (control(first) == nullptr) {
        return false;
    }
    const std::string name = control(first)->text(QAccessible::Name).toStdString();
    const QString before = stateOf(*control(first));
    if (name == "Inclure un test des ventilateurs (6 secondes)" || // chosen anew for each report
        (role == QAccessible::RadioButton &&
         before == QStringLiteral("on"))) { // a click on it changes nothing
        return true;
    }
    change(first, *control(first));
    const QString changed = stateOf(*control(first));
    EXPECT_NE(changed.toStdString(), before.toStdString()) << "\"" << name << "\" has no effect";

    Stage second;
    second.world.preferences.values = first.world.preferences.values;
    second.world.loginItemEnabled = first.world.loginItemEnabled;
    second.showPage(page);
    EXPECT_EQ(stateOf(*control(second)).toStdString(), changed.toStdString())
        << "\"" << name << "\" is forgotten until the next start";
    return true;
}

TEST(SettingsPage, EverySettingIsRememberedUntilTheNextStart) {
    int found = 0;
    for (const Page page : {Page::alerts, Page::settings}) {
        for (const auto role :
             {QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::ComboBox, QAccessible::Slider}) {
            for (int n = 0; expectIsRemembered(page, role, n); ++n) {
                ++found;
            }
        }
    }
    EXPECT_GE(found, 10);
}

TEST(SettingsPage, OffersWhatSuitsTheHelpersState) {
    Stage stage;
    stage.showPage(Page::settings);
    EXPECT_TRUE(stage.shows(QStringLiteral("Activé : Fenwhirl peut changer la vitesse des ventilateurs.")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Réinstaller")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle")));
    stage.click(QStringLiteral("Désactiver"));
    ASSERT_TRUE(waitUntil([&] { return !stage.monitor().helperInstalled(); }));
    EXPECT_TRUE(stage.shows(QStringLiteral("Non activé : Fenwhirl peut seulement lire les températures.")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Activer le contrôle")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Désactiver")));
}

TEST(SettingsPage, HasNoSecondOfferBesideThatOfItsCard) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.start();
    stage.monitor().apply(Preset::max);
    stage.showPage(Page::settings);
    stage.poll();
    ASSERT_TRUE(stage.models().control()->offersActivation());
    EXPECT_TRUE(stage.shows(QStringLiteral("Activer le contrôle")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
}

TEST(SettingsPage, SaysWhenTheHelperIsOutdated) {
    Stage stage;
    stage.world.helper.setVersion("2");
    stage.showPage(Page::settings);
    const QString text = QStringLiteral("Une mise à jour de l'assistant est disponible.");
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperOutdated(); }));
    EXPECT_TRUE(stage.shows(text));
    stage.world.helper.setVersion("3");
    stage.click(QStringLiteral("Réinstaller"));
    ASSERT_TRUE(waitUntil([&] { return !stage.monitor().helperOutdated(); }));
    EXPECT_FALSE(stage.shows(text));
}

TEST(SettingsPage, TheWayBackMakesEveryFanAutomatic) {
    Stage stage;
    stage.start();
    stage.monitor().apply(Preset::max);
    stage.showPage(Page::settings);
    stage.click(QStringLiteral("Remettre les ventilateurs en automatique"));
    EXPECT_EQ(stage.monitor().activePreset(), Preset::automatic);
    EXPECT_EQ(stage.monitor().setting(0).mode, FanModeKind::automatic);
}

TEST(SettingsPage, MakesAReportOnceAndHandsItOver) {
    Stage stage;
    stage.showPage(Page::settings);
    EXPECT_FALSE(
        stage.find(QStringLiteral("Inclure un test des ventilateurs (6 secondes)"), QAccessible::CheckBox)
            ->state()
            .checked);
    std::mutex gate; // keeps the controller from answering meanwhile
    gate.lock();
    stage.world.smc.hook = [&gate](const SMCParam&) {
        const std::lock_guard wait(gate);
        return std::optional<ScriptedSMC::Reply>();
    };
    stage.click(QStringLiteral("Créer le rapport"));
    const QAccessibleInterface* const making =
        stage.find(QStringLiteral("Création en cours…"), QAccessible::Button);
    ASSERT_NE(making, nullptr);
    EXPECT_FALSE(making->object()->property("usable").toBool());
    stage.models().report()->create(); // a second request while a report is being made
    gate.unlock();
    ASSERT_TRUE(waitUntil([&] { return !stage.models().report()->busy(); }));
    ASSERT_EQ(stage.reports.size(), 1U);
    EXPECT_TRUE(stage.reports.front().contains(QStringLiteral("Assistant installé : oui")));
    EXPECT_FALSE(stage.reports.front().contains(QStringLiteral("-- Test d'écriture (6 s) --")));
    EXPECT_EQ(stage.find(QStringLiteral("Créer le rapport"), QAccessible::Button), making);
    EXPECT_TRUE(making->object()->property("usable").toBool());
}

TEST(SettingsPage, TheSwitchPutsTheFanTestIntoTheReport) {
    Stage stage;
    stage.showPage(Page::settings);
    stage.click(QStringLiteral("Inclure un test des ventilateurs (6 secondes)"), QAccessible::CheckBox);
    stage.click(QStringLiteral("Créer le rapport"));
    ASSERT_TRUE(waitUntil([&] { return !stage.models().report()->busy(); }));
    EXPECT_TRUE(stage.reports.at(0).contains(QStringLiteral("-- Test d'écriture (6 s) --")));
}

TEST(SettingsPage, AChoiceThatThereIsNotChangesNothing) {
    Stage stage;
    stage.showPage(Page::settings);
    PreferencesView& preferences = *stage.models().preferences();
    for (const int theme : {-1, 3, 4}) {
        preferences.setTheme(theme);
    }
    for (const int language : {-1, 10, 11}) {
        preferences.setLanguage(language);
    }
    for (const int preset : {-1, 5, 6}) {
        stage.models().presets()->apply(preset);
    }
    for (const int page : {-1, 7, 8}) {
        stage.models().pages()->setSelectedIndex(page);
    }
    EXPECT_EQ(stage.monitor().theme(), AppTheme::dark);
    EXPECT_EQ(stage.monitor().language(), AppLanguage::fr);
    EXPECT_EQ(stage.monitor().activePreset(), std::nullopt);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::settings);
}

// Settings may change elsewhere, for example from the command line.
TEST(SettingsPage, FollowsWhatChangesElsewhere) {
    Stage stage;
    stage.showPage(Page::settings);
    stage.monitor().setTheme(AppTheme::light);
    EXPECT_TRUE(stage.find(QStringLiteral("Clair"), QAccessible::RadioButton)->state().checked);
    stage.monitor().setWarmThreshold(71);
    EXPECT_EQ(stage.range(slider, 0)->currentValue().toDouble(), 71);
    stage.monitor().setHotThreshold(99);
    EXPECT_EQ(stage.range(slider, 1)->currentValue().toDouble(), 99);
    EXPECT_TRUE(stage.shows(QStringLiteral("Surchauffe à partir de 99 °C")));
    stage.monitor().setLaunchAtLogin(true);
    EXPECT_TRUE(stage.find(QStringLiteral("Ouvrir Fenwhirl au démarrage du Mac"), QAccessible::CheckBox)
                    ->state()
                    .checked);
    stage.monitor().setSelectedPage(Page::alerts);
    stage.monitor().setAlertThreshold(65);
    EXPECT_EQ(stage.range(slider)->currentValue().toDouble(), 65);
    stage.monitor().setAlertsEnabled(false);
    EXPECT_FALSE(stage.find(QStringLiteral("Prévenir quand le Mac chauffe trop"), QAccessible::CheckBox)
                     ->state()
                     .checked);
}

// The bounds of each slider, which no press of a key may leave.
TEST(SettingsPage, TheThresholdsHaveTheirRangesInStepsOfOne) {
    Stage stage;
    stage.showPage(Page::settings);
    const QAccessibleValueInterface& warm = *stage.range(slider, 0);
    EXPECT_EQ(warm.minimumValue().toDouble(), 60);
    EXPECT_EQ(warm.maximumValue().toDouble(), 100);
    EXPECT_EQ(warm.minimumStepSize().toDouble(), 1);
    const QAccessibleValueInterface& hot = *stage.range(slider, 1);
    EXPECT_EQ(hot.minimumValue().toDouble(), 65);
    EXPECT_EQ(hot.maximumValue().toDouble(), 105);
    EXPECT_EQ(hot.minimumStepSize().toDouble(), 1);
}

TEST(SaveReport, WritesWhereTheUserSaysAndShowsTheFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("rapport.txt"));
    QString proposed;
    QString revealed;
    saveReport(
        QStringLiteral("Température : 50 °C"),
        [&](const QString& name) {
            proposed = name;
            return path;
        },
        [&](const QString& shownPath) { revealed = shownPath; });
    EXPECT_EQ(proposed, QStringLiteral("Fenwhirl-diagnostic.txt"));
    EXPECT_EQ(revealed, path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QStringLiteral("Température : 50 °C").toUtf8());
}

TEST(SaveReport, DecliningWritesAndShowsNothing) {
    int revealed = 0;
    saveReport(
        QStringLiteral("x"), [](const QString&) { return QString(); }, [&](const QString&) { ++revealed; });
    EXPECT_EQ(revealed, 0);
}

TEST(SaveReport, AFileThatCouldNotBeWrittenIsNotShown) {
    const QTemporaryDir folder;
    // A folder that cannot be written, a folder in place of the file, and a name that is too long.
    for (const QString& path : {QStringLiteral("/nonexistent/folder/rapport.txt"), folder.path(),
                                folder.filePath(QString(300, QLatin1Char('x')))}) {
        int revealed = 0;
        saveReport(
            QStringLiteral("x"), [&](const QString&) { return path; }, [&](const QString&) { ++revealed; });
        EXPECT_EQ(revealed, 0) << path.toStdString();
    }
}

// A full disk is noticed only when what was written is flushed.
TEST(SaveReport, AFileThatWasCutOffIsNotShown) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("rapport.txt"));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = before;
    small.rlim_cur = 100;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    int revealed = 0;
    saveReport(
        QString(5000, u'x'), [&](const QString&) { return path; }, [&](const QString&) { ++revealed; });
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(revealed, 0);
    EXPECT_FALSE(QFile::exists(path));
}

} // namespace

} // namespace Fenwhirl
