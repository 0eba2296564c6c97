#include "Fenwhirl/Platform/Processes/ProcessTable.h"

#include "Support/TemporaryFolder.h"

#include <QList>
#include <QRegularExpression>
#include <QString>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Fenwhirl {

using namespace std::chrono_literals;

namespace {

// A child process that only sleeps. It is killed and reaped at the end.
class Sleeper {
public:
    Sleeper() {
        std::array<char*, 3> arguments = {const_cast<char*>("sleep"), const_cast<char*>("600"), nullptr};
        EXPECT_EQ(posix_spawn(&pid_, "/bin/sleep", nullptr, nullptr, arguments.data(), nullptr), 0);
    }

    ~Sleeper() {
        if (pid_ > 0) {
            (void)kill(pid_, SIGKILL);
            (void)reap();
        }
    }

    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;
    Sleeper(Sleeper&&) = delete;
    Sleeper& operator=(Sleeper&&) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }

    // Waits for the child's end and returns the signal that ended it.
    int reap() {
        int status = 0;
        (void)waitpid(pid_, &status, 0);
        pid_ = 0;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    pid_t pid_ = 0;
};

// Replaces each share with a sign, because this process consumes time while it is listed.
std::string withoutShares(const QByteArray& listing) {
    static const QRegularExpression share(QStringLiteral(R"( [0-9]+\.[0-9]{2} )"));
    return QString::fromLatin1(listing).replace(share, QStringLiteral(" % ")).toLatin1().toStdString();
}

ProcessTableSettings settingsOf(const std::string& tool) {
    return {.tool = tool, .limit = 20s, .firstInterval = 0ms};
}

std::string lineOf(const QByteArray& listing, pid_t pid) {
    const std::string text = '\n' + listing.toStdString();
    const std::size_t begin = text.find('\n' + std::to_string(pid) + ' ');
    return begin == std::string::npos ? "" : text.substr(begin + 1, text.find('\n', begin + 1) - begin - 1);
}

} // namespace

TEST(ProcessTable, ListsARunningProcessWithItsPath) {
    const Sleeper sleeper;
    const auto table = openProcessTable({.firstInterval = 0ms});
    const auto listing = table->listing();
    ASSERT_TRUE(listing);
    const std::string line = lineOf(*listing, sleeper.pid());
    const std::size_t path = line.rfind(' ');
    ASSERT_NE(path, std::string::npos) << line;
    EXPECT_EQ(line.substr(path + 1), std::filesystem::canonical("/bin/sleep").string());
    EXPECT_NE(lineOf(*listing, getpid()), "");
}

TEST(ProcessTable, MeasuresTheShareSinceTheLastListing) {
    const Sleeper idle;
    const auto table = openProcessTable({.firstInterval = 0ms});
    ASSERT_TRUE(table->listing());
    // Use a quarter of a second of processor time between the listings.
    for (const std::clock_t begin = std::clock(); std::clock() - begin < CLOCKS_PER_SEC / 4;) {
    }
    const auto listing = table->listing();
    ASSERT_TRUE(listing);
    const auto percent = [&listing](pid_t pid) {
        const std::string line = lineOf(*listing, pid);
        const std::string rest = line.substr(line.find(' ') + 1);
        return QByteArray::fromStdString(rest.substr(0, rest.find(' '))).toDouble();
    };
    EXPECT_GT(percent(getpid()), 1.0);
    EXPECT_EQ(percent(idle.pid()), 0.0);
}

TEST(ProcessTable, LeavesOutTheToolItself) {
    const auto table = openProcessTable({.firstInterval = 0ms});
    const auto listing = table->listing();
    ASSERT_TRUE(listing);
    const std::string tool = std::filesystem::canonical("/bin/ps").string();
    for (const QByteArray& line : listing->split('\n')) {
        // Another program's tool may be running, too, but not as a child of this process.
        if (line.endsWith(tool.c_str())) {
            const std::string pid = line.left(line.indexOf(' ')).toStdString();
            std::ifstream file("/proc/" + pid + "/stat");
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            EXPECT_EQ(text.find(' ' + std::to_string(getpid()) + ' '), std::string::npos) << text;
        }
    }
}

TEST(ProcessTable, GivesTheToolTheExactEnvironmentAndArguments) {
    const TemporaryFolder folder;
    setenv("FENWHIRL_TEST_STRAY", "1", 1);
    const std::string seen = folder.writeScript("seen", "");
    const std::string tool =
        folder.writeScript("ps", "tr '\\0' '\\n' < /proc/$$/environ > " + seen + "; echo \"$@\" >> " + seen);
    const auto table = openProcessTable(settingsOf(tool));
    ASSERT_TRUE(table->listing());
    std::ifstream file(seen);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::string arguments = "-A -o pid=,rss=,exe=\n";
    ASSERT_GE(text.size(), arguments.size());
    EXPECT_EQ(text.substr(text.size() - arguments.size()), arguments);
    const std::string environment = text.substr(0, text.size() - arguments.size());
    EXPECT_EQ(environment, "LC_ALL=C\nLANG=C\n");
}

TEST(ProcessTable, HasNoListingWithoutTheTool) {
    EXPECT_FALSE(openProcessTable(settingsOf("/nonexistent/ps"))->listing());
    EXPECT_FALSE(openProcessTable(settingsOf("/etc/passwd"))->listing());
}

TEST(ProcessTable, TakesWhatAFailingToolPrinted) {
    const TemporaryFolder folder;
    const std::string own = std::to_string(getpid());
    const std::string tool =
        folder.writeScript("ps", "echo " + own + " 1024 /opt/x; echo trouble >&2; exit 3");
    const auto listing = openProcessTable(settingsOf(tool))->listing();
    ASSERT_TRUE(listing);
    EXPECT_EQ(withoutShares(*listing), own + " % 1024 /opt/x\n");
}

TEST(ProcessTable, SkipsLinesThatAreNoProcess) {
    const TemporaryFolder folder;
    const std::string own = std::to_string(getpid());
    const std::string tool = folder.writeScript(
        "ps", "echo garbage; echo; echo -1 5 /x; echo 0 5 /x; echo 99999999999 5 /x; echo " + own +
                  " 7; echo '  " + own + "   7 /opt/a b (deleted)'");
    const auto listing = openProcessTable(settingsOf(tool))->listing();
    ASSERT_TRUE(listing);
    EXPECT_EQ(withoutShares(*listing), own + " % 7 /opt/a b\n");
}

TEST(ProcessTable, NamesProcessesWhosePathIsHidden) {
    const TemporaryFolder folder;
    const std::string own = std::to_string(getpid());
    const std::string tool = folder.writeScript("ps", "echo " + own + " 7 -");
    const auto listing = openProcessTable(settingsOf(tool))->listing();
    ASSERT_TRUE(listing);
    EXPECT_EQ(withoutShares(*listing), own + " % 7 ProcessTableTes\n");
}

TEST(ProcessTable, KillsAToolThatHangs) {
    const TemporaryFolder folder;
    const std::string tool = folder.writeScript("ps", "exec sleep 600");
    ProcessTableSettings settings = settingsOf(tool);
    settings.limit = 100ms;
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(openProcessTable(settings)->listing());
    EXPECT_LT(std::chrono::steady_clock::now() - before, 10s);
}

TEST(ProcessTable, KillsAToolThatPrintsAndHangs) {
    const TemporaryFolder folder;
    // The tool closes its output, so only its end remains to be waited for.
    ProcessTableSettings settings = settingsOf(folder.writeScript("ps", "echo x; exec sleep 600 >/dev/null"));
    settings.limit = 100ms;
    EXPECT_FALSE(openProcessTable(settings)->listing());
}

TEST(ProcessTable, LeavesNoChildBehind) {
    const TemporaryFolder folder;
    ProcessTableSettings settings = settingsOf(folder.writeScript("ps", "exec sleep 600"));
    settings.limit = 50ms;
    EXPECT_FALSE(openProcessTable(settings)->listing());
    EXPECT_TRUE(openProcessTable({.firstInterval = 0ms})->listing());
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "neither running nor unburied";
    EXPECT_EQ(errno, ECHILD);
}

TEST(ProcessTable, StopsWaitingWhenCancelled) {
    const TemporaryFolder folder;
    const std::string tool = folder.writeScript("ps", "exec sleep 600");
    ProcessTableSettings settings = settingsOf(tool);
    settings.limit = 1h;
    const auto table = openProcessTable(settings);
    std::thread canceller([&table] { table->cancel(); });
    EXPECT_FALSE(table->listing());
    canceller.join();
    EXPECT_FALSE(table->listing()) << "for good";
}

TEST(ProcessTable, StopsMeasuringWhenCancelled) {
    const auto table = openProcessTable({.firstInterval = 1h});
    std::thread canceller([&table] { table->cancel(); });
    EXPECT_FALSE(table->listing());
    canceller.join();
}

TEST(ProcessStart, IsTheSameForTheLifeOfAProcess) {
    const Sleeper sleeper;
    const auto start = startOfProcess(sleeper.pid());
    ASSERT_TRUE(start);
    EXPECT_EQ(startOfProcess(sleeper.pid()), start);
}

TEST(ProcessStart, IsAbsentWithoutAProcess) {
    Sleeper sleeper;
    const pid_t pid = sleeper.pid();
    (void)kill(pid, SIGKILL);
    (void)sleeper.reap();
    EXPECT_FALSE(startOfProcess(pid));
    EXPECT_FALSE(startOfProcess(0));
    EXPECT_FALSE(startOfProcess(-1));
}

TEST(SignalProcess, ReachesTheProcessThatIsMeant) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        Sleeper sleeper;
        signalProcess(sleeper.pid(), startOfProcess(sleeper.pid()).value_or(0), signal);
        EXPECT_EQ(sleeper.reap(), signal);
    }
}

TEST(SignalProcess, SparesAProcessOfAnotherStart) {
    Sleeper sleeper;
    signalProcess(sleeper.pid(), startOfProcess(sleeper.pid()).value_or(0) + 1, SIGKILL);
    // If SIGKILL had been sent above, SIGTERM would not be the signal that ends the process.
    (void)kill(sleeper.pid(), SIGTERM);
    EXPECT_EQ(sleeper.reap(), SIGTERM);
}

TEST(SignalProcess, NeverSignalsGroupsOrItself) {
    // Any of these would end this test.
    for (const std::int32_t pid :
         {0, -1, -static_cast<std::int32_t>(getpgrp()), static_cast<std::int32_t>(getpid())}) {
        signalProcess(pid, startOfProcess(getpid()).value_or(0), SIGKILL);
    }
}

TEST(ActiveProcessors, AreAtLeastOne) {
    EXPECT_GE(activeProcessorCount(), 1);
    EXPECT_GE(activeProcessorCount(), static_cast<int>(std::thread::hardware_concurrency()));
}

} // namespace Fenwhirl
