#include "Fenwhirl/Localization/LanguageNames.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace Fenwhirl {

TEST(LanguageNames, AreTheirOwnInEveryShownLanguage) {
    const QStringList expected = {
        QStringLiteral("Français"),          QStringLiteral("English"),   QStringLiteral("Srpski (latinica)"),
        QStringLiteral("Српски (ћирилица)"), QStringLiteral("Deutsch"),   QStringLiteral("Español"),
        QStringLiteral("Italiano"),          QStringLiteral("Português"), QStringLiteral("Русский")};
    for (const AppLanguage shown : allAppLanguages) {
        Localizer::setLanguage(shown);
        QStringList names;
        for (const AppLanguage language : allAppLanguages) {
            if (language != AppLanguage::automatic) {
                names.append(nativeName(language));
            }
        }
        EXPECT_EQ(names, expected);
    }
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(LanguageNames, OfTheAutomaticChoiceIsInTheShownLanguage) {
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(nativeName(AppLanguage::automatic), QStringLiteral("Automatique"));
    Localizer::setLanguage(AppLanguage::ru);
    EXPECT_EQ(nativeName(AppLanguage::automatic), QStringLiteral("Автоматически"));
    Localizer::setLanguage(AppLanguage::srCyrl);
    EXPECT_EQ(nativeName(AppLanguage::automatic), QStringLiteral("Аутоматски"));
    Localizer::setLanguage(AppLanguage::automatic);
}

} // namespace Fenwhirl
