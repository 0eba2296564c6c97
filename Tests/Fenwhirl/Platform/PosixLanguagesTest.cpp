#include "Fenwhirl/Platform/PosixLanguages.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

QStringList tags(const char* languages, const char* messageLocale) {
    return languageTagsFromPosix(QString::fromUtf8(languages), QString::fromUtf8(messageLocale));
}

QStringList list(const char* tags) {
    return QString::fromUtf8(tags).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

TEST(PosixLanguages, ListTheVariableBeforeTheLocale) {
    EXPECT_EQ(tags("de_CH:fr", "it_IT.UTF-8"), list("de-CH fr it-IT"));
    EXPECT_EQ(tags("", "pt_PT.UTF-8"), list("pt-PT"));
    EXPECT_EQ(tags("ru", ""), list("ru"));
}

TEST(PosixLanguages, TakeTheScriptFromTheModifier) {
    EXPECT_EQ(tags("", "sr_RS.UTF-8@latin"), list("sr-Latn-RS"));
    EXPECT_EQ(tags("sr@latin", "sr_RS@cyrillic"), list("sr-Latn sr-Cyrl-RS"));
    EXPECT_EQ(tags("", "de_DE@euro"), list("de-DE"));
}

TEST(PosixLanguages, EndAtTheLocaleWithoutTranslations) {
    EXPECT_EQ(tags("", "C.UTF-8"), QStringList());
    EXPECT_EQ(tags("", "POSIX"), QStringList());
    EXPECT_EQ(tags("de:C:fr", "it_IT"), list("de"));
}

TEST(PosixLanguages, SkipEmptyAndSurviveMalformedNames) {
    EXPECT_EQ(tags("", ""), QStringList());
    EXPECT_EQ(tags(":::", ""), QStringList());
    EXPECT_EQ(tags("@latin:.UTF-8:_:de__", "_DE"), list("- de-_ -DE"));
    EXPECT_EQ(tags("\xFF:fr", "").size(), 2);
}

} // namespace Fenwhirl
