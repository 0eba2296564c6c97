#include "Fenwhirl/Platform/Processes/ProcessStatLinux.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// A realistic line in which the test chooses the name and the three relevant fields.
std::string statOf(const std::string& name, const std::string& user, const std::string& kernel,
                   const std::string& start) {
    return "77 (" + name + ") S 1 77 77 0 -1 4194560 1000 0 5 0 " + user + ' ' + kernel + " 0 0 20 0 1 0 " +
           start +
           " 20480000 500 18446744073709551615 1 1 0 0 0 0 0 0 0 0 0 0 17 1 0 0 0 0 0 0 0 0 0 0 0 0 0\n";
}

} // namespace

TEST(ProcessStat, AddsTheTimesOfUserAndKernel) {
    const auto stat = parseProcessStat(statOf("bash", "12", "30", "4567"));
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->name, "bash");
    EXPECT_EQ(stat->ticks, 42U);
    EXPECT_EQ(stat->startTicks, 4567U);
}

TEST(ProcessStat, TakesNamesThatLookLikeFields) {
    for (const char* name : {"a b", "x) R 9 9", "((", "))", "", "line\nbreak", ") S 1 1 1"}) {
        const auto stat = parseProcessStat(statOf(name, "1", "2", "3"));
        ASSERT_TRUE(stat) << name;
        EXPECT_EQ(stat->name, name);
        EXPECT_EQ(stat->startTicks, 3U);
    }
}

TEST(ProcessStat, RefusesWhatIsNoSuchFile) {
    for (const char* text : {"", "77", "77 (a", "77 a) S", ")(", "77 (a) S 1 2 3", "77 (a)"}) {
        EXPECT_FALSE(parseProcessStat(text)) << text;
    }
    EXPECT_FALSE(parseProcessStat(statOf("a", "x", "1", "1")));
    EXPECT_FALSE(parseProcessStat(statOf("a", "1", "-1", "1")));
    EXPECT_FALSE(parseProcessStat(statOf("a", "1", "1", "99999999999999999999999")));
}

TEST(ProcessStat, ReadsTheFileOfARunningProcess) {
    const auto stat = readProcessStat(getpid());
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->name, "ProcessTableTes");
    EXPECT_GT(stat->startTicks, 0U);
}

} // namespace Fenwhirl
