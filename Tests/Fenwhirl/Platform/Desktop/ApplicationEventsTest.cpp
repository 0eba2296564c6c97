#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"

#include <QCoreApplication>
#include <QTimer>

#include <array>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

constexpr std::array<std::uint32_t, 4> noReason = {};
constexpr std::array<std::uint32_t, 4> logOut = {0, 0x726C676F, 0, 0}; // 'rlgo'

class ApplicationEventsTest : public testing::Test {
protected:
    ApplicationEventsTest() {
        ApplicationEvents::setReopenHandler([this] { ++reopened; });
        ApplicationEvents::setSessionEndHandler([this] { ++sessionsEnded; });
    }

    ~ApplicationEventsTest() override {
        ApplicationEvents::setReopenHandler({});
        ApplicationEvents::setSessionEndHandler({});
    }

    // Runs an event loop in which `action` happens, and returns its exit status: 77 when the action did not
    // end the loop.
    static int endOfLoop(const std::function<void()>& action) {
        QObject scope;
        // Two turns later, an end requested by the action would have taken effect.
        QTimer::singleShot(0, &scope, [&] {
            action();
            QTimer::singleShot(0, &scope,
                               [&] { QTimer::singleShot(0, &scope, [] { QCoreApplication::exit(77); }); });
        });
        return QCoreApplication::exec();
    }

    int reopened = 0;
    int sessionsEnded = 0;
};

TEST_F(ApplicationEventsTest, ChosenAgainWithoutAWindowItShowsItself) {
    EXPECT_FALSE(ApplicationEvents::shouldHandleReopen(false));
    EXPECT_EQ(reopened, 1);
}

TEST_F(ApplicationEventsTest, ChosenAgainWithAWindowItLeavesTheRestToTheSystem) {
    EXPECT_TRUE(ApplicationEvents::shouldHandleReopen(true));
    EXPECT_EQ(reopened, 0);
}

TEST_F(ApplicationEventsTest, ChosenAgainBeforeThereIsAnythingToShowIsTheSystemsToo) {
    ApplicationEvents::setReopenHandler({});
    EXPECT_TRUE(ApplicationEvents::shouldHandleReopen(false));
}

TEST_F(ApplicationEventsTest, AtTheEndOfTheSessionAllIsDoneBeforeTheAnswer) {
    const int status = endOfLoop([this] {
        EXPECT_TRUE(ApplicationEvents::shouldTerminateNow(logOut));
        EXPECT_EQ(sessionsEnded, 1);
    });
    EXPECT_EQ(status, 77); // the event loop goes on, so pending work is not cut short
}

TEST_F(ApplicationEventsTest, TheSessionMayEndWhileThereIsNothingToDo) {
    ApplicationEvents::setSessionEndHandler({});
    EXPECT_TRUE(ApplicationEvents::shouldTerminateNow(logOut));
}

TEST_F(ApplicationEventsTest, AnyOtherQuitRequestEndsTheEventLoop) {
    int told = 0;
    QObject scope;
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &scope, [&told] { ++told; });
    const int status = endOfLoop([] { EXPECT_FALSE(ApplicationEvents::shouldTerminateNow(noReason)); });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(sessionsEnded, 0); // work that is left to do is triggered by the end of the loop
}

} // namespace

} // namespace Fenwhirl
