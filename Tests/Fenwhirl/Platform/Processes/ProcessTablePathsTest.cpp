// The paths in the process table, as the user gave them to the files.

#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Support/TemporaryFolder.h"

#include <QList>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

namespace {

// A running copy of sleep(1) under any name. It is killed and reaped at the end.
class CopyOfSleep {
public:
    explicit CopyOfSleep(std::string path) : path_(std::move(path)) {
        std::filesystem::create_directories(std::filesystem::path(path_).parent_path());
        std::filesystem::copy_file("/bin/sleep", path_);
        std::string duration = "600";
        std::array<char*, 3> arguments = {path_.data(), duration.data(), nullptr};
        EXPECT_EQ(posix_spawn(&pid_, path_.c_str(), nullptr, nullptr, arguments.data(), nullptr), 0);
    }

    ~CopyOfSleep() {
        if (pid_ > 0) {
            (void)kill(pid_, SIGKILL);
            (void)waitpid(pid_, nullptr, 0);
        }
    }

    CopyOfSleep(const CopyOfSleep&) = delete;
    CopyOfSleep& operator=(const CopyOfSleep&) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }

private:
    std::string path_;
    pid_t pid_ = 0;
};

// The path of this process in the listing; empty when it is not listed.
std::string pathOf(const std::optional<QByteArray>& listing, pid_t pid) {
    const QByteArray start = QByteArray::number(pid) + ' ';
    for (const QByteArray& line : listing.value_or(QByteArray()).split('\n')) {
        if (line.startsWith(start)) {
            return line.split(' ').mid(3).join(' ').toStdString();
        }
    }
    return {};
}

std::optional<QByteArray> listed(const std::string& tool = ProcessTableSettings().tool) {
    return openProcessTable({.tool = tool, .limit = std::chrono::seconds(20), .firstInterval = {}})
        ->listing();
}

} // namespace

TEST(ProcessTablePaths, KeepLettersThatAreNotASCII) {
    const TemporaryFolder folder;
    const std::string real = std::filesystem::canonical(folder.path()).string();
    const CopyOfSleep accented(real + "/Jeux d'été/Žabka");
    const CopyOfSleep question(real + "/what?");
    const auto listing = listed();
    EXPECT_EQ(pathOf(listing, accented.pid()), real + "/Jeux d'été/Žabka");
    EXPECT_EQ(pathOf(listing, question.pid()), real + "/what?");
}

TEST(ProcessTablePaths, OfAReplacedExecutableAreThoseBefore) {
    const TemporaryFolder folder;
    const std::string path = std::filesystem::canonical(folder.path()).string() + "/été";
    const CopyOfSleep replaced(path);
    std::filesystem::remove(path);
    EXPECT_EQ(pathOf(listed(), replaced.pid()), path);
}

TEST(ProcessTablePaths, ForgeNoLines) {
    const TemporaryFolder folder;
    const std::string real = std::filesystem::canonical(folder.path()).string();
    const CopyOfSleep forger(real + "/é\n1 99.00 7 \t\x7f");
    EXPECT_EQ(pathOf(listed(), forger.pid()), real + "/é?1 99.00 7 ??");
}

// The system names no executable of a process that has ended but has not been waited for.
TEST(ProcessTablePaths, AreThoseOfTheToolWhereTheSystemNamesNone) {
    const TemporaryFolder folder;
    const pid_t ended = fork();
    if (ended == 0) {
        _exit(0);
    }
    siginfo_t information = {};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(ended), &information, WEXITED | WNOWAIT), 0);
    const std::string tool = folder.writeScript("ps", "echo " + std::to_string(ended) + " 7 /opt/a?b");
    EXPECT_EQ(pathOf(listed(tool), ended), "/opt/a?b");
    (void)waitpid(ended, nullptr, 0);
}

} // namespace Fenwhirl
