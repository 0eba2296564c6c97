// What a person at a terminal sees of the built program, and when it writes nothing there.
//
// Runs in the /run that ProgramTest.cpp sets up.

#include "FenwhirlCore/SMCRecord.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::chrono::seconds patience{20};

// How the program is started on its terminal.
enum class Job {
    plain,            // as from a shell
    inForeground,     // in a PID namespace, where a process group from outside has no number
    inBackground,     // the same, while another job owns the terminal
    besideAReader,    // in the foreground, beside another program that reads the input
    ofAnotherSession, // on a terminal that is not its controlling terminal
};

class Screen {
public:
    explicit Screen(unsigned short columns, const std::vector<const char*>& options = {},
                    Job job = Job::plain) {
        winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        std::vector<const char*> words{FENWHIRL_SIMULATED_MAC, "--speed", "0"};
        words.insert(words.end(), options.begin(), options.end());
        words.push_back(nullptr);
        ::prctl(PR_SET_CHILD_SUBREAPER, 1); // adopts the processes that a job leaves behind
        process_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
        if (process_ == 0) {
            if (job == Job::plain) {
                ::execv(words[0], const_cast<char**>(words.data()));
                ::_exit(98);
            }
            startAside(job, words);
        }
    }

    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    Screen(Screen&&) = delete;
    Screen& operator=(Screen&&) = delete;

    ~Screen() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            (void)end();
            // A job's program dies after its parent and remains a zombie until it is reaped here.
            while (::waitpid(-1, nullptr, 0) > 0) {
            }
        }
        ::close(terminal_);
    }

    // Reads until the text appears; returns false when it does not appear in time.
    bool showsSoon(const std::string& wanted) {
        using namespace std::chrono;
        const auto end = steady_clock::now() + patience; // the output never falls silent
        std::array<char, 4096> piece{};
        while (seen.find(wanted) == std::string::npos) {
            const auto left = duration_cast<milliseconds>(end - steady_clock::now()).count();
            pollfd wait{.fd = terminal_, .events = POLLIN, .revents = 0};
            const ssize_t length = left > 0 && ::poll(&wait, 1, static_cast<int>(left)) == 1
                                       ? ::read(terminal_, piece.data(), piece.size())
                                       : -1;
            if (length <= 0) {
                return false;
            }
            seen.append(piece.data(), static_cast<std::size_t>(length));
        }
        return true;
    }

    void type(std::string_view text) const {
        ASSERT_EQ(::write(terminal_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    // Waits for the end of the process and returns its exit status.
    int end() {
        int status = -1;
        ::waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string seen;

private:
    // Runs in the terminal's first process: starts the program as a separate job and waits for it.
    [[noreturn]] static void startAside(Job job, const std::vector<const char*>& words) {
        waitFor([&] {
            if (job == Job::ofAnotherSession) {
                ::setsid();
            } else if (job == Job::inBackground) {
                ::setpgid(0, 0);
            }
            if (job == Job::besideAReader && ::fork() == 0) {
                ::prctl(PR_SET_PDEATHSIG, SIGKILL);
                char typed = 0;
                while (::read(STDIN_FILENO, &typed, 1) >= 0) {
                }
                ::_exit(0);
            }
            if (job == Job::ofAnotherSession || job == Job::besideAReader) {
                ::execv(words[0], const_cast<char**>(words.data()));
                ::_exit(98);
            }
            // The process group was created outside the namespace, so it has no number inside it.
            if (::unshare(CLONE_NEWPID) != 0) {
                ::_exit(97);
            }
            waitFor([&] {
                ::execv(words[0], const_cast<char**>(words.data()));
                ::_exit(98);
            });
        });
    }

    // Runs the action in a child process that dies with this one, then exits with the child's status.
    template <typename Action>
    [[noreturn]] static void waitFor(Action action) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            action();
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ::_exit(WIFEXITED(status) ? WEXITSTATUS(status) : 99);
    }

    pid_t process_ = -1;
    int terminal_ = -1;
};

// Whether the kernel allows a PID namespace; most containers do not.
bool canMakePIDNamespace() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(::unshare(CLONE_NEWPID) == 0 ? 0 : 1);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && status == 0;
}

// Sends one request and waits for the answer. By then the program has gone once through all its periodic
// work.
bool isServed() {
    const int connection = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    const sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "/run/fenwhirl/AppleSMC"};
    Fenwhirl::SMCParam request{};
    request.data8 = Fenwhirl::SMCCommand::keyByIndex;
    std::array<std::uint8_t, 84> reply{};
    const bool served =
        ::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
        ::send(connection, &request, sizeof(request), 0) == sizeof(request) &&
        ::recv(connection, reply.data(), reply.size(), 0) == static_cast<ssize_t>(reply.size());
    ::close(connection);
    return served;
}

TEST(Terminal, ShowsALiveStatusLineAndTakesCommands) {
    Screen screen(80);
    EXPECT_TRUE(screen.showsSoon("ready ")) << screen.seen;
    EXPECT_TRUE(screen.showsSoon("MacBookPro11,4   processor ")) << screen.seen;
    EXPECT_TRUE(screen.showsSoon("\x1b[A\r")) << "renewed in place: " << screen.seen;
    screen.type("say hello\n");
    EXPECT_TRUE(screen.showsSoon("ok hello")) << screen.seen;
    screen.type("quit\n");
    EXPECT_TRUE(screen.showsSoon("ok bye")) << screen.seen;
    EXPECT_EQ(screen.end(), 0);
}

TEST(Terminal, TheLineTellsTemperaturesFansPowerAndClients) {
    Screen screen(120, {"--machine", "MacBookPro16,1", "--heat", "20 5", "--speed", "0"});
    EXPECT_TRUE(screen.showsSoon("\nMacBookPro16,1   processor 41.0 °C   graphics 38.9 °C   case 29.7 °C   "
                                 "fans 1850 · 1702 rpm   25.0 W   no clients\x1b[K"))
        << screen.seen;
}

TEST(Terminal, ItemsThatDoNotFitTheTerminalAreOmitted) {
    Screen narrow(40);
    EXPECT_TRUE(narrow.showsSoon("\nMacBookPro11,4   processor 55.0 °C\x1b[K")) << narrow.seen;
    narrow.type("quit\n");
    EXPECT_EQ(narrow.end(), 0);
    Screen tiny(10);
    EXPECT_TRUE(tiny.showsSoon("\nMacBookPr\x1b[K")) << tiny.seen;
}

TEST(Terminal, AJobInANamespaceOfItsOwnShowsItsLineToo) {
    if (!canMakePIDNamespace()) {
        GTEST_SKIP() << "needs process numbers of its own: a job in a namespace";
    }
    Screen screen(80, {}, Job::inForeground);
    EXPECT_TRUE(screen.showsSoon("MacBookPro11,4   processor ")) << screen.seen;
    screen.type("quit\n");
    EXPECT_TRUE(screen.showsSoon("ok bye")) << screen.seen;
    EXPECT_EQ(screen.end(), 0);
}

TEST(Terminal, AnotherReaderOfTheTerminalDoesNotBlockTheLine) {
    Screen screen(80, {}, Job::besideAReader);
    EXPECT_TRUE(screen.showsSoon("\x1b[A\r")) << screen.seen;
    screen.seen.clear();
    EXPECT_TRUE(screen.showsSoon("\x1b[A\r")) << screen.seen;
}

TEST(Terminal, StaysQuietOutsideTheForeground) {
    if (!canMakePIDNamespace()) {
        GTEST_SKIP() << "needs process numbers of its own: a job in a namespace";
    }
    for (const Job job : {Job::inBackground, Job::ofAnotherSession}) {
        Screen screen(80, {}, job);
        EXPECT_TRUE(screen.showsSoon("Commands are welcome")) << screen.seen;
        EXPECT_TRUE(isServed());
        screen.type("mark\n"); // the terminal echoes this after all of the program's output
        EXPECT_TRUE(screen.showsSoon("mark\r\n")) << screen.seen;
        EXPECT_EQ(screen.seen.find("processor"), std::string::npos) << screen.seen;
    }
}

} // namespace
