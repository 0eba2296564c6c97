// The main window reopens where it was, as far as its screen still exists.

#include "Fenwhirl/Application/WindowGeometry.h"

#include "Life.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaitUntil.h"

#include <QScreen>
#include <QTest>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

const QSize least(920, 560);
const QRect left(0, 30, 1280, 770);
const QRect right(1280, 0, 2560, 1400);

TEST(WindowGeometry, StaysWhereItWasWhileAllOfItCanBeSeen) {
    for (const QRect area :
         {QRect(100, 60, 1040, 680), QRect(1300, 700, 1040, 680), QRect(1280, 0, 2560, 1400)}) {
        EXPECT_EQ(placeOnScreens(area, {left, right}, least), area);
    }
}

TEST(WindowGeometry, ComesOntoTheScreenThatShowsMostOfIt) {
    EXPECT_EQ(placeOnScreens({-100, 0, 1040, 680}, {left, right}, least), QRect(0, 30, 1040, 680));
    EXPECT_EQ(placeOnScreens({1200, 900, 1040, 680}, {left, right}, least), QRect(1280, 720, 1040, 680));
}

TEST(WindowGeometry, ComesOntoTheFirstScreenWhenItsOwnIsGone) {
    EXPECT_EQ(placeOnScreens({1300, 700, 1040, 680}, {left}, least), QRect(240, 120, 1040, 680));
    EXPECT_EQ(placeOnScreens({-5000, -5000, 1040, 680}, {left, right}, least), QRect(0, 30, 1040, 680));
}

TEST(WindowGeometry, IsNoLargerThanItsScreenAndNoSmallerThanItMayBe) {
    EXPECT_EQ(placeOnScreens({1300, 100, 2400, 1300}, {left}, least), QRect(0, 30, 1280, 770));
    EXPECT_EQ(placeOnScreens({10, 40, 20, 20}, {left}, least), QRect(10, 40, 920, 560));
    EXPECT_EQ(placeOnScreens({700, 500, 1040, 680}, {QRect(0, 0, 800, 480)}, least), QRect(0, 0, 920, 560));
}

TEST(WindowGeometry, IsNowhereWithoutAScreen) {
    EXPECT_EQ(placeOnScreens({0, 0, 1040, 680}, {}, least), std::nullopt);
}

TEST(WindowGeometry, AnInvalidFileIsIgnored) {
    for (const char* text :
         {"", "{", "[]", "{}", "null", R"({"x":1,"y":2,"width":3})", R"({"x":1,"y":2,"width":0,"height":5})",
          R"({"x":1,"y":2,"width":-5,"height":5})", R"({"x":"1","y":2,"width":5,"height":5})",
          R"({"x":1e300,"y":2,"width":5,"height":5})", R"({"x":1,"y":2,"width":5,"height":1e9})"}) {
        EXPECT_EQ(windowPlaceFrom(text), std::nullopt) << text;
    }
    EXPECT_EQ(windowPlaceFrom(R"({"x":-7,"y":2,"width":950,"height":600,"maximized":true})"),
              (WindowGeometry{{-7, 2, 950, 600}, true}));
}

class RestoredWindow : public testing::Test {
protected:
    TemporaryFolder folder;
    QString file = QString::fromStdString(folder.path("state/of/window.json"));

    [[nodiscard]] std::unique_ptr<Life> begin() const {
        auto life = std::make_unique<Life>(true);
        life->windows->rememberPlaceIn(file);
        life->windows->openMain();
        return life;
    }

    // Moves the window and waits until it has processed the change.
    static void move(Life& life, const QRect& area) {
        QWindow* const window = life.windows->main();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
        window->setGeometry(area);
        QCoreApplication::processEvents();
        ASSERT_EQ(window->geometry(), area);
    }
};

TEST_F(RestoredWindow, AWindowComesBackWhereItWas) {
    const QRect area(40, 50, 960, 600);
    {
        const auto life = begin();
        move(*life, area);
    } // the program ends with its window open
    const auto life = begin();
    // The screen in these tests is narrower than the window.
    EXPECT_EQ(life->windows->main()->y(), area.y());
    EXPECT_EQ(life->windows->main()->size(), QSize(least.width(), area.height()));
}

TEST_F(RestoredWindow, AWindowThatWasClosedComesBackWhereItWasToo) {
    const auto life = begin();
    const QSize size(930, 570);
    move(*life, {life->windows->main()->position(), size});
    life->windows->main()->close();
    EXPECT_EQ(begin()->windows->main()->size(),
              size.boundedTo(QGuiApplication::primaryScreen()->availableSize()).expandedTo(least));
}

TEST_F(RestoredWindow, WithoutAFileItHasItsUsualSize) {
    EXPECT_EQ(begin()->windows->main()->size(), QSize(1040, 680));
}

TEST_F(RestoredWindow, AMaximisedWindowComesBackMaximisedAndKeepsItsOwnSize) {
    const QRect area(40, 50, 930, 570);
    {
        const auto life = begin();
        move(*life, area);
        life->windows->main()->showMaximized();
        ASSERT_TRUE(
            waitUntil([&] { return life->windows->main()->windowStates().testFlag(Qt::WindowMaximized); }));
    }
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const auto place = windowPlaceFrom(written.readAll());
    ASSERT_TRUE(place);
    EXPECT_TRUE(place->maximized);
    EXPECT_EQ(place->area.size(), area.size());
    EXPECT_TRUE(begin()->windows->main()->windowStates().testFlag(Qt::WindowMaximized));
}

} // namespace

} // namespace Fenwhirl
