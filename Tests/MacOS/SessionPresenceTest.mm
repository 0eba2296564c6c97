#include "Fenwhirl/Platform/Session/SessionPresence.h"

#import "MacTest.h"

namespace Fenwhirl {

using SessionPresenceTest = MacTest;

namespace {

std::unique_ptr<SessionPresence> make() {
    return beforeTheEventLoop([] { return SessionPresence::create(); });
}

} // namespace

TEST_F(SessionPresenceTest, IsWhatTheWindowServerSays) {
    FakeMac::settings().isOnConsole = false;
    EXPECT_FALSE(make()->isInFront());
    FakeMac::settings().isOnConsole = true;
    EXPECT_TRUE(make()->isInFront());
    EXPECT_TRUE(make()->isSettled());
}

TEST_F(SessionPresenceTest, IsInFrontWithoutAnAnswer) {
    FakeMac::settings().isOnConsole = false;
    FakeMac::settings().consoleIsNumber = false;
    EXPECT_TRUE(make()->isInFront());
    FakeMac::settings().hasConsoleKey = false;
    EXPECT_TRUE(make()->isInFront());
    FakeMac::settings().hasSession = false;
    EXPECT_TRUE(make()->isInFront());
}

TEST_F(SessionPresenceTest, FollowsTheUserWhoIsInFront) {
    const auto presence = make();
    int changes = 0;
    QObject::connect(presence.get(), &SessionPresence::changed, [&] { ++changes; });
    NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
    FakeMac::post(center, NSWorkspaceSessionDidResignActiveNotification);
    EXPECT_FALSE(presence->isInFront());
    FakeMac::post(center, NSWorkspaceSessionDidBecomeActiveNotification);
    EXPECT_TRUE(presence->isInFront());
    EXPECT_EQ(changes, 2);
}

TEST_F(SessionPresenceTest, StopsListeningAtItsEnd) {
    auto presence = make();
    EXPECT_EQ(FakeMac::observers(), 2U);
    beforeTheEventLoop([&] { presence.reset(); });
    EXPECT_EQ(FakeMac::observers(), 0U);
}

} // namespace Fenwhirl
