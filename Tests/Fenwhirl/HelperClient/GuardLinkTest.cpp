#include "Fenwhirl/HelperClient/GuardLink.h"

#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"
#include "Guard/GuardRecord.h"
#include "Support/TemporaryFolder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <numeric>
#include <sstream>
#include <sys/wait.h>
#include <thread>

namespace Fenwhirl {

namespace {

HandBack fans(std::vector<int> indices) {
    return {.scope = HandBack::Scope::indices, .indices = std::move(indices)};
}

constexpr auto patience = std::chrono::seconds(10);

template <class Condition>
bool becomesTrue(const Condition& condition) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

// Uses a guard that only records what it receives.
class GuardLinkTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string guard = folder.writeScript(
        "guard", "echo $$ >> '" + folder.path("starts") + "'\nexec cat >> '" + folder.path("heard") + "'");

    [[nodiscard]] bool hears(const std::string& text) const {
        return becomesTrue([&] { return folder.read("heard") == text; });
    }
};

TEST(GuardLinkRecord, IsOneLine) {
    EXPECT_EQ(GuardLink::record({}), "nothing\n");
    EXPECT_EQ(GuardLink::record({.scope = HandBack::Scope::allFans, .indices = {}}), "all\n");
    EXPECT_EQ(GuardLink::record(fans({0, 2, 11})), "fans 0 2 11\n");
    EXPECT_EQ(GuardLink::record(fans({})), "fans\n");
}

TEST(GuardLinkRecord, MarksTheFansThatAreHandedBackInSilenceOnly) {
    HandBack handBack = fans({0, 2});
    handBack.pinned = {1, 3};
    EXPECT_EQ(GuardLink::record(handBack), "fans 0 2 =1 =3\n");
    handBack.indices = {};
    EXPECT_EQ(GuardLink::record(handBack), "fans =1 =3\n");
}

TEST(GuardLinkRecord, ThatWouldBeTooLongMeansAllFans) {
    std::vector<int> many(10000);
    std::iota(many.begin(), many.end(), 0);
    EXPECT_EQ(GuardLink::record(fans(many)), "all\n");
    many.resize(6000);
    EXPECT_LE(GuardLink::record(fans(many)).size(), GuardRecord::longestLine);
    EXPECT_NE(GuardLink::record(fans(many)), "all\n");
}

TEST_F(GuardLinkTest, HearsTheStartAndEachChangeOnce) {
    GuardLink link(guard);
    ASSERT_TRUE(link.guard());
    link.send(fans({0, 1}));
    link.send(fans({0, 1}));
    link.send({});
    EXPECT_TRUE(hears("nothing\nfans 0 1\nnothing\n"));
    link.finish();
    EXPECT_TRUE(hears("nothing\nfans 0 1\nnothing\n\x04"));
}

TEST_F(GuardLinkTest, HearsOneSignOfLifeForEachCall) {
    GuardLink link(guard);
    ASSERT_TRUE(hears("nothing\n"));
    link.keepAlive();
    link.keepAlive();
    EXPECT_TRUE(hears("nothing\n\n\n"));
    link.send(fans({0}));
    link.keepAlive();
    EXPECT_TRUE(hears("nothing\n\n\nfans 0\n\n"));
    link.finish();
}

TEST_F(GuardLinkTest, TellsOfEachGuardThatWasStarted) {
    std::vector<pid_t> started;
    GuardLink link(guard, [&](pid_t pid) { started.push_back(pid); });
    ASSERT_TRUE(hears("nothing\n"));
    const pid_t first = link.guard().value();
    EXPECT_EQ(started, std::vector{first});
    kill(first, SIGKILL);
    ASSERT_TRUE(becomesTrue([&] {
        link.keepAlive();
        return link.guard() && *link.guard() != first;
    }));
    EXPECT_EQ(started, (std::vector{first, link.guard().value()}));
    link.finish();
}

TEST_F(GuardLinkTest, ALostGuardIsReplacedAndToldAgain) {
    GuardLink link(guard);
    link.send(fans({0}));
    ASSERT_TRUE(hears("nothing\nfans 0\n"));
    const pid_t first = link.guard().value();
    kill(first, SIGKILL);
    // Writing to a guard that has died must not kill this process.
    ASSERT_TRUE(becomesTrue([&] {
        link.send(fans({1}));
        link.send(fans({2}));
        link.keepAlive();
        return link.guard() && *link.guard() != first;
    }));
    EXPECT_TRUE(becomesTrue([&] { return folder.read("heard").ends_with("fans 2\n"); }));
    link.finish();
}

TEST_F(GuardLinkTest, ADismissedGuardIsNotReplaced) {
    GuardLink link(guard);
    link.finish();
    ASSERT_TRUE(hears("nothing\n\x04"));
    const pid_t first = link.guard().value();
    ASSERT_TRUE(becomesTrue([&] { return waitpid(first, nullptr, WNOHANG) != 0; }));
    link.keepAlive();
    link.send(fans({0}));
    EXPECT_EQ(link.guard(), first);
    EXPECT_EQ(folder.read("starts"), std::to_string(first) + "\n");
    EXPECT_EQ(folder.read("heard"), "nothing\n\x04");
}

TEST_F(GuardLinkTest, AMissingGuardIsNoError) {
    GuardLink link(folder.path("missing"));
    EXPECT_FALSE(link.guard());
    link.send(fans({0}));
    link.keepAlive();
    EXPECT_FALSE(link.guard());
    link.finish();
}

TEST_F(GuardLinkTest, AGuardThatDoesNotReadNeverBlocks) {
    GuardLink link(folder.writeScript("deaf", "exec sleep 60"));
    ASSERT_TRUE(link.guard());
    std::vector<int> many(5000);
    std::iota(many.begin(), many.end(), 0);
    for (int i = 0; i < 20; ++i) {
        many.back() = i;
        link.send(fans(many));
    }
    kill(link.guard().value(), SIGKILL);
    link.finish();
}

TEST_F(GuardLinkTest, AfterAFullPipeOnlyTheNewestRecordIsSent) {
    // A guard that does not read before the file "go" exists.
    GuardLink link(folder.writeScript("late", "while [ ! -e '" + folder.path("go") +
                                                  "' ]; do sleep 0.01; done\nexec cat >> '" +
                                                  folder.path("heard") + "'"));
    ASSERT_TRUE(link.guard());
    std::vector<int> many(5000);
    std::iota(many.begin(), many.end(), 0);
    for (int i = 0; i < 100; ++i) {
        many.back() = i;
        link.send(fans(many));
        link.keepAlive();
    }
    (void)folder.write("go", "");
    const std::string newest = GuardLink::record(fans(many));
    ASSERT_TRUE(becomesTrue([&] {
        link.keepAlive();
        return folder.read("heard").find(newest) != std::string::npos;
    }));
    link.finish();
    std::istringstream heard(folder.read("heard"));
    std::size_t records = 0;
    for (std::string line; std::getline(heard, line);) {
        if (line.empty() || line == "nothing" || line == "\x04") {
            continue;
        }
        EXPECT_TRUE(line.starts_with("fans 0 1 2 ")) << line;
        ++records;
    }
    // The records that fit into a pipe of 64 KiB, the one that was cut, and the newest.
    EXPECT_LT(records, 10U);
}

TEST_F(GuardLinkTest, OtherChildrenDoNotInheritThePipe) {
    auto link = std::make_unique<GuardLink>(guard);
    ASSERT_TRUE(hears("nothing\n"));
    const pid_t pid = link->guard().value();
    const std::vector<std::string> arguments = {"30"};
    const auto other = startChild("/bin/sleep", arguments, ChildEnvironment::inherited, -1, false);
    ASSERT_TRUE(other);
    link.reset(); // closes the pipe, unless another process has its end
    EXPECT_TRUE(becomesTrue([&] { return kill(pid, 0) != 0 || waitpid(pid, nullptr, WNOHANG) == pid; }));
    kill(*other, SIGKILL);
    waitpid(*other, nullptr, 0);
}

} // namespace

} // namespace Fenwhirl
