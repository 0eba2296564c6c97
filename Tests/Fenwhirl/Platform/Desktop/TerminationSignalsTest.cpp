#include "Fenwhirl/Platform/Desktop/TerminationSignals.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using Handler = void (*)(int);

Handler handlerOf(int signal) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

class EverySignal : public testing::TestWithParam<int> {};

TEST_P(EverySignal, BecomesACallInsteadOfTheEnd) {
    TerminationSignals signals;
    QSignalSpy received(&signals, &TerminationSignals::received);
    raise(GetParam());
    EXPECT_EQ(received.count(), 0); // not from inside the signal handler
    ASSERT_TRUE(received.wait(30000));
    EXPECT_EQ(received.count(), 1);
}

INSTANTIATE_TEST_SUITE_P(TerminationSignals, EverySignal, testing::Values(SIGTERM, SIGINT, SIGHUP, SIGQUIT));

TEST(TerminationSignals, OneThatWasIgnoredStaysIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    {
        const TerminationSignals signals;
        EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
        EXPECT_NE(handlerOf(SIGTERM), SIG_IGN);
    }
    std::signal(SIGHUP, SIG_DFL);
}

TEST(TerminationSignals, RestoresTheSignalHandlers) {
    { const TerminationSignals signals; }
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
        EXPECT_EQ(handlerOf(signal), SIG_DFL);
    }
}

} // namespace

} // namespace Fenwhirl
