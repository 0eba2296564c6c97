#include "Fenwhirl/HelperClient/EmergencyHandBack.h"

#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>
#include <vector>

namespace Fenwhirl {

namespace {

template <class Condition>
bool becomesTrue(const Condition& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

HandBack fans(std::vector<int> indices, std::vector<int> pinned = {}) {
    return {.scope = HandBack::Scope::indices, .indices = std::move(indices), .pinned = std::move(pinned)};
}

// Uses a guard that only records what it receives.
class EmergencyHandBackTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string guard = folder.writeScript("guard", "exec cat >> '" + folder.path("heard") + "'");

    [[nodiscard]] bool hears(const std::string& text) const {
        return becomesTrue([&] { return folder.read("heard") == text; });
    }
};

TEST_F(EmergencyHandBackTest, TheGuardHearsChangesAndSignsOfLifeUntilItIsDismissed) {
    EmergencyHandBack emergency(folder.path("helper"), guard);
    emergency.update(fans({0}));
    emergency.update(fans({0}));
    emergency.keepAlive();
    emergency.update(fans({0}, {1}));
    emergency.finish();
    emergency.update(fans({0, 1}));
    emergency.keepAlive();
    // The empty line is a sign of life; \x04 is the farewell.
    EXPECT_TRUE(hears("nothing\nfans 0\n\nfans 0 =1\n\x04"));
}

TEST_F(EmergencyHandBackTest, SaysWhichGuardWasStarted) {
    std::vector<pid_t> started;
    EmergencyHandBack emergency(folder.path("helper"), guard, [&](pid_t pid) { started.push_back(pid); });
    ASSERT_EQ(started.size(), 1U);
    EXPECT_EQ(kill(started[0], 0), 0);
    emergency.finish();
}

TEST_F(EmergencyHandBackTest, AnyThreadMayReportFans) {
    EmergencyHandBack emergency(folder.path("helper"), guard);
    constexpr int threadCount = 4;
    constexpr int updates = 200;
    std::atomic<int> running = threadCount;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < updates; ++i) {
                emergency.update(fans({thread, 10 + i}));
            }
            --running;
        });
    }
    while (running > 0) {
        emergency.keepAlive();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    emergency.update(fans({99}));
    emergency.finish();
    ASSERT_TRUE(becomesTrue([&] { return folder.read("heard").ends_with("\x04"); }));
    std::istringstream heard(folder.read("heard"));
    std::string last;
    for (std::string line; std::getline(heard, line) && line != "\x04";) {
        if (line.empty()) {
            continue;
        }
        // Two records must never be interleaved.
        EXPECT_TRUE(line == "nothing" || line == "fans 99" ||
                    (line.starts_with("fans ") && std::count(line.begin(), line.end(), ' ') == 2))
            << line;
        last = line;
    }
    EXPECT_EQ(last, "fans 99");
}

} // namespace

} // namespace Fenwhirl
