// What a screen reader announces although the focus stays where it is: each change once, in words that are
// also shown.

#include "Fenwhirl/Views/Components/Announcer.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QTest>
#include <QWindow>

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

// Nothing near these buttons changes, so without a word nobody would know that they have done something.
TEST(Announcements, WhatAButtonHasDoneIsTold) {
    Stage stage;
    stage.showPage(Page::alerts);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.click(QStringLiteral("Tester l'alerte"));
    EXPECT_TRUE(stage.announced().contains(QStringLiteral("Ceci est une alerte de test.")));
    stage.click(QStringLiteral("Réglages"), QAccessible::PageTab);
    EXPECT_TRUE(stage.announced().contains(QStringLiteral("Réglages")));
    stage.click(QStringLiteral("Remettre les ventilateurs en automatique"));
    EXPECT_TRUE(stage.announced().contains(QStringLiteral("Ventilateurs, Auto")));
}

// A system with announcements of its own.
class SystemVoice {
public:
    SystemVoice() {
        setSystemAnnouncement([this](const QString& text, bool urgent) {
            (urgent ? urgentTexts : news).append(text);
            return true;
        });
    }

    ~SystemVoice() { setSystemAnnouncement({}); }

    Q_DISABLE_COPY_MOVE(SystemVoice)

    QStringList urgentTexts;
    QStringList news;
};

TEST(Announcements, AnErrorInterruptsAndNewsWait) {
    SystemVoice voice;
    Stage stage;
    stage.world.helper.succeeds = false;
    stage.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.monitor().apply(Preset::max);
    stage.poll();
    EXPECT_EQ(
        voice.urgentTexts,
        QStringList({QStringLiteral("Ce Mac n'a pas accepté le changement de vitesse du ventilateur.")}));
    EXPECT_EQ(voice.news, QStringList());
    stage.world.setCelsius(88);
    stage.poll();
    EXPECT_EQ(voice.urgentTexts.size(), 1);
    EXPECT_EQ(voice.news, QStringList({QStringLiteral("Le Mac est chaud")}));
}

TEST(Announcements, NothingIsToldInAnotherWindow) {
    SystemVoice voice;
    Stage stage;
    stage.show();
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    stage.world.setCelsius(88);
    stage.poll();
    EXPECT_EQ(voice.urgentTexts + voice.news, QStringList());
}

TEST(Announcements, SensorsThatComeBackAreToldOnce) {
    SystemVoice voice;
    Stage stage;
    stage.start();
    stage.world.setCelsius(-1); // not a plausible temperature
    stage.poll();
    stage.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.world.setCelsius(50);
    stage.poll();
    ASSERT_TRUE(waitUntil([&] { return !voice.news.isEmpty(); }));
    QCoreApplication::processEvents(); // what else there is to say is said
    EXPECT_EQ(voice.news, QStringList({QStringLiteral("Tout est normal")}));
}

TEST(Announcements, AReportIsToldWhileItIsBeingMade) {
    Stage stage;
    stage.showPage(Page::presets);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.models().report()->create();
    EXPECT_TRUE(stage.announced().contains(QStringLiteral("Création en cours…")));
    ASSERT_TRUE(waitUntil([&] { return !stage.models().report()->busy(); }));
}

TEST(Announcements, F1SumsUpTheTemperatureAndEveryFan) {
    for (const QUrl& file : {mainWindowFile(), menuPanelFile()}) {
        Stage stage;
        stage.show(file);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
        stage.press(Qt::Key_F1);
        const QString told = stage.announced().filter(QStringLiteral("Température du processeur")).join(u'|');
        for (const char* part : {"Température du processeur 50", "Tout est normal", "Ventilateur gauche 2",
                                 "Ventilateur droit 2", "tr/min, Auto"}) {
            EXPECT_TRUE(told.contains(QString::fromUtf8(part)))
                << part << " is missing in " << told.toStdString();
        }
    }
}

TEST(Announcements, ThePanelSaysHowTheMacIsWhenItOpens) {
    Stage stage;
    stage.show(menuPanelFile());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    EXPECT_TRUE(waitUntil([&] { return stage.announced().contains(QStringLiteral("Tout est normal")); }));
}

TEST(Announcements, EachStepOfTheIntroductionIsTold) {
    Stage stage;
    stage.onboarded = false;
    stage.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    for (const char* title : {"Pilote tes ventilateurs. ", "Tout est prêt. "}) {
        stage.press(Qt::Key_Return);
        const QStringList told = stage.announced().filter(QString::fromUtf8(title));
        ASSERT_EQ(told.size(), 1) << title;
        EXPECT_GT(told.first().size(), 60) << "with its text";
    }
}

} // namespace

} // namespace Fenwhirl
