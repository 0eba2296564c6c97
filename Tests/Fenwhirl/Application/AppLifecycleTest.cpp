// The program's life cycle, from launch to termination, with the real windows and delegate over models in
// memory.

#include "Fenwhirl/Application/ViewEngine.h"
#include "Fenwhirl/Views/Components/Theme.h"
#include "Life.h"
#include "Support/WaitUntil.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QPalette>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

namespace Fenwhirl {

namespace {

// The lower edge, in window coordinates, of the item with this text inside `item`; 0 when there is none.
double bottomOf(const QQuickItem& item, const QString& text) {
    double bottom = item.property("text").toString() == text
                        ? item.mapRectToScene(QRectF(0, 0, item.width(), item.height())).bottom()
                        : 0;
    for (const QQuickItem* child : item.childItems()) {
        bottom = std::max(bottom, bottomOf(*child, text));
    }
    return bottom;
}

// During its lifetime, two clicks at most this many milliseconds apart are a double click.
class DoubleClicks {
public:
    explicit DoubleClicks(int milliseconds) {
        QGuiApplication::styleHints()->setMouseDoubleClickInterval(milliseconds);
    }

    ~DoubleClicks() { QGuiApplication::styleHints()->setMouseDoubleClickInterval(usual_); }

    DoubleClicks(const DoubleClicks&) = delete;
    DoubleClicks& operator=(const DoubleClicks&) = delete;

private:
    int usual_ = QGuiApplication::styleHints()->mouseDoubleClickInterval();
};

QQuickWindow* openAlert() {
    QWindow* alert = nullptr;
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->modality() == Qt::ApplicationModal) {
            alert = window;
        }
    }
    return qobject_cast<QQuickWindow*>(alert);
}

TEST(Launch, TheFirstOneShowsTheMainWindow) {
    Life life(false);
    life.delegate->applicationDidFinishLaunching();
    EXPECT_TRUE(life.mainIsShown());
    EXPECT_EQ(life.updateChecks, 1);
}

TEST(Launch, LaterOnesShowNothingAndLoadNothing) {
    Life life(true);
    life.delegate->applicationDidFinishLaunching();
    QCoreApplication::processEvents();
    life.world.poll();
    EXPECT_FALSE(life.windows->hasEngine());
    EXPECT_EQ(life.windows->main(), nullptr);
    EXPECT_FALSE(life.windows->hideOnFirstAppearance); // consumed
    EXPECT_EQ(life.updateChecks, 1);
}

TEST(Launch, AHiddenOneShowsNothingEvenIfItIsTheFirst) {
    Life life(false);
    life.delegate->applicationDidFinishLaunching(AppDelegate::Start::hidden);
    QCoreApplication::processEvents();
    EXPECT_EQ(life.windows->main(), nullptr);
}

TEST(Launch, APresetIsChosenAsSoonAsTheFansAreKnown) {
    Life life(true);
    life.world.smc.remove("FNum");
    life.world.poll();
    ASSERT_TRUE(life.world.monitor().fans().isEmpty());
    life.delegate->choosePreset(Preset::max);
    life.delegate->choosePreset(Preset::game);
    EXPECT_EQ(life.world.monitor().activePreset(), std::nullopt);
    life.world.smc.setNumber("FNum", "ui8 ", 2);
    life.world.poll();
    EXPECT_EQ(life.world.monitor().activePreset(), Preset::game);
    EXPECT_EQ(life.world.monitor().setting(1).mode, FanModeKind::sensor);
    life.delegate->choosePreset(Preset::silent);
    EXPECT_EQ(life.world.monitor().activePreset(), Preset::silent);
    life.world.poll(); // not applied again over the user's later choice
    life.world.monitor().apply(Preset::automatic);
    life.world.poll();
    EXPECT_EQ(life.world.monitor().activePreset(), Preset::automatic);
}

TEST(Launch, WithoutAStatusItemTheMainWindowIsShown) {
    Life life(true);
    life.statusItem.placed = false;
    life.delegate->applicationDidFinishLaunching();
    EXPECT_FALSE(life.mainIsShown());
    EXPECT_TRUE(waitUntil([&] { return life.mainIsShown(); }));
}

TEST(Reopen, OpensAndRaisesTheOneMainWindow) {
    Life life(true);
    life.delegate->applicationDidFinishLaunching();
    life.delegate->applicationShouldHandleReopen({});
    ASSERT_TRUE(life.mainIsShown());
    QQuickWindow* window = life.windows->main();
    life.delegate->applicationShouldHandleReopen({});
    EXPECT_EQ(life.windows->main(), window);
}

TEST(Close, KeepsTheProgramAndThePage) {
    Life life(true);
    life.windows->openMain();
    QQuickWindow* window = life.windows->main();
    life.world.monitor().setSelectedPage(Page::alerts);
    window->close();
    EXPECT_FALSE(life.mainIsShown());
    life.windows->openMain();
    EXPECT_TRUE(life.mainIsShown());
    EXPECT_EQ(life.windows->main(), window);
    EXPECT_EQ(life.world.monitor().selectedPage(), Page::alerts);
}

TEST(Close, PutsTheViewsToSleep) {
    Life life(true);
    life.windows->openMain();
    auto* models = life.windows->main()->property("models").value<ViewModels*>();
    ASSERT_NE(models, nullptr);
    EXPECT_TRUE(models->machine()->isAwake());
    life.windows->main()->close();
    EXPECT_FALSE(models->machine()->isAwake());
    QSignalSpy heard(models->machine(), &MachineView::temperatureChanged);
    life.world.setCelsius(71);
    life.world.poll();
    EXPECT_EQ(heard.count(), 0);
    life.windows->openMain();
    EXPECT_EQ(models->machine()->temperatureNumber(), QStringLiteral("71"));
}

TEST(Reopen, AtAPageOpensTheWindowThere) {
    Life life(true);
    life.windows->openPage(Page::alerts);
    EXPECT_TRUE(life.mainIsShown());
    EXPECT_EQ(life.world.monitor().selectedPage(), Page::alerts);
}

TEST(Minimising, PutsTheViewsToSleep) {
    Life life(true);
    life.windows->openMain();
    auto* models = life.windows->main()->property("models").value<ViewModels*>();
    ASSERT_TRUE(models->machine()->isAwake());
    life.windows->main()->showMinimized();
    EXPECT_TRUE(waitUntil([&] { return !models->machine()->isAwake(); }));
    life.windows->main()->showNormal();
    EXPECT_TRUE(waitUntil([&] { return models->machine()->isAwake(); }));
}

TEST(Close, OfThePanelPutsThemToSleepToo) {
    Life life(true);
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    auto* models = life.windows->panel()->property("models").value<ViewModels*>();
    ASSERT_NE(models, nullptr);
    EXPECT_TRUE(models->machine()->isAwake());
    life.windows->panel()->close();
    EXPECT_FALSE(models->machine()->isAwake());
}

TEST(Panel, LeavesAMarginAboveAndBelowIt) {
    Life life(true);
    life.world.smc.addOlderFans(30);
    life.world.pollAfter(2);
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    const QQuickWindow* panel = life.windows->panel();
    const int room = panel->screen()->availableGeometry().height() - 2 * 16;
    const auto height = [panel] { return panel->property("panelArea").toRectF().height(); };
    EXPECT_EQ(panel->property("maximumPanelHeight").toInt(), room);
    EXPECT_LE(height(), room);
    EXPECT_GT(height(), room - 70) << "of thirty fans a row more has no room";
}

TEST(Panel, OpensAtTheItemAndClosesWithASecondClick) {
    const DoubleClicks none(0);
    Life life(true);
    Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24));
    ASSERT_NE(life.windows->panel(), nullptr);
    EXPECT_TRUE(life.windows->panel()->isVisible());
    EXPECT_EQ(life.windows->panel()->y(), 24 + 8);
    Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24));
    EXPECT_FALSE(life.windows->panel()->isVisible());
    // The click that closed the panel may be reported a second time, as a request to open it.
    Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24));
    EXPECT_FALSE(life.windows->panel()->isVisible());
}

TEST(Panel, ADoubleClickOpensItAndNoMore) {
    const DoubleClicks slow(60'000);
    Life life(true);
    for (int click = 0; click < 2; ++click) {
        Q_EMIT life.statusItem.activated(QRect(400, 0, 30, 24));
    }
    EXPECT_TRUE(life.windows->panel()->isVisible());
}

TEST(Panel, OpensAboveAnItemOfABottomBar) {
    Life life(true);
    const QRect item(300, QGuiApplication::primaryScreen()->geometry().bottom() - 24, 30, 24);
    Q_EMIT life.statusItem.activated(item);
    QQuickWindow* panel = life.windows->panel();
    const auto standsOnIt = [&] {
        return panel->height() > 300 && panel->geometry().bottom() + 1 == item.top() - 8;
    };
    EXPECT_TRUE(standsOnIt()) << panel->y() << " + " << panel->height() << ", from the beginning";
    // The panel's content grows while it is open.
    const int before = panel->height();
    life.world.helper.installed = false;
    life.world.monitor().apply(Preset::max);
    life.world.poll();
    EXPECT_TRUE(waitUntil([&] { return panel->height() > before && standsOnIt(); }))
        << panel->y() << " + " << panel->height();
}

TEST(Panel, FollowsTheSizeOfTextsWhileItIsOpen) {
    Life life(true);
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    const QQuickWindow* panel = life.windows->panel();
    const QSize before = panel->size();
    life.appearance.setTextScale(2);
    EXPECT_TRUE(
        waitUntil([&] { return panel->width() == 2 * before.width() && panel->height() > before.height(); }));
    EXPECT_EQ(panel->minimumSize(), panel->size());
    EXPECT_EQ(panel->maximumSize(), panel->size());
}

TEST(Panel, HasOneSizeSoThatTilingDesktopsLetItFloat) {
    Life life(true);
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    const QQuickWindow* panel = life.windows->panel();
    EXPECT_GT(panel->height(), 300);
    EXPECT_EQ(panel->minimumSize(), panel->size());
    EXPECT_EQ(panel->maximumSize(), panel->size());
}

TEST(Panel, ClosesBeforeTheMainWindowComesForward) {
    Life life(true);
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    ASSERT_TRUE(life.windows->panel()->isVisible());
    life.windows->openMain();
    EXPECT_FALSE(life.windows->panel()->isVisible());
    EXPECT_TRUE(life.mainIsShown());
}

TEST(Panel, ClosesOnAPressBesideIt) {
    Life life(true);
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(life.windows->panel()));
    QTest::mousePress(life.windows->panel(), Qt::LeftButton, {}, QPoint(-20, 50));
    EXPECT_FALSE(life.windows->panel()->isVisible());
}

TEST(Appearance, AutomaticFollowsTheSystem) {
    Life life(true);
    life.world.monitor().setTheme(AppTheme::automatic);
    life.windows->openMain();
    QQuickWindow* window = life.windows->main();
    EXPECT_EQ(window->color(), QColor(0xF3, 0xF4, 0xF7));
    life.appearance.setDark(true);
    EXPECT_TRUE(waitUntil([&] { return window->color() == QColor(0x16, 0x18, 0x1D); }));
    life.world.monitor().setTheme(AppTheme::light);
    EXPECT_TRUE(waitUntil([&] { return window->color() == QColor(0xF3, 0xF4, 0xF7); }));
}

TEST(Appearance, TextsAndThePanelAreAsLargeAsTheSystemSays) {
    Life life(true);
    life.appearance.setTextScale(1.25);
    life.windows->togglePanel(QRect(400, 0, 30, 24));
    EXPECT_EQ(life.windows->panel()->width(), 425);
    life.appearance.setTextScale(1.5);
    EXPECT_EQ(life.windows->panel()->width(), 510);
    life.appearance.setTextScale(1);
    EXPECT_EQ(life.windows->panel()->width(), 340);
}

TEST(Appearance, TheSystemIsToldWhatTheUserChose) {
    Life life(true);
    EXPECT_EQ(life.appearance.chosen, AppearanceChoice::dark); // before any window exists
    life.world.monitor().setTheme(AppTheme::light);
    EXPECT_EQ(life.appearance.chosen, AppearanceChoice::light);
    life.world.monitor().setTheme(AppTheme::automatic);
    EXPECT_EQ(life.appearance.chosen, AppearanceChoice::system);
}

TEST(StatusItemStart, AppearsAfterTheFirstPictureOfTheWindow) {
    Life life(false);
    QSignalSpy drawn(life.windows.get(), &WindowControl::mainDrawn);
    life.delegate->applicationDidFinishLaunching();
    EXPECT_TRUE(life.statusItem.isPostponed);
    ASSERT_TRUE(waitUntil([&] { return drawn.count() == 1; }));
    EXPECT_FALSE(life.statusItem.isPostponed);
}

TEST(StatusItemStart, AppearsWithoutAPictureOfAWindowThatNobodySees) {
    Life life(false, {}, std::chrono::milliseconds(0));
    life.delegate->applicationDidFinishLaunching();
    life.windows->main()->hide();
    EXPECT_TRUE(life.statusItem.isPostponed);
    EXPECT_TRUE(waitUntil([&] { return !life.statusItem.isPostponed; }));
}

TEST(StatusItemStart, AppearsAtOnceWhereNoWindowOpens) {
    Life life(true);
    life.delegate->applicationDidFinishLaunching();
    EXPECT_FALSE(life.statusItem.wasPostponed);
}

TEST(LaunchedSignal, FollowsTheFirstPictureAndIsEmittedOnce) {
    Life life(false);
    QSignalSpy drawn(life.windows.get(), &WindowControl::mainDrawn);
    QSignalSpy launched(life.delegate.get(), &AppDelegate::launched);
    life.delegate->applicationDidFinishLaunching();
    EXPECT_EQ(launched.count(), 0);
    ASSERT_TRUE(waitUntil([&] { return launched.count() > 0; }));
    EXPECT_EQ(drawn.count(), 1);
    Q_EMIT life.windows->mainDrawn();
    EXPECT_EQ(launched.count(), 1);
}

TEST(LaunchedSignal, DoesNotWaitWhereNoWindowOpens) {
    Life life(true);
    QSignalSpy launched(life.delegate.get(), &AppDelegate::launched);
    life.delegate->applicationDidFinishLaunching();
    EXPECT_EQ(launched.count(), 1);
}

TEST(LaunchedSignal, IsEmittedOnceForAWindowThatIsDrawnTooLate) {
    Life life(false, {}, std::chrono::milliseconds(0));
    QSignalSpy launched(life.delegate.get(), &AppDelegate::launched);
    life.delegate->applicationDidFinishLaunching();
    life.windows->main()->hide();
    ASSERT_TRUE(waitUntil([&] { return launched.count() > 0; }));
    Q_EMIT life.windows->mainDrawn();
    EXPECT_EQ(launched.count(), 1);
}

TEST(PreparedViews, AreLoadedWithoutAnEventLoop) {
    const PreparedViews views = prepareMainWindow();
    const auto isLoading = [&] {
        return std::any_of(views.loading.begin(), views.loading.end(),
                           [](const auto& component) { return component->isLoading(); });
    };
    const QDeadlineTimer deadline(std::chrono::seconds(20));
    while (isLoading() && !deadline.hasExpired()) {
        continueLoading();
    }
    for (const auto& component : views.loading) {
        EXPECT_TRUE(component->isReady()) << component->errorString().toStdString();
    }
}

TEST(TranslationThreshold, IsRaisedUnlessTheUserHasSetIt) {
    const char* const name = "QV4_JIT_CALL_THRESHOLD";
    qunsetenv(name);
    setTranslationThreshold();
    EXPECT_EQ(qgetenv(name), "100");
    qputenv(name, "7");
    setTranslationThreshold();
    EXPECT_EQ(qgetenv(name), "7");
    qunsetenv(name);
}

TEST(PreparedViews, AreTheMainWindows) {
    Life life(false);
    PreparedViews views = prepareMainWindow();
    QQmlEngine* const engine = views.engine.get();
    life.windows->usePrepared(std::move(views));
    life.windows->openMain();
    ASSERT_TRUE(life.mainIsShown());
    EXPECT_EQ(qmlEngine(life.windows->main()), engine);
}

TEST(StatusItemText, SaysWhatTheMenuTextSays) {
    Life life(true);
    EXPECT_EQ(life.statusItem.text, life.world.monitor().menuText());
    EXPECT_EQ(life.statusItem.shortText, QStringLiteral("50°"));
    life.world.setCelsius(63.9);
    life.world.poll();
    EXPECT_EQ(life.statusItem.text, life.world.monitor().menuText());
    EXPECT_EQ(life.statusItem.shortText, QStringLiteral("63°"));
}

TEST(StatusItemText, IsExactButTremorsOfAFanAreSlightChanges) {
    Life life(true);
    const auto changeTo = [&](double rpm) {
        life.world.setFan(0, rpm);
        life.world.setFan(1, rpm);
        life.world.poll();
        EXPECT_EQ(life.statusItem.text, life.world.monitor().menuText());
        return life.statusItem.lastChange;
    };
    using enum StatusItem::TextChange;
    changeTo(2400);
    EXPECT_EQ(changeTo(2409), slight);
    EXPECT_EQ(changeTo(2391), slight);
    EXPECT_EQ(changeTo(2410), notable);
    EXPECT_EQ(changeTo(2415), slight);
    life.world.monitor().setLanguage(AppLanguage::de);
    EXPECT_EQ(life.statusItem.text, life.world.monitor().menuText());
    EXPECT_EQ(life.statusItem.lastChange, notable);
    EXPECT_EQ(changeTo(2424), slight);
    EXPECT_EQ(changeTo(0), notable); // a fan that stops
    EXPECT_EQ(changeTo(5), notable);
}

// The texts of the entries, with the current choice in brackets.
QStringList entriesOf(const StatusMenu& menu) {
    QStringList texts;
    for (const StatusMenuEntry& entry : menu) {
        texts.append(entry.isCurrent.value_or(false) ? u'[' + entry.text + u']' : entry.text);
    }
    return texts;
}

TEST(StatusItemMenu, OffersThePresetsTheWindowAndTheEnd) {
    Life life(true);
    QStringList expected = {QStringLiteral("Auto"),
                            QStringLiteral("Silencieux"),
                            QStringLiteral("Équilibré"),
                            QStringLiteral("Jeu"),
                            QStringLiteral("Max"),
                            QString(),
                            QStringLiteral("Ouvrir Fenwhirl"),
                            QStringLiteral("Quitter")};
    EXPECT_EQ(entriesOf(life.statusItem.menu), expected);
    const StatusMenu menu = life.statusItem.menu;
    menu.at(3).choose();
    EXPECT_EQ(life.world.monitor().activePreset(), Preset::game);
    expected[3] = QStringLiteral("[Jeu]");
    EXPECT_EQ(entriesOf(life.statusItem.menu), expected);
    EXPECT_EQ(life.windows->main(), nullptr);
    menu.at(6).choose();
    ASSERT_NE(life.windows->main(), nullptr);
    EXPECT_TRUE(life.windows->main()->isVisible());
    life.world.monitor().setLanguage(AppLanguage::de);
    EXPECT_NE(entriesOf(life.statusItem.menu).last(), QStringLiteral("Quitter"));
    life.world.monitor().setLanguage(AppLanguage::fr);
}

TEST(StatusItemMenu, APresetChosenBeforeTheFansAreKnownIsNotLost) {
    Life life(true);
    life.world.smc.remove("FNum");
    life.world.poll();
    ASSERT_TRUE(life.world.monitor().fans().isEmpty());
    const StatusMenu menu = life.statusItem.menu;
    menu.at(4).choose();
    life.world.smc.setNumber("FNum", "ui8 ", 2);
    life.world.poll();
    EXPECT_EQ(life.world.monitor().setting(1).mode, FanModeKind::constant);
    EXPECT_EQ(life.world.monitor().setting(1).constantRPM, 6000);
    EXPECT_EQ(entriesOf(life.statusItem.menu).at(4), QStringLiteral("[Max]"));
}

TEST(Language, ReachesOpenWindowsAndTheStatusItem) {
    Life life(true);
    life.windows->openMain();
    const QString french = life.statusItem.text;
    const QString title = QStringLiteral("Tableau de bord");
    EXPECT_GT(bottomOf(*life.windows->main()->contentItem(), title), 0);
    life.world.monitor().setLanguage(AppLanguage::ru);
    EXPECT_NE(life.statusItem.text, french);
    auto* models = life.windows->main()->property("models").value<ViewModels*>();
    EXPECT_NE(models->machine()->statusWord(), QStringLiteral("Tout est normal"));
    EXPECT_EQ(bottomOf(*life.windows->main()->contentItem(), title), 0);
    life.world.monitor().setLanguage(AppLanguage::fr);
}

TEST(Alert, IsAsHighAsItsTexts) {
    Life life(true);
    for (const int sentences : {1, 8}) {
        life.windows->showAlert({QStringLiteral("Titre"),
                                 QStringLiteral("Une phrase assez longue. ").repeated(sentences),
                                 QStringLiteral("Oui"), QStringLiteral("Plus tard")},
                                [] {});
        QQuickWindow* alert = openAlert();
        ASSERT_NE(alert, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(alert));
        const double bottom = bottomOf(*alert->contentItem(), QStringLiteral("Plus tard"));
        EXPECT_GT(bottom, 100);
        EXPECT_GE(alert->height(), bottom);
        EXPECT_LT(alert->height(), bottom + 40);
    }
}

TEST(Alert, CallsBackWhenTheUserAgrees) {
    Life life(true);
    int agreed = 0;
    life.windows->showAlert({QStringLiteral("Titre"), QStringLiteral("<b>Texte</b>"), QStringLiteral("Oui"),
                             QStringLiteral("Plus tard")},
                            [&] { ++agreed; });
    QQuickWindow* alert = openAlert();
    ASSERT_NE(alert, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(alert));
    QTest::keyClick(alert, Qt::Key_Return);
    EXPECT_EQ(agreed, 1);
    EXPECT_FALSE(alert->isVisible());
}

TEST(Termination, HandsTheFansBackOnce) {
    Life life(true);
    life.world.monitor().apply(Preset::game);
    life.world.poll();
    life.world.helper.forgetRuns();
    life.delegate->applicationWillTerminate();
    EXPECT_EQ(life.world.helper.takeRuns(),
              (std::vector<FakeHelper::Arguments>{{"auto", "0"}, {"auto", "1"}}));
    life.delegate->applicationWillTerminate();
    EXPECT_TRUE(life.world.helper.takeRuns().empty());
    EXPECT_EQ(life.world.timesHandedBack, 1);
}

TEST(Life, ToolkitControlsHaveTheColoursOfTheWindows) {
    const QPalette usual = QGuiApplication::palette();
    Life life(true);
    for (const bool dark : {true, false}) {
        life.world.monitor().setTheme(dark ? AppTheme::dark : AppTheme::light);
        life.windows->openMain();
        const QPalette shown = QGuiApplication::palette();
        const int ground = shown.color(QPalette::Window).lightness();
        const int text = shown.color(QPalette::WindowText).lightness();
        EXPECT_EQ(ground < 80, dark);
        EXPECT_GT(std::abs(shown.color(QPalette::Base).lightness() - text), 100);
        EXPECT_GT(std::abs(shown.color(QPalette::Button).lightness() - text), 100);
    }
    QGuiApplication::setPalette(usual);
}

} // namespace

} // namespace Fenwhirl
