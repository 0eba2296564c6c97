#include "Fenwhirl/Localization/SystemTerms.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <QSet>

#include <array>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class SystemTermsInALanguage : public testing::TestWithParam<AppLanguage> {
protected:
    void SetUp() override { Localizer::setLanguage(GetParam()); }

    void TearDown() override { Localizer::setLanguage(AppLanguage::automatic); }
};

class WordsOfTheSystem : public testing::Test {
protected:
    void TearDown() override { Localizer::setLanguage(AppLanguage::automatic); }

    static QString in(AppLanguage language, QStringView english) {
        Localizer::setLanguage(language);
        return SystemTerms::text(english);
    }
};

} // namespace

TEST_P(SystemTermsInALanguage, AnswerWhatQtAndTheMenuBarAskFor) {
    for (const char16_t* const asked : {u"About %1",
                                        u"Preferences…",
                                        u"Services",
                                        u"Hide %1",
                                        u"Hide Others",
                                        u"Show All",
                                        u"Quit %1",
                                        u"Settings…",
                                        u"Edit",
                                        u"Cut",
                                        u"Copy",
                                        u"Paste",
                                        u"Select All",
                                        u"View",
                                        u"Window",
                                        u"Minimize",
                                        u"Zoom",
                                        u"Close",
                                        u"Bring All to Front",
                                        u"Help"}) {
        const QString english = QStringView(asked).toString();
        const auto words = SystemTerms::lookup(english);
        ASSERT_TRUE(words.has_value()) << english.toStdString();
        EXPECT_FALSE(words->isEmpty());
        EXPECT_EQ(words->count(QStringLiteral("%1")), english.count(QStringLiteral("%1")))
            << words->toStdString();
        EXPECT_EQ(words->count(u'%'), english.count(u'%'));
        EXPECT_EQ(words->trimmed(), *words);
        EXPECT_EQ(words->endsWith(u'…'), english.endsWith(u'…'));
        EXPECT_TRUE(SystemTerms::all().contains(english));
    }
}

// Two items in the same menu must not have the same name.
TEST_P(SystemTermsInALanguage, HaveDifferentNamesForDifferentThings) {
    QSet<QString> seen;
    QStringList asked = SystemTerms::all();
    EXPECT_EQ(asked.removeAll(QStringLiteral("Preferences…")), 1) << "that is Settings…";
    for (const QString& english : asked) {
        seen.insert(SystemTerms::text(english));
    }
    EXPECT_EQ(seen.size(), asked.size());
}

TEST_P(SystemTermsInALanguage, AreTheWordsOfThatLanguage) {
    int english = 0;
    for (const QString& asked : SystemTerms::all()) {
        english += *SystemTerms::lookup(asked) == asked ? 1 : 0;
    }
    const QStringList all = SystemTerms::all();
    if (GetParam() == AppLanguage::en) {
        EXPECT_EQ(english, all.size() - 1) << "all but \"Preferences…\"";
    } else {
        EXPECT_LE(english, 1) << "\"Services\" and \"Zoom\" are at home in several languages";
    }
    for (const QString& asked : all) {
        const QString words = SystemTerms::text(asked, QString());
        const bool cyrillic = GetParam() == AppLanguage::ru || GetParam() == AppLanguage::srCyrl;
        for (const QChar c : words) {
            EXPECT_TRUE(!c.isLetter() || (c.script() == QChar::Script_Cyrillic) == cyrillic)
                << words.toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfTheSystem, SystemTermsInALanguage,
                         testing::Values(AppLanguage::fr, AppLanguage::en, AppLanguage::srLatn,
                                         AppLanguage::srCyrl, AppLanguage::de, AppLanguage::es,
                                         AppLanguage::it, AppLanguage::pt, AppLanguage::ru));

TEST_F(WordsOfTheSystem, NameTheProgram) {
    EXPECT_EQ(in(AppLanguage::de, u"Quit %1"), QStringLiteral("Fenwhirl beenden"));
    EXPECT_EQ(in(AppLanguage::ru, u"Hide %1"), QStringLiteral("Скрыть Fenwhirl"));
    EXPECT_EQ(in(AppLanguage::srCyrl, u"About %1"), QStringLiteral("О апликацији Fenwhirl"));
    EXPECT_EQ(SystemTerms::text(u"Quit %1", QStringLiteral("%1")), QStringLiteral("Затвори %1"));
}

TEST_F(WordsOfTheSystem, LeaveEverythingElseAlone) {
    for (const AppLanguage language : allAppLanguages) {
        EXPECT_EQ(in(language, u"Start Dictation…"), QStringLiteral("Start Dictation…"));
        EXPECT_EQ(SystemTerms::lookup(u""), std::nullopt);
        EXPECT_EQ(SystemTerms::lookup(u"close"), std::nullopt) << "letter case counts";
    }
}

} // namespace Fenwhirl
