#include "Fenwhirl/Localization/Localizer.h"

#include "Fenwhirl/Localization/FrenchTexts.h"

#include <array>
#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <vector>

namespace Fenwhirl {

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

// Sets the interface language for the duration of a test.
class Localization : public testing::Test {
protected:
    void TearDown() override { Localizer::setLanguage(AppLanguage::automatic); }

    static QString in(AppLanguage language, const char* french) {
        Localizer::setLanguage(language);
        return localized(text(french));
    }
};

} // namespace

TEST_F(Localization, FollowsTheSystemAtFirst) {
    EXPECT_EQ(Localizer::language(), AppLanguage::automatic);
}

TEST_F(Localization, ResolvesToTheChosenLanguage) {
    for (const AppLanguage language : allAppLanguages) {
        if (language != AppLanguage::automatic) {
            Localizer::setLanguage(language);
            EXPECT_EQ(Localizer::language(), language);
            EXPECT_EQ(Localizer::resolved(), language);
        }
    }
}

TEST_F(Localization, TranslatesIntoEveryLanguage) {
    const std::array<std::pair<AppLanguage, const char*>, 8> quit = {{{AppLanguage::en, "Quit %@?"},
                                                                      {AppLanguage::srLatn, "Zatvoriti %@?"},
                                                                      {AppLanguage::srCyrl, "Затворити %@?"},
                                                                      {AppLanguage::de, "%@ beenden?"},
                                                                      {AppLanguage::es, "¿Cerrar %@?"},
                                                                      {AppLanguage::it, "Chiudere %@?"},
                                                                      {AppLanguage::pt, "Fechar %@?"},
                                                                      {AppLanguage::ru, "Закрыть %@?"}}};
    for (const auto& [language, expected] : quit) {
        EXPECT_EQ(in(language, "Fermer %@ ?"), text(expected));
    }
    const std::array<std::pair<AppLanguage, const char*>, 8> automatic = {
        {{AppLanguage::en, "Automatic"},
         {AppLanguage::srLatn, "Automatski"},
         {AppLanguage::srCyrl, "Аутоматски"},
         {AppLanguage::de, "Automatisch"},
         {AppLanguage::es, "Automático"},
         {AppLanguage::it, "Automatico"},
         {AppLanguage::pt, "Automático"},
         {AppLanguage::ru, "Автоматически"}}};
    for (const auto& [language, expected] : automatic) {
        EXPECT_EQ(in(language, "Automatique"), text(expected));
    }
}

TEST_F(Localization, AnswersNothingInFrench) {
    Localizer::setLanguage(AppLanguage::fr);
    for (const std::u16string_view french : frenchTexts) {
        EXPECT_EQ(Localizer::lookup(QStringView(french)), std::nullopt);
        EXPECT_EQ(localized(QStringView(french).toString()), QStringView(french));
    }
}

TEST_F(Localization, AnswersEveryTextInEveryOtherLanguage) {
    for (const AppLanguage language : allAppLanguages) {
        if (language == AppLanguage::automatic || language == AppLanguage::fr) {
            continue;
        }
        Localizer::setLanguage(language);
        for (const std::u16string_view french : frenchTexts) {
            const auto translated = Localizer::lookup(QStringView(french));
            ASSERT_TRUE(translated.has_value());
            EXPECT_FALSE(translated->isEmpty());
            EXPECT_EQ(translated->count(text("%@")), QStringView(french).count(text("%@")));
        }
    }
}

TEST_F(Localization, ShowsATextWithoutARowInFrench) {
    for (const AppLanguage language : allAppLanguages) {
        EXPECT_EQ(in(language, "Une phrase inconnue : %@"), text("Une phrase inconnue : %@"));
        EXPECT_EQ(Localizer::lookup(text("applications")), std::nullopt) << "letter case counts";
        EXPECT_EQ(Localizer::lookup(text("Applications ")), std::nullopt) << "so do blanks";
        EXPECT_EQ(Localizer::lookup(QStringView()), std::nullopt);
    }
}

TEST_F(Localization, FillsPlaceholdersAfterTheLookup) {
    Localizer::setLanguage(AppLanguage::de);
    EXPECT_EQ(localized(u"%@ utilise %@ du processeur.", {text("Blender"), text("37 %")}),
              text("Blender nutzt 37 % der Prozessorleistung."));
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(localized(u"Ventilateur %@", {text("3")}), text("Ventilateur 3"));
    Localizer::setLanguage(AppLanguage::srCyrl);
    EXPECT_EQ(localized(u"Fermer %@ ?", {text("Ljuba")}), text("Затворити Ljuba?"))
        << "values are not transliterated";
}

TEST_F(Localization, DoesNotFillPlaceholdersOfTheValues) {
    EXPECT_EQ(filledPlaceholders(text("%@ – %@"), {text("%@"), text("%1")}), text("%@ – %1"));
}

TEST_F(Localization, FillsWithTooFewAndTooManyValues) {
    EXPECT_EQ(filledPlaceholders(text("%@ – %@ tr/min"), {text("1")}), text("1 – %@ tr/min"));
    EXPECT_EQ(filledPlaceholders(text("%@ – %@ tr/min"), {}), text("%@ – %@ tr/min"));
    EXPECT_EQ(filledPlaceholders(text("%@!"), {text("1"), text("2")}), text("1!"));
    EXPECT_EQ(filledPlaceholders(text("% @ %%@"), {text("x")}), text("% @ %x"));
    EXPECT_EQ(filledPlaceholders(QString(), {text("x")}), QString());
}

TEST_F(Localization, ReturnsTextsThatOutliveTheLanguage) {
    Localizer::setLanguage(AppLanguage::en);
    const QString english = localized(u"Capteurs");
    QString changed = english;
    Localizer::setLanguage(AppLanguage::ru);
    changed.append(u'!');
    EXPECT_EQ(english, text("Sensors"));
    EXPECT_EQ(changed, text("Sensors!"));
}

// Mainly for the thread sanitizer.
TEST_F(Localization, IsLookedUpFromManyThreadsWhileTheLanguageChanges) {
    std::vector<std::thread> readers;
    readers.reserve(4);
    for (int reader = 0; reader < 4; ++reader) {
        readers.emplace_back([] {
            const std::set<QString> possible = {text("Batterie"), text("Battery"),    text("Baterija"),
                                                text("Батерија"), text("Batería"),    text("Batteria"),
                                                text("Bateria"),  text("Аккумулятор")};
            for (int i = 0; i < 2000; ++i) {
                ASSERT_TRUE(possible.contains(localized(u"Batterie")));
            }
        });
    }
    for (int i = 0; i < 2000; ++i) {
        Localizer::setLanguage(allAppLanguages[static_cast<std::size_t>(i) % allAppLanguages.size()]);
    }
    for (std::thread& reader : readers) {
        reader.join();
    }
}

} // namespace Fenwhirl
