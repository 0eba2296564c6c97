#include "Fenwhirl/Localization/LocalizerTranslator.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

// The call that QML's qsTr and QObject::tr end up making.
QString translated(const char* french, const char* context = "DashboardView", const char* comment = nullptr) {
    return QCoreApplication::translate(context, french, comment);
}

class Translator : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(QCoreApplication::installTranslator(&translator_)); }

    void TearDown() override {
        QCoreApplication::removeTranslator(&translator_);
        Localizer::setLanguage(AppLanguage::automatic);
    }

private:
    LocalizerTranslator translator_;
};

} // namespace

TEST_F(Translator, AnswersFromTheLookupWhateverTheContext) {
    Localizer::setLanguage(AppLanguage::de);
    EXPECT_EQ(translated("Réglages"), QStringLiteral("Einstellungen"));
    EXPECT_EQ(translated("Réglages", "", ""), QStringLiteral("Einstellungen"));
    EXPECT_EQ(translated("Réglages", "SidebarView", "a comment"), QStringLiteral("Einstellungen"));
}

TEST_F(Translator, FollowsTheLanguageAtOnce) {
    Localizer::setLanguage(AppLanguage::en);
    EXPECT_EQ(translated("Quitter"), QStringLiteral("Quit"));
    Localizer::setLanguage(AppLanguage::srCyrl);
    EXPECT_EQ(translated("Fermer %@ ?"), QStringLiteral("Затворити %@?"));
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(translated("Quitter"), QStringLiteral("Quitter"));
}

TEST_F(Translator, AnswersTheMenuOfMacOSWithTheWordsOfTheSystem) {
    Localizer::setLanguage(AppLanguage::de);
    EXPECT_EQ(translated("Hide %1", "MAC_APPLICATION_MENU"), QStringLiteral("%1 ausblenden"));
    EXPECT_EQ(translated("Close", "SystemTerms"), QStringLiteral("Schließen"));
    EXPECT_EQ(translated("Close", "QShortcut"), QStringLiteral("Close")) << "another's word";
    EXPECT_EQ(translated("Capteurs", "SystemTerms"), QStringLiteral("Capteurs"));
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(translated("Services", "MAC_APPLICATION_MENU"), QStringLiteral("Services"));
    EXPECT_EQ(translated("Show All", "MAC_APPLICATION_MENU"), QStringLiteral("Tout afficher"));
}

TEST_F(Translator, LeavesTextsWithoutARowAlone) {
    Localizer::setLanguage(AppLanguage::ru);
    EXPECT_EQ(translated("Une phrase inconnue"), QStringLiteral("Une phrase inconnue"));
    EXPECT_EQ(translated("OK", "QPlatformTheme"), QStringLiteral("OK"));
    EXPECT_EQ(translated(""), QString());
    EXPECT_EQ(translated("\xFF\xFE"), QString::fromUtf8("\xFF\xFE"));
}

} // namespace Fenwhirl
