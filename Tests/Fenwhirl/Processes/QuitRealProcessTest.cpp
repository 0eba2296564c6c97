#include "Fenwhirl/Processes/ProcessMonitor.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

using namespace std::chrono_literals;

namespace {

constexpr int patienceMilliseconds = 20'000;

// An application bundle with a program that keeps a processor busy, and its running process.
class BusyApp {
public:
    explicit BusyApp(bool ignoresTermination = false) {
        const std::filesystem::path bundle =
            std::filesystem::path(folder_.path().toStdString()) / "Demo App.app";
        const std::filesystem::path program = bundle / "Contents" / "MacOS" / "Demo App";
        std::filesystem::create_directories(program.parent_path());
        std::filesystem::copy_file("/usr/bin/yes", program);
        path_ = QString::fromStdString(std::filesystem::canonical(bundle).string());
        start(program.string(), ignoresTermination);
    }

    ~BusyApp() {
        for (pid_t* const pid : {&pid_, &helper_}) {
            if (*pid > 0) {
                (void)kill(*pid, SIGKILL);
                (void)endedBy(*pid);
            }
        }
    }

    BusyApp(const BusyApp&) = delete;
    BusyApp& operator=(const BusyApp&) = delete;
    BusyApp(BusyApp&&) = delete;
    BusyApp& operator=(BusyApp&&) = delete;

    // Starts a second program of the application, from a bundle inside its own.
    pid_t startHelper() {
        const std::filesystem::path program = std::filesystem::path(path_.toStdString()) / "Contents" /
                                              "Frameworks" / "Helper.app" / "Contents" / "MacOS" / "Helper";
        std::filesystem::create_directories(program.parent_path());
        std::filesystem::copy_file("/usr/bin/yes", program);
        helper_ = pid_;
        start(program.string(), false);
        std::swap(helper_, pid_);
        return helper_;
    }

    int waitForHelperEnd() { return endedBy(helper_); }

    [[nodiscard]] const QString& path() const { return path_; }

    [[nodiscard]] pid_t pid() const { return pid_; }

    // Waits for the end of the process and returns the signal that ended it.
    int endedBy() { return endedBy(pid_); }

private:
    static int endedBy(pid_t& pid) {
        int status = 0;
        (void)waitpid(pid, &status, 0);
        pid = 0;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    void start(const std::string& program, bool ignoresTermination) {
        std::array<char*, 2> arguments = {const_cast<char*>("Demo"), nullptr};
        posix_spawn_file_actions_t actions = {};
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        // A child process inherits ignored signals.
        const auto before = std::signal(SIGTERM, ignoresTermination ? SIG_IGN : SIG_DFL);
        EXPECT_EQ(posix_spawn(&pid_, program.c_str(), &actions, nullptr, arguments.data(), nullptr), 0);
        (void)std::signal(SIGTERM, before);
        posix_spawn_file_actions_destroy(&actions);
    }

    QTemporaryDir folder_;
    QString path_;
    pid_t pid_ = 0;
    pid_t helper_ = 0;
};

// A desktop entry in this user's own folder and the program that it starts, which keeps a processor busy.
class BusyDesktopApp {
public:
    explicit BusyDesktopApp(const std::string& exec) {
        folder_ = std::filesystem::canonical(place_.path().toStdString());
        std::filesystem::create_directories(folder_ / "share/applications");
        std::filesystem::create_directories(folder_ / "demo/bin");
        std::filesystem::copy_file("/usr/bin/yes", folder_ / "demo/bin/demo");
        std::ofstream(folder_ / "demo/app.sh") << "while :; do :; done\n";
        std::ofstream(entryPath()) << "[Desktop Entry]\nType=Application\nName=Demo\nExec=" << exec
                                   << (folder_ / "demo/app.sh").string() << "\n";
        before_ = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString((folder_ / "share").string()));
    }

    ~BusyDesktopApp() {
        qputenv("XDG_DATA_HOME", before_);
        for (const pid_t pid : pids_) {
            (void)kill(pid, SIGKILL);
            (void)waitpid(pid, nullptr, 0);
        }
    }

    BusyDesktopApp(const BusyDesktopApp&) = delete;
    BusyDesktopApp& operator=(const BusyDesktopApp&) = delete;

    pid_t start(std::vector<std::string> command) {
        std::vector<char*> arguments;
        for (std::string& word : command) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions = {};
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addchdir_np(&actions, (folder_ / "demo").c_str());
        pid_t pid = 0;
        EXPECT_EQ(posix_spawn(&pid, command.front().c_str(), &actions, nullptr, arguments.data(), nullptr),
                  0);
        posix_spawn_file_actions_destroy(&actions);
        pids_.push_back(pid);
        return pid;
    }

    [[nodiscard]] std::string program() const { return (folder_ / "demo/bin/demo").string(); }

    [[nodiscard]] QString entry() const { return QString::fromStdString(entryPath().string()); }

private:
    [[nodiscard]] std::filesystem::path entryPath() const {
        return folder_ / "share/applications/demo.desktop";
    }

    QTemporaryDir place_;
    std::filesystem::path folder_;
    QByteArray before_;
    std::vector<pid_t> pids_;
};

ProcessServices quickServices() {
    ProcessServices services = systemProcessServices();
    services.interval = 200ms;
    services.delayAfterQuit = 10ms;
    return services;
}

const AppLoad* entryOf(const ProcessMonitor& monitor, const QString& path) {
    const QList<AppLoad>& apps = monitor.apps();
    const auto found =
        std::find_if(apps.begin(), apps.end(), [&path](const AppLoad& app) { return app.id == path; });
    return found == apps.end() ? nullptr : &*found;
}

// Waits until the application is listed and returns its entry.
AppLoad waitUntilListed(ProcessMonitor& monitor, const QString& path) {
    QSignalSpy published(&monitor, &ProcessMonitor::appsChanged);
    monitor.start();
    while (entryOf(monitor, path) == nullptr) {
        if (!published.wait(patienceMilliseconds)) {
            ADD_FAILURE() << "never listed";
            return {};
        }
    }
    monitor.stop();
    return *entryOf(monitor, path);
}

} // namespace

TEST(QuitRealProcess, ListsABusyApplication) {
    const BusyApp busy;
    ProcessMonitor monitor(quickServices());
    const AppLoad app = waitUntilListed(monitor, busy.path());
    EXPECT_EQ(app.name, QStringLiteral("Demo App"));
    EXPECT_EQ(app.appPath, busy.path());
    EXPECT_EQ(app.pids, QList<qint32>{busy.pid()});
    EXPECT_TRUE(app.canQuit);
    EXPECT_GE(app.cpu, 0.2);
    EXPECT_LE(app.cpu, 100);
    EXPECT_GT(app.memoryMB, 0);
    EXPECT_GE(monitor.totalCPU(), app.cpu);
}

TEST(QuitRealProcess, EndsAnApplicationAndShowsThatItIsGone) {
    BusyApp busy;
    ProcessMonitor monitor(quickServices());
    const AppLoad app = waitUntilListed(monitor, busy.path());
    QSignalSpy published(&monitor, &ProcessMonitor::appsChanged);
    monitor.quit(app, false);
    EXPECT_EQ(busy.endedBy(), SIGTERM);
    while (entryOf(monitor, busy.path()) != nullptr) {
        ASSERT_TRUE(published.wait(patienceMilliseconds));
        monitor.refresh();
    }
}

TEST(QuitRealProcess, ChargesAHelperToItsApplicationAndEndsBoth) {
    BusyApp busy;
    const pid_t helper = busy.startHelper();
    ProcessMonitor monitor(quickServices());
    AppLoad app;
    QSignalSpy published(&monitor, &ProcessMonitor::appsChanged);
    monitor.start();
    while (app.pids.size() < 2) {
        ASSERT_TRUE(published.wait(patienceMilliseconds));
        const AppLoad* const entry = entryOf(monitor, busy.path());
        app = entry != nullptr ? *entry : AppLoad();
    }
    monitor.stop();
    EXPECT_EQ(app.name, QStringLiteral("Demo App"));
    EXPECT_EQ(app.pids, (QList<qint32>{busy.pid(), helper}));
    monitor.quit(app, false);
    EXPECT_EQ(busy.endedBy(), SIGTERM);
    EXPECT_EQ(busy.waitForHelperEnd(), SIGTERM);
}

TEST(QuitRealProcess, KillsAnApplicationThatDoesNotWantToEnd) {
    BusyApp busy(true);
    ProcessMonitor monitor(quickServices());
    const AppLoad app = waitUntilListed(monitor, busy.path());
    monitor.quit(app, false);
    monitor.quit(app, true);
    EXPECT_EQ(busy.endedBy(), SIGKILL);
}

TEST(QuitRealProcess, IsSilentAboutAnApplicationThatHasEnded) {
    BusyApp busy;
    ProcessMonitor monitor(quickServices());
    const AppLoad app = waitUntilListed(monitor, busy.path());
    (void)kill(busy.pid(), SIGKILL);
    (void)busy.endedBy();
    monitor.quit(app, true);
}

TEST(QuitRealProcess, SparesTheProcessThatGotTheIdentifierOfAnEndedOne) {
    const auto first = std::make_unique<BusyApp>();
    ProcessMonitor monitor(quickServices());
    const AppLoad app = waitUntilListed(monitor, first->path());
    const pid_t pid = first->pid();
    (void)kill(pid, SIGKILL);
    (void)first->endedBy();

    // The kernel assigns the identifier after the one written here, unless another process takes it first.
    std::unique_ptr<BusyApp> second;
    for (int attempt = 0; attempt < 200 && (second == nullptr || second->pid() != pid); ++attempt) {
        second.reset();
        std::ofstream last("/proc/sys/kernel/ns_last_pid");
        last << pid - 1 << std::flush;
        if (!last) {
            GTEST_SKIP() << "only an administrator can choose the next process identifier";
        }
        second = std::make_unique<BusyApp>();
    }
    if (second->pid() != pid) {
        GTEST_SKIP() << "other processes took the identifier each time";
    }
    monitor.quit(app, true);
    // If quitting had killed the process, SIGTERM would not be the signal that ends it.
    (void)kill(pid, SIGTERM);
    EXPECT_EQ(second->endedBy(), SIGTERM);
}

TEST(QuitRealProcess, ChargesAScriptAndItsFolderToTheirDesktopEntryAndEndsBoth) {
    BusyDesktopApp busy("/bin/sh ");
    const pid_t program = busy.start({busy.program()});
    const pid_t script = busy.start({"/bin/sh", "app.sh"});
    ProcessMonitor monitor(quickServices());
    AppLoad app;
    QSignalSpy published(&monitor, &ProcessMonitor::appsChanged);
    monitor.start();
    while (app.pids.size() < 2) {
        ASSERT_TRUE(published.wait(patienceMilliseconds));
        const AppLoad* const entry = entryOf(monitor, QStringLiteral("app:") + busy.entry());
        app = entry != nullptr ? *entry : AppLoad();
    }
    monitor.stop();
    EXPECT_EQ(app.name, QStringLiteral("Demo"));
    EXPECT_EQ(app.appPath, busy.entry());
    EXPECT_EQ(app.pids, (QList<qint32>{program, script}));
    EXPECT_TRUE(app.canQuit);
    monitor.quit(app, false);
    for (const pid_t pid : {program, script}) {
        int status = 0;
        EXPECT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    }
}

} // namespace Fenwhirl
