#include "Fenwhirl/Localization/AppLanguage.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace Fenwhirl {

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

} // namespace Fenwhirl
