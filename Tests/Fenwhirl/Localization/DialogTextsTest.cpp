#include "Fenwhirl/Localization/DialogTexts.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/LocalizerTranslator.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class WordsOfDialogs : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(QCoreApplication::installTranslator(&translator_)); }

    void TearDown() override {
        QCoreApplication::removeTranslator(&translator_);
        Localizer::setLanguage(AppLanguage::automatic);
    }

    static QString in(AppLanguage language, const char* context, const char* english) {
        Localizer::setLanguage(language);
        return QCoreApplication::translate(context, english);
    }

private:
    LocalizerTranslator translator_;
};

} // namespace

TEST_F(WordsOfDialogs, AreThoseOfPortugalAndSerbia) {
    EXPECT_EQ(in(AppLanguage::pt, "QFileDialog", "&Save"), QStringLiteral("&Guardar"));
    EXPECT_EQ(in(AppLanguage::pt, "QFileDialog", "Files"), QStringLiteral("Ficheiros"));
    EXPECT_EQ(in(AppLanguage::srLatn, "QPlatformTheme", "Cancel"), QStringLiteral("Otkaži"));
    EXPECT_EQ(in(AppLanguage::srCyrl, "QFileSystemModel", "Date Modified"), QStringLiteral("Датум измене"));
}

TEST_F(WordsOfDialogs, AreLeftToQtWhereItHasThem) {
    for (const AppLanguage language : {AppLanguage::fr, AppLanguage::en, AppLanguage::de, AppLanguage::es,
                                       AppLanguage::it, AppLanguage::ru}) {
        EXPECT_EQ(in(language, "QFileDialog", "&Save"), QStringLiteral("&Save"));
    }
}

TEST_F(WordsOfDialogs, LeaveEverythingElseAlone) {
    EXPECT_EQ(in(AppLanguage::pt, "QFileDialog", "Find Directory"), QStringLiteral("Find Directory"));
    EXPECT_EQ(in(AppLanguage::pt, "QShortcut", "Cancel"), QStringLiteral("Cancel"));
    EXPECT_EQ(in(AppLanguage::pt, "QFileDialog", "Capteurs"), QStringLiteral("Capteurs"))
        << "no text of ours";
    EXPECT_EQ(in(AppLanguage::pt, "SettingsPage", "Capteurs"), QStringLiteral("Sensores"));
}

TEST_F(WordsOfDialogs, KeepPlaceholdersMnemonicsAndBlanks) {
    for (const AppLanguage language : {AppLanguage::pt, AppLanguage::srLatn, AppLanguage::srCyrl}) {
        Localizer::setLanguage(language);
        for (const QString& english : DialogTexts::all()) {
            const auto words = DialogTexts::lookup(english);
            ASSERT_TRUE(words.has_value());
            EXPECT_EQ(words->count(QStringLiteral("%1")), english.count(QStringLiteral("%1")))
                << words->toStdString();
            EXPECT_EQ(words->count(u'&'), english.count(u'&')) << words->toStdString();
            EXPECT_EQ(words->endsWith(u' '), english.endsWith(u' ')) << words->toStdString();
            EXPECT_EQ(words->count(u'\n'), english.count(u'\n')) << words->toStdString();
            if (language == AppLanguage::srCyrl) {
                for (const QChar c : *words) {
                    EXPECT_TRUE(!c.isLetter() || c.script() == QChar::Script_Cyrillic)
                        << words->toStdString();
                }
            }
        }
    }
}

} // namespace Fenwhirl
