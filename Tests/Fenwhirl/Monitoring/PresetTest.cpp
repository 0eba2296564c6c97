#include "Fenwhirl/Monitoring/Preset.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Monitoring/AppTheme.h"
#include "Fenwhirl/Monitoring/Page.h"

#include <gtest/gtest.h>
#include <vector>

namespace Fenwhirl {

TEST(Preset, WordsAreStoredInOrder) {
    std::vector<std::string_view> words;
    for (const Preset preset : allPresets) {
        words.push_back(rawValue(preset));
        EXPECT_EQ(presetFromRawValue(rawValue(preset)), preset);
    }
    EXPECT_EQ(words, (std::vector<std::string_view>{"auto", "silent", "balanced", "game", "max"}));
    for (const auto* unknown : {"", "Auto", "turbo", "max "}) {
        EXPECT_EQ(presetFromRawValue(unknown), std::nullopt) << unknown;
    }
}

TEST(Preset, SettingsAreThoseOfTheTable) {
    EXPECT_EQ(settingFor(Preset::automatic, 6000), FanSetting());
    EXPECT_EQ(settingFor(Preset::silent, 6000), (FanSetting{FanModeKind::sensor, 3000, "", 65, 95}));
    EXPECT_EQ(settingFor(Preset::balanced, 6000), (FanSetting{FanModeKind::sensor, 3000, "", 50, 90}));
    EXPECT_EQ(settingFor(Preset::game, 6000), (FanSetting{FanModeKind::sensor, 3000, "", 40, 80}));
    EXPECT_EQ(settingFor(Preset::max, 5432.5), (FanSetting{FanModeKind::constant, 5432.5, "", 50, 90}));
}

TEST(Preset, TitlesAndDetailsFollowTheLanguage) {
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(title(Preset::automatic), QStringLiteral("Auto"));
    EXPECT_EQ(title(Preset::silent), QStringLiteral("Silencieux"));
    EXPECT_EQ(title(Preset::balanced), QStringLiteral("Équilibré"));
    EXPECT_EQ(title(Preset::game), QStringLiteral("Jeu"));
    EXPECT_EQ(title(Preset::max), QStringLiteral("Max"));
    EXPECT_EQ(detail(Preset::automatic),
              QStringLiteral("Laisse macOS gérer les ventilateurs, comme d'origine."));
    EXPECT_EQ(
        detail(Preset::silent),
        QStringLiteral("Ventilateurs discrets : ils accélèrent seulement quand le Mac chauffe vraiment."));
    EXPECT_EQ(detail(Preset::balanced),
              QStringLiteral("Bon compromis entre bruit et fraîcheur pour l'usage de tous les jours."));
    EXPECT_EQ(detail(Preset::game), QStringLiteral("Refroidit tôt pour les jeux et les gros calculs."));
    EXPECT_EQ(detail(Preset::max),
              QStringLiteral("Ventilateurs à fond en permanence. Bruyant, mais le Mac reste le plus frais "
                             "possible."));
    Localizer::setLanguage(AppLanguage::en);
    EXPECT_NE(title(Preset::game), QStringLiteral("Jeu"));
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(Preset, IsFoundByItsNameHoweverThatIsWritten) {
    Localizer::setLanguage(AppLanguage::it);
    for (const auto* const name :
         {u"silent", u"SILENT", u"Silencieux", u"silencieux", u" SILENCIEUX ", u"leise", u"LEISE"}) {
        EXPECT_EQ(presetFromName(QString::fromUtf16(name)), Preset::silent)
            << QString::fromUtf16(name).toStdString();
    }
    // The accent as a letter of its own, as file systems and keyboards of Macs write it.
    EXPECT_EQ(presetFromName(QStringLiteral("e\u0301quilibre\u0301")), Preset::balanced);
    for (const auto* const name : {u"", u" ", u"sil", u"silencieuxx"}) {
        EXPECT_EQ(presetFromName(QString::fromUtf16(name)), std::nullopt)
            << QString::fromUtf16(name).toStdString();
    }
    EXPECT_EQ(Localizer::language(), AppLanguage::it) << "the language is as before";
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(AppTheme, WordsAreStoredInOrder) {
    std::vector<std::string_view> words;
    for (const AppTheme theme : allAppThemes) {
        words.push_back(rawValue(theme));
        EXPECT_EQ(appThemeFromRawValue(rawValue(theme)), theme);
    }
    EXPECT_EQ(words, (std::vector<std::string_view>{"dark", "light", "auto"}));
    EXPECT_EQ(appThemeFromRawValue("blue"), std::nullopt);
}

TEST(Page, WordsAreThoseOfQML) {
    std::vector<std::string_view> words;
    for (const Page page : allPages) {
        words.push_back(rawValue(page));
        EXPECT_EQ(pageFromRawValue(rawValue(page)), page);
    }
    EXPECT_EQ(words, (std::vector<std::string_view>{"dashboard", "fans", "sensors", "apps", "presets",
                                                    "alerts", "settings"}));
    EXPECT_EQ(pageFromRawValue("home"), std::nullopt);
}

} // namespace Fenwhirl
