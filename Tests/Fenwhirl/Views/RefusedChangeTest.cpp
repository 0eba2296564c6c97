// When the Mac refuses a change of the fans, a message appears where the change was made, until the user
// closes it.

#include "FittingWindow.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

const QString refused = QStringLiteral("Ce Mac n'a pas accepté le changement de vitesse du ventilateur.");

class OnEveryPageThatChangesFans : public testing::TestWithParam<Page> {};

TEST_P(OnEveryPageThatChangesFans, ARefusedChangeIsToldAboveTheContentUntilItIsClosed) {
    Stage stage;
    stage.world.helper.succeeds = false;
    stage.showPage(GetParam());
    EXPECT_FALSE(stage.shows(refused));
    stage.monitor().apply(Preset::max);
    stage.poll();
    const QAccessibleInterface* banner = stage.find(refused, QAccessible::AlertMessage);
    ASSERT_NE(banner, nullptr);
    static_cast<void>(stage.window().grabWindow());
    const int bottom = banner->rect().bottom();
    for (const QAccessible::Role role :
         {QAccessible::RadioButton, QAccessible::Slider, QAccessible::CheckBox}) {
        for (const QAccessibleInterface* control : stage.all(role)) {
            EXPECT_GT(control->rect().top(), bottom) << control->text(QAccessible::Name).toStdString();
        }
    }
    stage.click(QStringLiteral("Fermer"));
    EXPECT_FALSE(stage.shows(refused));
    EXPECT_EQ(stage.monitor().controlError(), QString());
}

INSTANTIATE_TEST_SUITE_P(RefusedChange, OnEveryPageThatChangesFans,
                         testing::Values(Page::dashboard, Page::fans, Page::presets, Page::settings),
                         [](const auto& page) { return std::string(rawValue(page.param)); });

TEST(RefusedChange, ThePresetsPageOffersTheHelperThatIsMissing) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.showPage(Page::presets);
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
    stage.click(QStringLiteral("Appliquer: Jeu"));
    stage.poll();
    EXPECT_TRUE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
    stage.click(QStringLiteral("Activer"));
    ASSERT_TRUE(waitUntil([&] { return stage.monitor().helperInstalled(); }));
    EXPECT_FALSE(stage.shows(QStringLiteral("Activer le contrôle des ventilateurs")));
}

TEST(RefusedChange, IsALineInThePanelUnderTheHealthOfTheMac) {
    Stage stage;
    stage.world.helper.succeeds = false;
    stage.show(menuPanelFile());
    const SizeLimitsCheck limits(stage.window());
    const int before = stage.window().height();
    stage.click(QStringLiteral("Max"), QAccessible::RadioButton);
    stage.poll();
    const QAccessibleInterface* line = stage.find(refused, QAccessible::AlertMessage);
    ASSERT_NE(line, nullptr);
    static_cast<void>(stage.window().grabWindow());
    const int lineHeight = line->rect().height();
    EXPECT_EQ(line->rect().top(),
              stage.find(QStringLiteral("Tout est normal"), QAccessible::StaticText)->rect().bottom() + 1 +
                  8);
    EXPECT_LT(line->rect().bottom(), stage.all(QAccessible::ListItem).first()->rect().top());
    ASSERT_TRUE(waitUntil([&] { return stage.window().height() == before + 8 + lineHeight; }));
    expectFixedSize(stage.window(), QSize(340, before + 8 + lineHeight));
    stage.click(QStringLiteral("Fermer"));
    EXPECT_FALSE(stage.shows(refused));
    EXPECT_EQ(stage.monitor().controlError(), QString());
    ASSERT_TRUE(waitUntil([&] { return stage.window().height() == before; }));
}

} // namespace

} // namespace Fenwhirl
