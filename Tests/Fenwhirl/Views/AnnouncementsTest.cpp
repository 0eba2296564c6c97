// What a screen reader announces although the focus stays where it is: each change once, in words that are
// also shown.

#include "Stage.h"

#include <QTest>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(Announcements, AChangeOfHealthIsToldOnceAndNeverAReading) {
    Stage stage;
    stage.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    EXPECT_EQ(stage.announced(), QStringList()); // showing the window is not a change
    stage.world.setCelsius(55);
    stage.poll();
    EXPECT_EQ(stage.announced(), QStringList());
    stage.world.setCelsius(88);
    stage.poll();
    EXPECT_EQ(stage.announced(), QStringList({QStringLiteral("Le Mac est chaud")}));
    stage.world.setCelsius(89);
    stage.poll();
    EXPECT_EQ(stage.announced(), QStringList({QStringLiteral("Le Mac est chaud")}));
}

TEST(Announcements, ALanguageIsNoChange) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.monitor().setLanguage(AppLanguage::de);
    EXPECT_EQ(stage.announced(), QStringList());
}

// The rows of the sidebar already say which page they show.
TEST(Announcements, APageChangedElsewhereIsAnnouncedEvenDuringAnAnnouncement) {
    Stage stage;
    stage.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.press(Qt::Key_Down);
    EXPECT_EQ(stage.announced(), QStringList());
    stage.press(Qt::Key_Tab);
    stage.monitor().setSelectedPage(Page::alerts);
    stage.press(Qt::Key_Tab);
    stage.monitor().setSelectedPage(Page::settings);
    const QStringList told = stage.announced();
    EXPECT_EQ(told.count(QStringLiteral("Alertes")), 1) << told.join(u'|').toStdString();
}

TEST(Announcements, ARefusedChangeIsToldWhereverOneIs) {
    Stage stage;
    stage.world.helper.succeeds = false;
    stage.showPage(Page::alerts); // this page has no room for the message
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.monitor().apply(Preset::max);
    stage.poll();
    EXPECT_EQ(stage.announced().count(
                  QStringLiteral("Ce Mac n'a pas accepté le changement de vitesse du ventilateur.")),
              1);
}

} // namespace

} // namespace Fenwhirl
