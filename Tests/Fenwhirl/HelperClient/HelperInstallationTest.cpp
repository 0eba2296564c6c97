#include "Fenwhirl/HelperClient/HelperInstallation.h"

#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace Fenwhirl {

namespace {

constexpr uid_t nobody = 65534;

// A helper in a folder of its own, with a record of the commands that needed an administrator.
class HelperInstallationTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string path = folder.path("FenwhirlHelper");
    std::vector<std::string> commands;
    bool consent = true;

    [[nodiscard]] HelperInstallation::Surroundings surroundings() {
        return {.helperPath = path,
                .executablePath = [] { return std::optional<std::string>("/opt/bin/Fenwhirl"); },
                .runAsAdministrator =
                    [this](const std::string& command) {
                        commands.push_back(command);
                        return consent;
                    },
                .group = "root",
                .installsByRename = true,
                .mayRunAsRoot = true};
    }

    HelperInstallation installation{surroundings()};

    // Writes a helper that logs its arguments before it runs `body`.
    void writeHelper(const std::string& body) {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        (void)folder.writeScript("FenwhirlHelper", "printf '<%s>' \"$@\" >> '" + folder.path("log") +
                                                       "'; echo >> '" + folder.path("log") + "'\n" + body);
    }

    [[nodiscard]] std::string log() const { return folder.read("log"); }

    [[nodiscard]] std::size_t launches() const {
        const std::string text = log();
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }

    // Sets the modification time of the helper file.
    void stamp(std::int64_t seconds, std::int64_t nanoseconds) const {
        const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
                                   {.tv_sec = seconds, .tv_nsec = nanoseconds}};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }
};

// Tests that change the owner of files.
class HelperInstallationAsRootTest : public HelperInstallationTest {
protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "only root can give files away";
        }
    }

    void giveTo(const std::string& file, uid_t owner, mode_t mode) const {
        ASSERT_EQ(lchown(file.c_str(), owner, 0), 0);
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
    }
};

TEST_F(HelperInstallationAsRootTest, IsInstalledWhenTheFileItselfIsRootsAndSetUserID) {
    struct Row {
        const char* what;
        mode_t mode;
        uid_t owner;
        bool expected;
    };

    const Row rows[] = {
        {"file", 04755, 0, true},       {"file", 06755, 0, true},       {"file", 04000, 0, true},
        {"file", 0755, 0, false},       {"file", 02755, 0, false},      {"file", 01755, 0, false},
        {"file", 04755, nobody, false}, {"file", 0755, nobody, false},  {"folder", 04755, 0, true},
        {"folder", 0755, 0, false},     {"fifo", 04755, 0, true}, // opening one would hang here
        {"fifo", 0755, 0, false},       {"fifo", 04755, nobody, false},
    };
    for (const Row& row : rows) {
        std::filesystem::remove(path);
        if (row.what == std::string_view("file")) {
            (void)folder.write("FenwhirlHelper", "");
        } else if (row.what == std::string_view("folder")) {
            std::filesystem::create_directory(path);
        } else {
            ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
        }
        giveTo(path, row.owner, row.mode);
        EXPECT_EQ(installation.isInstalled(), row.expected)
            << row.what << ' ' << std::oct << row.mode << " of " << std::dec << row.owner;
    }
}

TEST_F(HelperInstallationAsRootTest, ALinkToAGoodHelperIsNotAnInstalledHelper) {
    giveTo(folder.write("good", ""), 0, 04755);
    std::filesystem::create_symlink(folder.path("good"), path);
    EXPECT_FALSE(installation.isInstalled());
    std::filesystem::remove(path);
    std::filesystem::create_symlink(folder.path("nowhere"), path);
    EXPECT_FALSE(installation.isInstalled());
}

TEST_F(HelperInstallationTest, NoFileIsNoHelper) {
    EXPECT_FALSE(installation.isInstalled());
    EXPECT_EQ(installation.installedVersion(), std::nullopt);
    EXPECT_FALSE(installation.run({"auto"}));
    EXPECT_EQ(installation.output({"test"}), "Impossible de lancer l'assistant.");
}

TEST_F(HelperInstallationTest, RunPassesExactlyTheCommand) {
    writeHelper("exit 0");
    EXPECT_TRUE(installation.run({"set", "0", "2000"}));
    EXPECT_EQ(log(), "<--helper><set><0><2000>\n");
}

TEST_F(HelperInstallationTest, RunIsTrueForStatusZeroOnly) {
    for (const char* end :
         {"exit 1", "exit 2", "exit 64", "exit 77", "exit 127", "kill -9 $$", "kill -14 $$"}) {
        writeHelper(end);
        EXPECT_FALSE(installation.run({"auto"})) << end;
    }
    writeHelper("exit 0");
    EXPECT_TRUE(installation.run({"auto"}));
}

TEST_F(HelperInstallationTest, OutputIsWhatIsPrintedWhateverTheStatus) {
    writeHelper("echo réponse; echo erreur >&2; exit 5");
    EXPECT_EQ(installation.output({"test"}), "réponse\n");
    writeHelper(":");
    EXPECT_EQ(installation.output({"test"}), "");
    writeHelper("printf 'a\\000\\377b'");
    EXPECT_EQ(installation.output({"test"}), std::string("a\0\uFFFDb", 6));
    EXPECT_EQ(log(), "<--helper><test>\n<--helper><test>\n<--helper><test>\n");
}

TEST_F(HelperInstallationTest, OutputOfAHelperThatIsNoProgramIsTheLaunchFailure) {
    (void)folder.write("FenwhirlHelper", "");
    EXPECT_EQ(installation.output({"test"}), "Impossible de lancer l'assistant.");
}

TEST_F(HelperInstallationTest, VersionIsTrimmedAndMayBeEmpty) {
    writeHelper("printf ' \\n3\\r\\n \\n'");
    EXPECT_EQ(installation.installedVersion(), "3");
    writeHelper(":");
    EXPECT_EQ(installation.installedVersion(), "");
    EXPECT_EQ(log(), "<--helper><version>\n<--helper><version>\n");
}

TEST_F(HelperInstallationTest, AnUnchangedHelperIsAskedOnce) {
    writeHelper("echo 3");
    EXPECT_EQ(installation.installedVersion(), "3");
    EXPECT_EQ(installation.installedVersion(), "3");
    EXPECT_EQ(launches(), 1U);
}

TEST_F(HelperInstallationTest, AReplacedHelperIsAskedAgain) {
    writeHelper("echo 2");
    stamp(1'700'000'000, 5);
    EXPECT_EQ(installation.installedVersion(), "2");
    writeHelper("echo 3");
    stamp(1'700'000'000, 6); // one nanosecond later
    EXPECT_EQ(installation.installedVersion(), "3");
    EXPECT_EQ(launches(), 2U);
    stamp(4'000'000'000, 0); // in the future
    EXPECT_EQ(installation.installedVersion(), "3");
    stamp(1'600'000'000, 0); // back in the past
    EXPECT_EQ(installation.installedVersion(), "3");
    EXPECT_EQ(launches(), 4U);
}

TEST_F(HelperInstallationTest, AReplacedHelperIsAskedAgainWhateverItsModificationTime) {
    writeHelper("echo 2");
    stamp(1'700'000'000, 5);
    EXPECT_EQ(installation.installedVersion(), "2");
    const auto before = fileStatus(path);
    writeHelper("echo 3");
    do { // repeats until the change time differs: file systems' clocks tick every few milliseconds
        stamp(1'700'000'000, 5);
    } while (fileStatus(path)->changed == before->changed);
    EXPECT_EQ(fileStatus(path)->modified, before->modified);
    EXPECT_EQ(installation.installedVersion(), "3");
    EXPECT_EQ(launches(), 2U);
}

TEST_F(HelperInstallationTest, ALaunchThatFailedIsNotRemembered) {
    writeHelper("echo 3");
    EXPECT_EQ(installation.installedVersion(), "3");
    // A file that is open for writing cannot be executed.
    writeHelper("echo 4");
    const int writer = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    EXPECT_EQ(installation.installedVersion(), "Impossible de lancer l'assistant.");
    EXPECT_EQ(installation.installedVersion(), "Impossible de lancer l'assistant.");
    close(writer);
    EXPECT_EQ(installation.installedVersion(), "4");
    EXPECT_EQ(installation.installedVersion(), "4");
    EXPECT_EQ(launches(), 2U);
}

TEST_F(HelperInstallationTest, TheVersionOfAHelperThatWasKilledIsNotRemembered) {
    const std::string marker = path + ".killed";
    writeHelper("test -e '" + marker + "' && echo 3 && exit; : > '" + marker + "'; kill -KILL $$");
    EXPECT_EQ(installation.installedVersion(), "Impossible de lancer l'assistant.");
    EXPECT_EQ(installation.installedVersion(), "3");
}

TEST_F(HelperInstallationTest, AnEmptyVersionIsRememberedToo) {
    writeHelper(":");
    EXPECT_EQ(installation.installedVersion(), "");
    EXPECT_EQ(installation.installedVersion(), "");
    EXPECT_EQ(launches(), 1U);
}

TEST_F(HelperInstallationTest, ManyThreadsShareOneLaunch) {
    writeHelper("sleep 0.1; echo 3");
    std::vector<std::thread> threads;
    std::vector<std::optional<std::string>> versions(64);
    for (auto& version : versions) {
        threads.emplace_back([this, &version] { version = installation.installedVersion(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(versions, std::vector<std::optional<std::string>>(64, "3"));
    EXPECT_EQ(launches(), 1U);
}

TEST_F(HelperInstallationTest, ManyThreadsRunHelpersSideBySide) {
    writeHelper("exit $3");
    std::vector<std::thread> threads;
    std::vector<int> succeeded(32);
    for (std::size_t i = 0; i < succeeded.size(); ++i) {
        threads.emplace_back([&, i] {
            succeeded[i] = installation.run({"set", std::to_string(i % 2)}) ? 1 : 0;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t i = 0; i < succeeded.size(); ++i) {
        EXPECT_EQ(succeeded[i], i % 2 == 0 ? 1 : 0);
    }
}

TEST_F(HelperInstallationTest, TheInstallCommandOfLinuxWritesBesideAndRenames) {
    auto onLinux = surroundings();
    onLinux.helperPath = "/Library/PrivilegedHelperTools/FenwhirlHelper";
    EXPECT_EQ(HelperInstallation(onLinux).installCommand("/opt/fenwhirl/bin/Fenwhirl"),
              "umask 022 && mkdir -p /Library/PrivilegedHelperTools && "
              "rm -f '/Library/PrivilegedHelperTools/FenwhirlHelper.new' && cp '/opt/fenwhirl/bin/Fenwhirl' "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper.new' && chown root:root "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper.new' && chmod 4755 "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper.new' && mv -fT "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper.new' "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper' || "
              "{ rm -f '/Library/PrivilegedHelperTools/FenwhirlHelper.new'; exit 1; }");
}

TEST_F(HelperInstallationTest, TheInstallCommandOfMacOSWritesInPlace) {
    auto mac = surroundings();
    mac.installsByRename = false;
    mac.helperPath = "/Library/PrivilegedHelperTools/FenwhirlHelper";
    mac.group = "wheel";
    EXPECT_EQ(HelperInstallation(mac).installCommand("/Applications/Fenwhirl.app/Contents/MacOS/Fenwhirl"),
              "mkdir -p /Library/PrivilegedHelperTools && cp "
              "'/Applications/Fenwhirl.app/Contents/MacOS/Fenwhirl' "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper' && chown root:wheel "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper' && chmod 4755 "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper'");
}

TEST_F(HelperInstallationTest, InstallRefusesPathsThatBreakTheQuoting) {
    for (const char* executable : {"/opt/a'; touch pwned; '/x", "/opt/a\"b", "/opt/a\\b", "/opt/a\nb", ""}) {
        auto hostile = surroundings();
        hostile.executablePath = [executable] { return std::optional<std::string>(executable); };
        EXPECT_FALSE(HelperInstallation(hostile).install()) << executable;
    }
    EXPECT_TRUE(commands.empty());
}

TEST_F(HelperInstallationTest, InstallNeedsAnExecutable) {
    auto unknown = surroundings();
    unknown.executablePath = [] { return std::optional<std::string>(); };
    EXPECT_FALSE(HelperInstallation(unknown).install());
    EXPECT_TRUE(commands.empty());
}

TEST_F(HelperInstallationTest, ABuildWithSanitizersIsNeverInstalled) {
    auto sanitized = surroundings();
    sanitized.mayRunAsRoot = false;
    EXPECT_FALSE(HelperInstallation(sanitized).install());
    EXPECT_TRUE(commands.empty());
}

TEST_F(HelperInstallationAsRootTest, InstallAsksOnceAndLooksAtTheResult) {
    EXPECT_FALSE(installation.install()); // the administrator agreed, but no helper appeared
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_EQ(commands.front(), installation.installCommand("/opt/bin/Fenwhirl"));

    giveTo(folder.write("FenwhirlHelper", ""), 0, 0755);
    EXPECT_FALSE(installation.install()); // without the set-user-ID bit
    giveTo(path, 0, 04755);
    EXPECT_TRUE(installation.install());
    consent = false;
    EXPECT_FALSE(installation.install());
}

TEST_F(HelperInstallationAsRootTest, InstallWantsAFolderThatOnlyRootControls) {
    struct Row {
        const char* what;
        mode_t mode;
        uid_t owner;
        bool expected;
    };

    const Row rows[] = {
        {"missing", 0, 0, true},         {"folder", 0755, 0, true},   {"folder", 01755, 0, true},
        {"folder", 0777, 0, false},      {"folder", 0775, 0, false},  {"folder", 0757, 0, false},
        {"folder", 0755, nobody, false}, {"folder", 01777, 0, false}, {"link", 0, 0, false},
        {"file", 0644, 0, false},
    };
    const std::string parent = folder.path("Tools");
    auto inside = surroundings();
    inside.helperPath = parent + "/FenwhirlHelper";
    const HelperInstallation inFolder(inside);
    for (const Row& row : rows) {
        std::filesystem::remove(parent);
        if (row.what == std::string_view("folder")) {
            std::filesystem::create_directory(parent);
            giveTo(parent, row.owner, row.mode);
        } else if (row.what == std::string_view("link")) {
            std::filesystem::create_directory_symlink("/usr", parent);
        } else if (row.what == std::string_view("file")) {
            giveTo(folder.write("Tools", ""), row.owner, row.mode);
        }
        commands.clear();
        EXPECT_FALSE(inFolder.install());
        EXPECT_EQ(commands.size(), row.expected ? 1U : 0U)
            << row.what << ' ' << std::oct << row.mode << " of " << std::dec << row.owner;
    }
}

TEST_F(HelperInstallationAsRootTest, AStickySharedFolderProtectsRootsExistingHelper) {
    const std::string parent = folder.path("Tools");
    std::filesystem::create_directory(parent);
    giveTo(parent, 0, 01777);
    auto inside = surroundings();
    inside.helperPath = parent + "/FenwhirlHelper";
    inside.installsByRename = false;
    const HelperInstallation inFolder(inside);
    (void)folder.write("Tools/FenwhirlHelper", "");
    giveTo(inside.helperPath, nobody, 0755);
    EXPECT_FALSE(inFolder.isPathRootControlled());
    giveTo(inside.helperPath, 0, 0755);
    EXPECT_TRUE(inFolder.isPathRootControlled());
    // A temporary file beside it would belong to whichever user creates it first.
    inside.installsByRename = true;
    EXPECT_FALSE(HelperInstallation(inside).isPathRootControlled());
}

TEST_F(HelperInstallationAsRootTest, InstallLooksAtTheFoldersAboveToo) {
    const std::string above = folder.path("Above");
    std::filesystem::create_directories(above + "/Tools");
    auto inside = surroundings();
    inside.helperPath = above + "/Tools/FenwhirlHelper";
    const HelperInstallation inFolder(inside);
    EXPECT_TRUE(inFolder.isPathRootControlled());
    giveTo(above, nobody, 0755);
    EXPECT_FALSE(inFolder.isPathRootControlled());
    giveTo(above, 0, 0777);
    EXPECT_FALSE(inFolder.isPathRootControlled());
}

} // namespace

} // namespace Fenwhirl
