// Every text of every window in every language, at the usual and at the smallest window size: no text is cut,
// crosses an edge or overlaps another. The same with larger texts in the longest languages, where a tooltip
// may show the end of a name.

#include "ShownText.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QQuickItem>
#include <QTest>

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace Fenwhirl {

namespace {

FanSetting widestSetting(FanModeKind mode) {
    FanSetting setting;
    setting.mode = mode;
    setting.constantRPM = 5950;
    setting.startTemp = 80;
    setting.maxTemp = 100;
    return setting;
}

constexpr QSize usualSize(1040, 680);
constexpr QSize smallestSize(920, 560);

constexpr std::array longLanguages = {AppLanguage::de, AppLanguage::pt, AppLanguage::ru};

// `within` and `mayBeCut` as for shownTexts and layoutFaults.
void expectItFits(Stage& stage, AppLanguage language, double scale, const std::string& where,
                  const QByteArray& within, QStringList mayBeCut) {
    stage.monitor().setLanguage(language);
    // Two frames: an item that follows the size of another, or a window that follows its content, is laid out
    // one frame later.
    static_cast<void>(stage.window().grabWindow());
    static_cast<void>(stage.window().grabWindow());
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return stage.window().contentItem()->size() == stage.window().size(); }));
    const QList<ShownText> texts = shownTexts(stage.window(), within);
    EXPECT_GE(texts.size(), 3) << where << " in " << rawValue(language);
    for (const ShownText& shown : texts) {
        if (scale > 1 && shown.explained) {
            mayBeCut.append(shown.text);
        }
    }
    for (const QString& fault : layoutFaults(texts, mayBeCut, scale)) {
        ADD_FAILURE() << where << " in " << rawValue(language) << " x " << scale << ": "
                      << fault.toStdString();
    }
}

void expectEverythingFits(Stage& stage, const std::string& where, const QByteArray& within = {},
                          const QStringList& mayBeCut = {}) {
    for (const AppLanguage language : allAppLanguages) {
        expectItFits(stage, language, 1, where, within, mayBeCut);
    }
    for (const double scale : {1.25, 1.5, 2.0}) {
        stage.setTextScale(scale);
        for (const AppLanguage language : longLanguages) {
            expectItFits(stage, language, scale, where, within, mayBeCut);
        }
    }
    stage.setTextScale(1);
    stage.monitor().setLanguage(AppLanguage::fr);
}

void expectPageFits(Stage& stage, Page page, const char* where) {
    stage.monitor().setSelectedPage(page);
    for (const QSize size : {usualSize, smallestSize}) {
        stage.window().resize(size);
        ASSERT_TRUE(QTest::qWaitFor([&] { return stage.window().contentItem()->size() == size; }));
        expectEverythingFits(stage, where + std::string(size == smallestSize ? " (smallest)" : ""));
    }
}

// Fast and hot fans in each of the modes, which show the most text and the widest numbers.
TEST(TextFit, OnTheFansPages) {
    Stage stage;
    for (int fan = 0; fan < 2; ++fan) {
        stage.world.setFan(fan, 5999);
    }
    stage.world.setCelsius(88);
    stage.start();
    stage.monitor().setSetting(0, widestSetting(FanModeKind::constant));
    stage.monitor().setSetting(1, widestSetting(FanModeKind::sensor));
    stage.show();
    expectPageFits(stage, Page::dashboard, "dashboard, warm");
    expectPageFits(stage, Page::fans, "fans");
    stage.world.setCelsius(95);
    stage.poll();
    expectPageFits(stage, Page::dashboard, "dashboard, hot");
}

TEST(TextFit, OfAMacWithoutFans) {
    Stage stage;
    stage.world.smc.setNumber("FNum", "ui8 ", 0);
    stage.show();
    expectPageFits(stage, Page::dashboard, "dashboard");
    expectPageFits(stage, Page::fans, "fans");
}

TEST(TextFit, OfTheOfferToActivateAndOfAnError) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.world.loginItemWorks = false;
    stage.show();
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.monitor().setLaunchAtLogin(true);
    ASSERT_TRUE(stage.models().control()->offersActivation());
    ASSERT_FALSE(stage.monitor().controlError().isEmpty());
    for (const Page page : {Page::dashboard, Page::fans, Page::presets, Page::settings}) {
        expectPageFits(stage, page, rawValue(page).data());
    }
}

TEST(TextFit, OfTheOfferToUpdateTheHelper) {
    Stage stage;
    stage.world.helper.setVersion("1");
    stage.show();
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperOutdated(); }));
    expectPageFits(stage, Page::dashboard, "dashboard");
    expectPageFits(stage, Page::settings, "settings");
}

TEST(TextFit, OfEverySensorsName) {
    Stage stage;
    // All well-known sensors, and one of each kind whose name is generated from its key. Rows exist only for
    // the visible part of the list.
    for (const char* const key :
         {"TC0D", "TC0E", "TC0F", "TC0H", "TCXC", "TCGC", "TCSA", "TG0P", "TG0D", "TG0H",
          "TM0P", "TM0S", "Th0H", "TH0A", "TH0B", "Ts0P", "Ts1P", "Ts0S", "TaLP", "TaRF",
          "TA0P", "TB0T", "TB1T", "TB2T", "TW0P", "Tp0P", "TPCD", "TL0P", "TN0P", "TN0D",
          "TC1C", "Te05", "Tg0f", "Tm02", "Ts9Q", "Tb7x", "TZ9X", "Tp0D"}) {
        stage.world.smc.setNumber(key, "sp78", 105);
    }
    stage.windowSize = {920, 2400};
    stage.showPage(Page::sensors);
    // One name is too long: it is one of the French source texts, which are fixed. Its tooltip shows it in
    // full.
    expectEverythingFits(stage, "sensors", {}, {QStringLiteral("Contrôleur de plateforme")});
}

TEST(TextFit, OnTheAppsPage) {
    Stage stage;
    stage.show();
    expectPageFits(stage, Page::apps, "at rest");
    stage.setApps({runningApp(QStringLiteral("Adobe Photoshop 2026"), 100, 80, true, 12345),
                   runningApp(QStringLiteral("Mail"), 100, 81, false, 12345)});
    expectPageFits(stage, Page::apps, "busy");
}

TEST(TextFit, OfTheQuestionBeforeQuitting) {
    Stage stage;
    stage.start();
    stage.setApps({runningApp(QStringLiteral("Adobe Photoshop 2026"), 100, 80, true, 12345)});
    stage.windowSize = smallestSize;
    stage.showPage(Page::apps);
    stage.click(QStringLiteral("Adobe Photoshop 2026"), QAccessible::CheckBox);
    ASSERT_TRUE(stage.models().apps()->asking());
    expectEverythingFits(stage, "question", "QQuickOverlay");
}

TEST(TextFit, OnTheOtherPages) {
    Stage stage;
    stage.show();
    expectPageFits(stage, Page::presets, "presets");
    expectPageFits(stage, Page::alerts, "alerts");
    expectPageFits(stage, Page::settings, "settings");
}

TEST(TextFit, OfTheIntroduction) {
    for (const bool installed : {false, true}) {
        Stage stage;
        stage.onboarded = false;
        stage.windowSize = smallestSize;
        stage.world.helper.installed = installed;
        stage.show();
        for (int step = 0; step < 3; ++step) {
            expectEverythingFits(stage, "step " + std::to_string(step), "Onboarding");
            stage.press(Qt::Key_Return);
        }
        EXPECT_TRUE(stage.monitor().didOnboard());
    }
}

TEST(TextFit, OfTheStatusItemsPanel) {
    Stage stage;
    stage.world.helper.installed = false;
    for (const char* const key : {"TCXC", "TG0H"}) {
        stage.world.smc.setNumber(key, "sp78", 88);
    }
    stage.show(menuPanelFile());
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.world.loginItemWorks = false;
    stage.monitor().setLaunchAtLogin(true); // provokes an error message
    ASSERT_TRUE(stage.models().control()->offersActivation());
    ASSERT_FALSE(stage.monitor().controlError().isEmpty());
    expectEverythingFits(stage, "panel");
}

TEST(TextFit, OfTheMenus) {
    Stage stage;
    for (const char* const key : {"TCXC", "TPCD", "TG0H", "Tp0D"}) {
        stage.world.smc.setNumber(key, "sp78", 60);
    }
    stage.start();
    stage.monitor().setSetting(0, widestSetting(FanModeKind::sensor));
    stage.showPage(Page::fans);
    for (const Page page : {Page::fans, Page::dashboard, Page::settings}) {
        stage.monitor().setSelectedPage(page);
        stage.click(stage.all(QAccessible::ComboBox).value(0));
        expectEverythingFits(stage, "menu of page " + std::to_string(static_cast<int>(page)),
                             "QQuickOverlay");
        stage.press(Qt::Key_Escape);
    }
}

} // namespace

} // namespace Fenwhirl
