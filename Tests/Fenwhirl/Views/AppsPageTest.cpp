// The applications page, and the question before an application is quit.

#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QImage>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#    include <sanitizer/lsan_interface.h>
using LeaksOfQt = __lsan::ScopedDisabler;
#else
struct LeaksOfQt {};
#endif

namespace Fenwhirl {

namespace {

QString flat(QString text) {
    return text.replace(QChar(0xA0), u' ').replace(QChar(0x202F), u' ');
}

// Shows the page and asks to quit its only application, process 80.
void askAboutFirefox(Stage& stage) {
    stage.start();
    stage.setApps({runningApp(QStringLiteral("Firefox"), 12, 80)});
    stage.showPage(Page::apps);
    stage.click(QStringLiteral("Firefox"), QAccessible::CheckBox);
}

TEST(AppsPage, SaysWhenNothingLoadsTheProcessor) {
    Stage stage;
    stage.showPage(Page::apps);
    EXPECT_TRUE(stage.shows(QStringLiteral("Aucune application ne sollicite beaucoup le processeur.")));
    EXPECT_TRUE(stage.all(QAccessible::List).isEmpty());
    const QImage picture = stage.window().grabWindow();
    for (int y = 0; y < picture.height(); ++y) {
        ASSERT_NE(picture.pixelColor(208 + 18 + 30, y), QColor(0x1F, 0x22, 0x29)) << "an empty card at " << y;
    }
}

TEST(AppsPage, NamesTheHeaviestAndListsAllInTheirOrder) {
    Stage stage;
    stage.start();
    stage.setApps(
        {runningApp(QStringLiteral("Blender"), 36.5, 71), runningApp(QStringLiteral("Mail"), 3, 72, false)});
    stage.showPage(Page::apps);
    EXPECT_TRUE(
        flat(stage.texts().join(u'|')).contains(QStringLiteral("Blender utilise 37 % du processeur.")));
    EXPECT_TRUE(flat(stage.texts().join(u'|')).contains(QStringLiteral("512 Mo")));
    const QList<QAccessibleInterface*> rows = stage.all(QAccessible::ListItem);
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(flat(rows.at(0)->text(QAccessible::Name)), QStringLiteral("Blender 37 %"));
    EXPECT_EQ(flat(rows.at(1)->text(QAccessible::Name)), QStringLiteral("Mail 3 %"));
    EXPECT_TRUE(stage.shows(QStringLiteral("Protégé")));
    ASSERT_EQ(stage.all(QAccessible::CheckBox).size(), 1); // protected applications have no switch
    EXPECT_TRUE(flat(stage.all(QAccessible::CheckBox).first()->text(QAccessible::Description))
                    .startsWith(QStringLiteral("37 %. Désactive un interrupteur")));
}

TEST(AppsPage, ItsCardsHaveTheUsualPaddingOnEverySide) {
    Stage stage;
    stage.start();
    stage.setApps({runningApp(QStringLiteral("Blender"), 36.5, 71)});
    stage.showPage(Page::apps);
    static_cast<void>(stage.window().grabWindow());
    const QRect row = stage.all(QAccessible::ListItem).first()->rect().translated(-stage.window().position());
    EXPECT_EQ(row.left(), 208 + 18 + 20);
    EXPECT_EQ(row.right() + 1, 208 + 18 + 760 - 20);
    const QColor card(0x1F, 0x22, 0x29);
    // The card's colour continues up to its edge above and below the row, and not beyond it.
    const int x = row.center().x();
    EXPECT_EQ(stage.colorAt({x, row.top() - 18}), card);
    EXPECT_NE(stage.colorAt({x, row.top() - 20}), card);
    EXPECT_EQ(stage.colorAt({x, row.bottom() + 18}), card);
    EXPECT_NE(stage.colorAt({x, row.bottom() + 20}), card);
}

TEST(AppsPage, ShowsAnApplicationsIconAndTheGearsForWhatHasNone) {
    // The software renderer of Qt 6.4 never frees an image's texture.
    [[maybe_unused]] const LeaksOfQt ofImages;
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("icon.png"));
    QImage picture(56, 56, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(file));
    Stage stage;
    stage.applicationIcon = QUrl::fromLocalFile(file).toString();
    stage.start();
    AppLoad service = runningApp(QStringLiteral("service"), 3, 72);
    service.appPath.reset();
    stage.setApps({runningApp(QStringLiteral("Blender"), 36.5, 71), service});
    stage.showPage(Page::apps);
    // The 28-point picture at the beginning of a row.
    const auto icon = [&stage](int row) {
        const QRect place = stage.all(QAccessible::ListItem).at(row)->rect();
        const QPoint corner(place.left() - stage.window().x(), place.center().y() - 13 - stage.window().y());
        return stage.window().grabWindow().copy(QRect(corner, QSize(28, 28)));
    };
    ASSERT_TRUE(waitUntil([&] { return icon(0).pixelColor(14, 14) == Qt::red; }));
    EXPECT_EQ(icon(0).pixelColor(1, 1), Qt::red);
    const QImage gears = icon(1);
    const QColor card(0x1F, 0x22, 0x29);
    EXPECT_EQ(gears.pixelColor(2, 2), card); // the gears take 18 points in the middle
    EXPECT_EQ(gears.pixelColor(25, 2), card);
    bool drawn = false;
    for (int x = 5; x < 23; ++x) {
        for (int y = 5; y < 23; ++y) {
            drawn = drawn || gears.pixelColor(x, y) == QColor(0x9A, 0xA3, 0xB2);
        }
    }
    EXPECT_TRUE(drawn);
}

TEST(AppsPage, CancellingLeavesTheApplicationRunningAndItsSwitchOn) {
    Stage stage;
    stage.start();
    stage.setApps({runningApp(QStringLiteral("Firefox"), 12, 80)});
    stage.showPage(Page::apps);
    const QAccessibleInterface* firefox = stage.find(QStringLiteral("Firefox"), QAccessible::CheckBox);
    stage.click(QStringLiteral("Firefox"), QAccessible::CheckBox);
    EXPECT_TRUE(stage.models().apps()->asking());
    EXPECT_TRUE(stage.shows(QStringLiteral("Fermer Firefox ?")));
    EXPECT_TRUE(stage.shows(
        QStringLiteral("Les documents non enregistrés dans cette application peuvent être perdus.")));
    // The switch is drawn as off, but the application is running and a screen reader says so.
    AppList* const rows = stage.models().apps()->apps();
    const int on = rows->roleNames().key("on");
    EXPECT_FALSE(rows->data(rows->index(0), on).toBool());
    EXPECT_TRUE(firefox->state().checked);
    stage.click(QStringLiteral("Annuler"));
    ASSERT_TRUE(waitUntil([&] { return !stage.models().apps()->asking(); }));
    EXPECT_TRUE(rows->data(rows->index(0), on).toBool());
    EXPECT_TRUE(stage.quitRequests.empty());
}

TEST(AppsPage, TheQuestionIsModalAndHidesWhatItCoversFromScreenReaders) {
    Stage stage;
    stage.start();
    stage.setApps({runningApp(QStringLiteral("Firefox"), 12, 80)});
    stage.showPage(Page::apps);
    EXPECT_EQ(stage.all(QAccessible::PageTab).size(), 7);
    stage.click(QStringLiteral("Firefox"), QAccessible::CheckBox);
    const QList<QAccessibleInterface*> dialogs = stage.all(QAccessible::Dialog);
    ASSERT_EQ(dialogs.size(), 1) << "not one inside another";
    EXPECT_EQ(dialogs.first()->text(QAccessible::Name), QStringLiteral("Fermer Firefox ?"));
    EXPECT_TRUE(dialogs.first()->state().modal);
    EXPECT_TRUE(stage.all(QAccessible::PageTab).isEmpty());
    EXPECT_EQ(stage.find(QStringLiteral("Firefox"), QAccessible::CheckBox), nullptr);
    stage.press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !stage.models().apps()->asking(); }));
    EXPECT_EQ(stage.all(QAccessible::PageTab).size(), 7);
    EXPECT_NE(stage.find(QStringLiteral("Firefox"), QAccessible::CheckBox), nullptr);
}

TEST(AppsPage, EscapeCancels) {
    Stage stage;
    askAboutFirefox(stage);
    stage.press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !stage.models().apps()->asking(); }));
    EXPECT_TRUE(stage.quitRequests.empty());
}

TEST(AppsPage, ItsQuestionGoesWithIt) {
    Stage stage;
    askAboutFirefox(stage);
    ASSERT_EQ(stage.all(QAccessible::Dialog).size(), 1);
    stage.monitor().setSelectedPage(Page::fans);
    // A page that goes is deleted by the event loop.
    EXPECT_TRUE(QTest::qWaitFor([&] { return stage.all(QAccessible::Dialog).isEmpty(); }));
    stage.monitor().setSelectedPage(Page::apps);
    EXPECT_TRUE(stage.all(QAccessible::Dialog).isEmpty());
    EXPECT_TRUE(stage.quitRequests.empty());
}

TEST(AppsPage, ASecondAnswerIsNone) {
    Stage stage;
    askAboutFirefox(stage);
    stage.models().apps()->quit();
    stage.models().apps()->quit();
    EXPECT_EQ(stage.quitRequests.size(), 1U);
}

TEST(AppsPage, ClosingAsksTheApplicationToQuit) {
    Stage stage;
    askAboutFirefox(stage);
    stage.click(QStringLiteral("Fermer"));
    ASSERT_TRUE(waitUntil([&] { return !stage.quitRequests.empty(); }));
    EXPECT_EQ(stage.quitRequests, (std::vector<std::pair<qint32, bool>>{{80, false}}));
}

TEST(AppsPage, ForcingDoesNotAsk) {
    Stage stage;
    askAboutFirefox(stage);
    stage.click(QStringLiteral("Forcer la fermeture"));
    ASSERT_TRUE(waitUntil([&] { return !stage.quitRequests.empty(); }));
    EXPECT_EQ(stage.quitRequests, (std::vector<std::pair<qint32, bool>>{{80, true}}));
}

TEST(AppsPage, TheQuestionKeepsItsApplicationWhenTheListChanges) {
    Stage stage;
    stage.start();
    stage.setApps(
        {runningApp(QStringLiteral("Firefox"), 12, 80), runningApp(QStringLiteral("Blender"), 5, 71)});
    stage.showPage(Page::apps);
    stage.click(QStringLiteral("Firefox"), QAccessible::CheckBox);
    stage.setApps({runningApp(QStringLiteral("Blender"), 50, 71)});
    EXPECT_TRUE(stage.shows(QStringLiteral("Fermer Firefox ?")));
    stage.models().apps()->quit();
    EXPECT_EQ(stage.quitRequests, (std::vector<std::pair<qint32, bool>>{{80, false}}));
}

TEST(AppsPage, ANameIsShownAsPlainBoundedText) {
    Stage stage;
    stage.start();
    const QString markup = QStringLiteral("<img src='http://127.0.0.1:1/x'><b>A</b>");
    stage.setApps({runningApp(markup, 12, 80), runningApp(QString(100000, u'W'), 6, 81),
                   runningApp(QStringLiteral("a\nb\u202Ec"), 5, 82)});
    stage.showPage(Page::apps);
    const QStringList texts = stage.texts();
    EXPECT_TRUE(texts.join(u'|').contains(markup));
    for (const QString& text : texts) {
        EXPECT_LT(text.size(), 300);
        EXPECT_FALSE(text.contains(u'\n'));
        EXPECT_FALSE(text.contains(QChar(0x202E)));
    }
}

TEST(AppsPage, MarkupInANameFetchesNothing) {
    QTcpServer listener;
    ASSERT_TRUE(listener.listen(QHostAddress::LocalHost));
    Stage stage;
    stage.start();
    stage.setApps({runningApp(
        QStringLiteral("<img src='http://127.0.0.1:%1/x.png'>").arg(listener.serverPort()), 40, 80)});
    stage.showPage(Page::apps);
    EXPECT_TRUE(stage.texts().join(u'|').contains(QStringLiteral("<img src=")));
    stage.click(stage.all(QAccessible::CheckBox).value(0)); // the question shows the name, too
    static_cast<void>(stage.window().grabWindow());
    EXPECT_FALSE(listener.waitForNewConnection(300));
}

TEST(AppsPage, SamplesOnlyWhileItIsOnScreen) {
    Stage stage;
    stage.start();
    stage.show();
    EXPECT_FALSE(stage.models().apps()->pageShown());
    EXPECT_EQ(stage.samples, 0);
    // Showing the page takes a sample at once only if sampling was stopped, and the next one is an hour away. So a sample after
    // hiding and showing proves that hiding stopped it. It is dropped while another one is in progress, so it is tried again.
    const auto samplesAgainAfter = [&](auto&& hideAndShow) {
        const int before = stage.samples;
        return waitUntil([&] {
            if (stage.samples > before) {
                return true;
            }
            hideAndShow();
            return false;
        });
    };
    ASSERT_TRUE(samplesAgainAfter([&] { stage.monitor().setSelectedPage(Page::apps); }));
    EXPECT_TRUE(stage.models().apps()->pageShown());
    EXPECT_TRUE(samplesAgainAfter([&] {
        stage.models().setAwake(false);
        stage.models().setAwake(true);
    }));
    EXPECT_TRUE(samplesAgainAfter([&] {
        stage.monitor().setSelectedPage(Page::fans);
        stage.monitor().setSelectedPage(Page::apps);
    }));
    stage.monitor().setSelectedPage(Page::fans);
    EXPECT_FALSE(stage.models().apps()->pageShown());
}

} // namespace

} // namespace Fenwhirl
