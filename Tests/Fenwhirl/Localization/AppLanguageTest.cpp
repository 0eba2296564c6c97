#include "Fenwhirl/Localization/AppLanguage.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <string>
#include <vector>

TEST(AppLanguage, StoresTheseWordsInThisOrder) {
    std::vector<std::string> words;
    for (const AppLanguage language : allAppLanguages) {
        words.emplace_back(rawValue(language));
    }
    const std::vector<std::string> expected = {"auto", "fr", "en", "sr", "sr-Cyrl",
                                               "de",   "es", "it", "pt", "ru"};
    EXPECT_EQ(words, expected);
}

TEST(AppLanguage, IsFoundByItsWord) {
    for (const AppLanguage language : allAppLanguages) {
        EXPECT_EQ(appLanguageFromRawValue(rawValue(language)), language);
    }
}

TEST(AppLanguage, IsNotFoundByAnyOtherWord) {
    for (const char* const word :
         {"", "FR", "Auto", "sr-Latn", "sr-cyrl", "srCyrl", "fr ", " fr", "fra", "automatic"}) {
        EXPECT_EQ(appLanguageFromRawValue(word), std::nullopt) << word;
    }
}

TEST(AppLanguage, CallsItselfByItsOwnNameInEveryLanguage) {
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

TEST(AppLanguage, NamesTheAutomaticChoiceInTheShownLanguage) {
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(nativeName(AppLanguage::automatic), QStringLiteral("Automatique"));
    Localizer::setLanguage(AppLanguage::ru);
    EXPECT_EQ(nativeName(AppLanguage::automatic), QStringLiteral("Автоматически"));
    Localizer::setLanguage(AppLanguage::srCyrl);
    EXPECT_EQ(nativeName(AppLanguage::automatic), QStringLiteral("Аутоматски"));
    Localizer::setLanguage(AppLanguage::automatic);
}
