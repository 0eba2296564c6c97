// A change of language takes effect at once and everywhere: the screen then shows exactly what it would show
// if the program had been started in that language.

#include "ShownText.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace Fenwhirl {

namespace {

// Brings a stage to the situation in which the language changes. It must not depend on any language.
using Scene = std::function<void(Stage& stage)>;

// All drawn texts, and all names and descriptions that a screen reader says.
QStringList everythingSaid(Stage& stage) {
    static_cast<void>(stage.window().grabWindow());
    QStringList said = stage.texts() + stage.descriptions() + stage.values();
    for (const ShownText& text : shownTexts(stage.window())) {
        said.append(text.text);
    }
    return said;
}

void startIn(Stage& stage, AppLanguage language) {
    stage.world.preferences.setText(QStringLiteral("language"),
                                    QString::fromStdString(std::string(rawValue(language))));
}

// What is different, in one line for each text; empty when nothing is. GoogleTest would print lists of QString as numbers.
std::string differences(const QStringList& shown, const QStringList& expected) {
    std::string lines;
    const auto add = [&lines](const QString& one, const char* relation, const QString& other) {
        lines.append("\n  \"" + one.toStdString() + "\" " + relation + other.toStdString());
    };
    if (shown.size() == expected.size()) {
        for (qsizetype i = 0; i < shown.size(); ++i) {
            if (shown[i] != expected[i]) {
                add(shown[i], "instead of ", u'"' + expected[i] + u'"');
            }
        }
        return lines;
    }
    QStringList missing = expected;
    for (const QString& text : shown) {
        if (!missing.removeOne(text)) {
            add(text, "should not be there", {});
        }
    }
    for (const QString& text : missing) {
        add(text, "is missing", {});
    }
    return lines;
}

void expectFollows(const Scene& scene) {
    constexpr std::array languages = {AppLanguage::srCyrl, AppLanguage::fr};
    std::array<QStringList, languages.size()> expected;
    for (std::size_t i = 0; i < languages.size(); ++i) {
        Stage started;
        startIn(started, languages[i]);
        scene(started);
        expected[i] = everythingSaid(started);
        EXPECT_GT(expected[i].size(), 5);
    }
    Stage changed;
    startIn(changed, AppLanguage::de);
    scene(changed);
    for (std::size_t i = 0; i < languages.size(); ++i) {
        EXPECT_NE(differences(everythingSaid(changed), expected[i]), "")
            << "another language is shown as " << rawValue(languages[i]);
        changed.monitor().setLanguage(languages[i]);
        const std::string different = differences(everythingSaid(changed), expected[i]);
        EXPECT_TRUE(different.empty())
            << "after the change to " << rawValue(languages[i]) << ":" << different;
    }
}

void openMenu(Stage& stage) {
    stage.click(stage.all(QAccessible::ComboBox).value(0));
}

TEST(LanguageChange, ReachesEveryPage) {
    for (const Page page : allPages) {
        expectFollows([page](Stage& stage) {
            stage.start();
            stage.setApps({runningApp(QStringLiteral("Blender"), 37, 7),
                           runningApp(QStringLiteral("Mail"), 37, 8, false)});
            FanSetting setting;
            setting.mode = FanModeKind::sensor;
            stage.monitor().setSetting(0, setting);
            setting.mode = FanModeKind::constant;
            stage.monitor().setSetting(1, setting);
            stage.showPage(page);
        });
    }
}

TEST(LanguageChange, ReachesWhatAMacWithoutFansAndSensorsShows) {
    for (const Page page : {Page::dashboard, Page::fans, Page::apps}) {
        expectFollows([page](Stage& stage) {
            stage.world.smc.setNumber("FNum", "ui8 ", 0);
            stage.world.smc.remove("TC0P");
            stage.computerName = QString();
            stage.showPage(page);
        });
    }
}

TEST(LanguageChange, ReachesBannersThatShowAlready) {
    expectFollows([](Stage& stage) {
        stage.world.helper.installed = false;
        stage.world.loginItemWorks = false;
        stage.show();
        stage.monitor().apply(Preset::max);
        stage.poll();
        stage.monitor().setLaunchAtLogin(true);
        ASSERT_TRUE(stage.models().control()->offersActivation());
    });
    expectFollows([](Stage& stage) {
        stage.world.helper.setVersion("1");
        stage.show();
        ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperOutdated(); }));
    });
    expectFollows([](Stage& stage) {
        stage.world.helper.installed = false;
        stage.world.helper.installSucceeds = false;
        stage.show();
        stage.monitor().installHelper();
        ASSERT_TRUE(waitUntil([&] { return !stage.monitor().controlError().isEmpty(); }));
    });
}

TEST(LanguageChange, ReachesAnOpenQuestion) {
    expectFollows([](Stage& stage) {
        stage.start();
        stage.setApps({runningApp(QStringLiteral("Blender"), 37, 7)});
        stage.showPage(Page::apps);
        stage.click(QStringLiteral("Blender"), QAccessible::CheckBox);
        ASSERT_TRUE(stage.models().apps()->asking());
    });
}

TEST(LanguageChange, ReachesOpenMenus) {
    for (const Page page : {Page::dashboard, Page::settings}) {
        expectFollows([page](Stage& stage) {
            stage.showPage(page);
            openMenu(stage);
        });
    }
    expectFollows([](Stage& stage) {
        stage.start();
        FanSetting setting;
        setting.mode = FanModeKind::sensor;
        stage.monitor().setSetting(0, setting);
        stage.showPage(Page::fans);
        openMenu(stage);
    });
}

TEST(LanguageChange, ReachesEveryStepOfTheIntroduction) {
    for (int steps = 0; steps < 3; ++steps) {
        expectFollows([steps](Stage& stage) {
            stage.onboarded = false;
            stage.world.helper.installed = false;
            stage.show();
            for (int i = 0; i < steps; ++i) {
                stage.press(Qt::Key_Return);
            }
        });
    }
}

TEST(LanguageChange, ReachesTheStatusItemsPanel) {
    expectFollows([](Stage& stage) {
        stage.world.helper.installed = false;
        stage.show(menuPanelFile());
        stage.monitor().apply(Preset::max);
        stage.poll();
        ASSERT_TRUE(stage.models().control()->offersActivation());
    });
}

// No view may remember a text: windows that were asleep wake up in the current language.
TEST(LanguageChange, ReachesWhatWasAsleep) {
    Stage stage;
    stage.show();
    stage.models().setAwake(false);
    stage.monitor().setLanguage(AppLanguage::en);
    stage.models().setAwake(true);
    EXPECT_TRUE(stage.shows(QStringLiteral("Everything’s fine")));
    EXPECT_TRUE(stage.shows(QStringLiteral("Left fan")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Ventilateur gauche")));
    stage.monitor().setLanguage(AppLanguage::fr);
}

TEST(LanguageChange, ReachesNotificationsFromThenOn) {
    Stage stage;
    stage.showPage(Page::alerts);
    stage.models().preferences()->testAlert();
    stage.monitor().setLanguage(AppLanguage::ru);
    stage.models().preferences()->testAlert();
    ASSERT_EQ(stage.notifications.size(), 2U);
    EXPECT_EQ(stage.notifications[0].second, QStringLiteral("Ceci est une alerte de test."));
    EXPECT_EQ(stage.notifications[1].second, QStringLiteral("Это пробное оповещение."));
    stage.monitor().setLanguage(AppLanguage::fr);
}

} // namespace

} // namespace Fenwhirl
