#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using HandBackRule::commands;
using HandBackRule::ConfiguredFan;
using HandBackRule::decide;
using HandBackRule::OwnedFan;
using Commands = std::vector<std::vector<std::string>>;

constexpr bool installed = true;

Commands decided(bool isInstalled, std::vector<int> fansRead, std::vector<ConfiguredFan> configured) {
    return commands(decide(isInstalled, fansRead, configured));
}

TEST(HandBackRule, RunsNothingWithoutAHelper) {
    EXPECT_EQ(decided(false, {0, 1}, {{0, false}}), Commands());
    EXPECT_EQ(decided(false, {}, {}), Commands());
}

TEST(HandBackRule, RunsOnceForAllWhenNoFanIsKnown) {
    EXPECT_EQ(decided(installed, {}, {}), Commands({{"auto"}}));
}

TEST(HandBackRule, RunsForEachFanThatWasReadOrIsConfigured) {
    EXPECT_EQ(decided(installed, {0, 2}, {}), Commands({{"auto", "0"}, {"auto", "2"}}));
    EXPECT_EQ(decided(installed, {}, {{1, false}}), Commands({{"auto", "1"}}));
    EXPECT_EQ(decided(installed, {2, 0}, {{1, false}, {0, false}}),
              Commands({{"auto", "0"}, {"auto", "1"}, {"auto", "2"}}));
}

TEST(HandBackRule, LeavesPinnedFansAlone) {
    EXPECT_EQ(decided(installed, {0, 1}, {{0, false}, {1, true}}), Commands({{"auto", "0"}}));
    EXPECT_EQ(decided(installed, {0}, {{7, true}}), Commands({{"auto", "0"}}));
}

TEST(HandBackRule, RunsNothingWhenEveryKnownFanIsPinned) {
    EXPECT_EQ(decided(installed, {0, 1}, {{0, true}, {1, true}}), Commands());
    EXPECT_EQ(decide(installed, std::vector{0}, std::vector<ConfiguredFan>{{0, true}}).scope,
              HandBack::Scope::indices);
}

TEST(HandBackRule, KeepsAnIndexThatNoFanCanHave) {
    EXPECT_EQ(decided(installed, {}, {{-1, false}}), Commands({{"auto", "-1"}}));
}

TEST(HandBackRule, FansThatAreOwnedGoBackWhetherTheyWereReadOrNot) {
    EXPECT_EQ(decide(installed, std::vector{0}, {}, std::vector<OwnedFan>{{3, false}}),
              (HandBack{HandBack::Scope::indices, {0, 3}}));
    EXPECT_EQ(decide(installed, {}, {}, std::vector<OwnedFan>{{3, true}}),
              (HandBack{HandBack::Scope::indices, {3}}));
}

TEST(HandBackRule, AConstantFanStaysOnlyAsItWasChosen) {
    const std::vector<ConfiguredFan> configured = {{0, true}, {1, true}, {2, true}, {3, false}};
    const std::vector<OwnedFan> owned = {{0, true}, {1, false}, {3, true}};
    EXPECT_EQ(decide(installed, {}, configured, owned), (HandBack{HandBack::Scope::indices, {1, 3}, {0}}));
}

} // namespace

} // namespace Fenwhirl
