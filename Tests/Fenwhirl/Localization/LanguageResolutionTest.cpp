#include "Fenwhirl/Localization/LanguageResolution.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

AppLanguage languageFor(const char* tags) {
    return languageForPreferred(QString::fromUtf8(tags).split(u' '));
}

} // namespace

TEST(LanguageResolution, TakesTheFirstTagThatMatches) {
    EXPECT_EQ(languageFor("de-CH fr-FR"), AppLanguage::de);
    EXPECT_EQ(languageFor("en-GB fr-FR"), AppLanguage::en);
    EXPECT_EQ(languageFor("ja-JP nl-NL it-IT fr-FR"), AppLanguage::it);
}

TEST(LanguageResolution, KnowsEveryLanguage) {
    EXPECT_EQ(languageFor("fr"), AppLanguage::fr);
    EXPECT_EQ(languageFor("en-US"), AppLanguage::en);
    EXPECT_EQ(languageFor("de-DE"), AppLanguage::de);
    EXPECT_EQ(languageFor("es-419"), AppLanguage::es);
    EXPECT_EQ(languageFor("it"), AppLanguage::it);
    EXPECT_EQ(languageFor("pt-BR"), AppLanguage::pt);
    EXPECT_EQ(languageFor("ru-UA"), AppLanguage::ru);
}

TEST(LanguageResolution, TakesSerbianForCyrillicUnlessTheTagSaysLatin) {
    EXPECT_EQ(languageFor("sr"), AppLanguage::srCyrl);
    EXPECT_EQ(languageFor("sr-RS"), AppLanguage::srCyrl);
    EXPECT_EQ(languageFor("sr-Cyrl-RS"), AppLanguage::srCyrl);
    EXPECT_EQ(languageFor("sr-Latn-RS"), AppLanguage::srLatn);
    EXPECT_EQ(languageFor("SR-LATN"), AppLanguage::srLatn);
}

TEST(LanguageResolution, IgnoresLetterCase) {
    EXPECT_EQ(languageFor("FR-CA"), AppLanguage::fr);
    EXPECT_EQ(languageFor("De"), AppLanguage::de);
}

TEST(LanguageResolution, FallsBackToEnglish) {
    EXPECT_EQ(languageFor("ja-JP nl-NL"), AppLanguage::en);
    EXPECT_EQ(languageForPreferred({}), AppLanguage::en);
}

TEST(LanguageResolution, PassesOverMalformedTags) {
    const QStringList malformed = {QString(),
                                   QStringLiteral(""),
                                   QStringLiteral("-"),
                                   QStringLiteral("f"),
                                   QStringLiteral("\u0000fr"),
                                   QString(QChar(0xD800)),
                                   QString(10'000, u'x'),
                                   QStringLiteral("xfr")};
    EXPECT_EQ(languageForPreferred(malformed), AppLanguage::en);
    EXPECT_EQ(languageForPreferred(malformed + QStringList{QStringLiteral("ru")}), AppLanguage::ru);
}

} // namespace Fenwhirl
