// The introduction at the first start.

#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QQmlComponent>
#include <QQuickItem>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class Newcomer : public Stage {
public:
    Newcomer() { onboarded = false; }
};

TEST(Onboarding, GoesThroughItsThreeStepsOnce) {
    Newcomer stage;
    stage.show();
    EXPECT_TRUE(stage.shows(QStringLiteral("Bienvenue dans Fenwhirl")));
    stage.click(QStringLiteral("Suivant"));
    EXPECT_TRUE(stage.shows(QStringLiteral("Pilote tes ventilateurs")));
    stage.click(QStringLiteral("Suivant"));
    EXPECT_TRUE(stage.shows(QStringLiteral("Tout est prêt")));
    EXPECT_FALSE(stage.monitor().didOnboard());
    stage.click(QStringLiteral("Commencer"));
    EXPECT_TRUE(stage.monitor().didOnboard());
    EXPECT_FALSE(stage.shows(QStringLiteral("Tout est prêt")));
}

TEST(Onboarding, FadesAwayAndLeavesTheWindowToThePointer) {
    Newcomer stage;
    stage.show();
    for (const char* label : {"Suivant", "Suivant"}) {
        stage.click(QString::fromUtf8(label));
    }
    stage.setReducedMotion(false);
    stage.click(QStringLiteral("Commencer"));
    EXPECT_TRUE(stage.shows(QStringLiteral("Tout est prêt"))) << "it has only begun to fade";
    EXPECT_TRUE(waitUntil([&] { return !stage.shows(QStringLiteral("Tout est prêt")); }));
    stage.click(QStringLiteral("Alertes"), QAccessible::PageTab);
    EXPECT_EQ(stage.monitor().selectedPage(), Page::alerts);
}

TEST(Onboarding, IsModalAndHidesWhatItCoversFromScreenReaders) {
    Newcomer stage;
    stage.show();
    const QAccessibleInterface* dialog =
        stage.find(QStringLiteral("Bienvenue dans Fenwhirl"), QAccessible::Dialog);
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->state().modal);
    EXPECT_TRUE(stage.all(QAccessible::PageTab).isEmpty());
    for (const char* label : {"Suivant", "Suivant", "Commencer"}) {
        stage.click(QString::fromUtf8(label));
    }
    EXPECT_EQ(stage.all(QAccessible::PageTab).size(), 7);
}

TEST(Onboarding, IsNotShownAgain) {
    Stage stage;
    stage.show();
    EXPECT_FALSE(stage.shows(QStringLiteral("Bienvenue dans Fenwhirl")));
}

TEST(Onboarding, SkippingTheHelperLeavesTheOfferToTheBanners) {
    Newcomer stage;
    stage.world.helper.installed = false;
    stage.show();
    for (const char* label : {"Suivant", "Suivant", "Commencer"}) {
        stage.click(QString::fromUtf8(label));
    }
    EXPECT_EQ(stage.world.helper.installs, 0);
    stage.monitor().apply(Preset::game);
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
    stage.show(menuPanelFile());
    EXPECT_NE(stage.find(QStringLiteral("Activer le contrôle des ventilateurs"), QAccessible::Button),
              nullptr);
}

TEST(Onboarding, InstallingTheHelperShowsThatControlIsActive) {
    Newcomer stage;
    stage.world.helper.installed = false;
    stage.show();
    stage.click(QStringLiteral("Suivant"));
    EXPECT_FALSE(stage.shows(QStringLiteral("Contrôle activé")));
    stage.click(QStringLiteral("Activer le contrôle"));
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperInstalled(); }));
    EXPECT_TRUE(stage.shows(QStringLiteral("Contrôle activé")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle")));
}

TEST(Onboarding, AFailedInstallationReturnsToTheButton) {
    Newcomer stage;
    stage.world.helper.installed = false;
    stage.world.helper.installSucceeds = false;
    stage.show();
    stage.click(QStringLiteral("Suivant"));
    stage.click(QStringLiteral("Activer le contrôle"));
    ASSERT_TRUE(waitUntil([&] { return !stage.monitor().isInstalling(); }));
    EXPECT_TRUE(stage.shows(QStringLiteral("Activer le contrôle")));
    stage.click(QStringLiteral("Suivant")); // and the user can leave the step
    EXPECT_TRUE(stage.shows(QStringLiteral("Tout est prêt")));
}

TEST(Onboarding, AnUnfinishedIntroductionStartsAgain) {
    Newcomer stage;
    stage.show();
    stage.click(QStringLiteral("Suivant"));
    ASSERT_TRUE(stage.shows(QStringLiteral("Pilote tes ventilateurs")));
    EXPECT_FALSE(stage.world.preferences.boolean(QStringLiteral("didOnboard")).value_or(false));
    Newcomer again; // the next start, with the preferences of the first
    again.onboarded = stage.world.preferences.boolean(QStringLiteral("didOnboard")).value_or(false);
    again.show();
    EXPECT_TRUE(again.shows(QStringLiteral("Bienvenue dans Fenwhirl")));
}

TEST(Onboarding, ReturnGoesForwardAndNothingBehindItHasTheKeyboard) {
    Newcomer stage;
    stage.show();
    for (int i = 0; i < 12; ++i) {
        stage.press(Qt::Key_Tab);
        QQuickItem* focused = stage.window().activeFocusItem();
        QAccessibleInterface* item = QAccessible::queryAccessibleInterface(focused);
        ASSERT_NE(item, nullptr);
        const QString name = item->text(QAccessible::Name);
        EXPECT_TRUE(name == QStringLiteral("Langue") || name == QStringLiteral("Suivant"))
            << name.toStdString();
    }
}

TEST(Onboarding, SpeaksAnotherLanguageAsSoonAsItIsChosen) {
    Newcomer stage;
    stage.show();
    stage.models().preferences()->setLanguage(static_cast<int>(AppLanguage::en));
    EXPECT_FALSE(stage.shows(QStringLiteral("Bienvenue dans Fenwhirl")));
    EXPECT_TRUE(stage.texts().join(u'|').contains(QStringLiteral("Welcome")));
    stage.models().preferences()->setLanguage(static_cast<int>(AppLanguage::fr));
}

} // namespace

} // namespace Fenwhirl
