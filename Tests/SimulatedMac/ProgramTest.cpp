// The built program, in a /run where it meets no other simulation.

#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/RunFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <poll.h>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr const char* socketPath = "/run/fenwhirl/AppleSMC";
constexpr int patienceMilliseconds = 20'000;

// NOLINTNEXTLINE(cert-err58-cpp): GoogleTest wants it before main, and owns it from then on
[[maybe_unused]] testing::Environment* const runFolder = testing::AddGlobalTestEnvironment(new RunFolder);

struct Ending {
    int status = -1;
    std::string errors;
};

// A running simulated-mac whose input and output this test controls.
class Program {
public:
    explicit Program(std::vector<std::string> arguments = {}, int input = -1, bool asNobody = false,
                     const std::vector<int>& ignored = {}) {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        std::array<int, 2> err{};
        EXPECT_EQ(::pipe2(in.data(), O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(out.data(), O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(err.data(), O_CLOEXEC), 0);
        arguments.insert(arguments.begin(), FENWHIRL_SIMULATED_MAC);
        std::vector<char*> words;
        words.reserve(arguments.size() + 1);
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr); // the terminator that fexecve expects
        process_ = ::fork();
        if (process_ == 0) {
            for (const int number : ignored) {
                (void)std::signal(number, SIG_IGN);
            }
            ::dup2(input >= 0 ? input : in[0], 0);
            ::dup2(out[1], 1);
            ::dup2(err[1], 2);
            // The executable is opened before the change of user: user nobody may have no access to the build
            // folder.
            const int file = ::open(words[0], O_RDONLY | O_CLOEXEC);
            if (asNobody && ::setuid(65534) != 0) {
                ::_exit(99);
            }
            ::fexecve(file, words.data(), environ);
            ::_exit(98);
        }
        ::close(in[0]);
        ::close(out[1]);
        ::close(err[1]);
        input_ = in[1];
        output_ = out[0];
        errors_ = err[0];
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    Program(Program&&) = delete;
    Program& operator=(Program&&) = delete;

    ~Program() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            (void)end();
        }
        ::close(output_);
        ::close(errors_);
    }

    // The next line of output, without its line break. When the program ends or takes too long: the output so
    // far and a marker.
    std::string line() {
        for (;;) {
            const std::size_t end = buffer_.find('\n');
            if (end != std::string::npos) {
                std::string text = buffer_.substr(0, end);
                buffer_.erase(0, end + 1);
                return text;
            }
            pollfd wait{.fd = output_, .events = POLLIN, .revents = 0};
            std::array<char, 4096> piece{};
            if (::poll(&wait, 1, patienceMilliseconds) != 1) {
                return std::exchange(buffer_, {}) + "<nothing more>";
            }
            const ssize_t length = ::read(output_, piece.data(), piece.size());
            if (length <= 0) {
                return std::exchange(buffer_, {}) + "<end>";
            }
            buffer_.append(piece.data(), static_cast<std::size_t>(length));
        }
    }

    void send(const std::string& text) const {
        ASSERT_EQ(::write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    // Sends a command and returns the last line of its answer.
    std::string command(const std::string& text) {
        send(text + "\n");
        for (;;) {
            std::string answer = line();
            if (answer.starts_with("ok") || answer.starts_with("error:") || answer.ends_with('>')) {
                return answer;
            }
        }
    }

    void closeInput() { ::close(std::exchange(input_, -1)); }

    void signal(int number) const { ::kill(process_, number); }

    [[nodiscard]] pid_t process() const { return process_; }

    // Waits for the end of the program. The status is -signal when a signal ended it.
    Ending end() {
        if (input_ >= 0) {
            closeInput();
        }
        Ending ending;
        std::array<char, 4096> piece{};
        for (ssize_t length = 1; length > 0;) {
            length = ::read(errors_, piece.data(), piece.size());
            ending.errors.append(piece.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
        }
        int status = 0;
        ::waitpid(std::exchange(process_, -1), &status, 0);
        ending.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        return ending;
    }

private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;
    std::string buffer_;
};

bool exists(const char* path) {
    struct stat status {};

    return ::lstat(path, &status) == 0;
}

mode_t modeOf(const char* path) {
    struct stat status {};

    return ::lstat(path, &status) == 0 ? status.st_mode & 07777 : 0;
}

int connectToSMC() {
    const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, socketPath); // NOLINT(clang-analyzer-security.insecureAPI.strcpy)
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        ::close(socket);
        return -1;
    }
    return socket;
}

std::string temporaryFile(const std::string& name, const std::string& text) {
    std::string path = testing::TempDir() + name + "-" + std::to_string(::getpid());
    std::ofstream(path) << text;
    return path;
}

TEST(Program, AnnouncesThatItIsReadyAndThenAnswersClients) {
    Program program({"--speed", "0"});
    EXPECT_EQ(program.line(), "ready MacBookPro11,4 at /run/fenwhirl/AppleSMC");
    const int socket = connectToSMC();
    ASSERT_GE(socket, 0);
    Fenwhirl::SMCParam request{};
    request.key = 0x464E756D; // FNum
    request.data8 = Fenwhirl::SMCCommand::readKey;
    request.keyInfo.dataSize = 1;
    ASSERT_EQ(::send(socket, &request, sizeof(request), 0), 80);
    std::array<std::uint8_t, 200> reply{};
    EXPECT_EQ(::recv(socket, reply.data(), reply.size(), 0), 84);
    EXPECT_EQ(reply[4 + 48], 2);
    ::close(socket);
    EXPECT_NE(program.command("state").find("connections=1 requests=1"), std::string::npos);
}

TEST(Program, TheFolderIsRootsAndTheSocketOpenToAll) {
    Program program;
    (void)program.line();
    EXPECT_EQ(modeOf("/run/fenwhirl"), 0755U);
    EXPECT_EQ(modeOf(socketPath), 0666U);
}

TEST(Program, QuitAndSignalsEndItAndRemoveTheSocket) {
    for (const int number : {0, SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        Program program;
        EXPECT_TRUE(program.line().starts_with("ready"));
        if (number == 0) {
            EXPECT_EQ(program.command("quit"), "ok bye");
        } else {
            program.signal(number);
        }
        EXPECT_EQ(program.end().status, 0) << number;
        EXPECT_FALSE(exists(socketPath)) << number;
        EXPECT_FALSE(exists("/run/fenwhirl/simulated-mac.lock")) << number;
    }
}

TEST(Program, SignalsThatItWasStartedIgnoringDoNotEndIt) {
    Program program({}, -1, false, {SIGINT, SIGHUP, SIGQUIT});
    EXPECT_TRUE(program.line().starts_with("ready"));
    for (const int number : {SIGINT, SIGHUP, SIGQUIT}) {
        program.signal(number);
        EXPECT_EQ(program.command("say still here"), "ok still here") << number;
    }
    program.signal(SIGTERM);
    EXPECT_EQ(program.end().status, 0);
    EXPECT_FALSE(exists(socketPath));
}

TEST(Program, RefusesToStartBesideARunningOne) {
    Program first;
    EXPECT_TRUE(first.line().starts_with("ready"));
    Program second;
    const Ending ending = second.end();
    EXPECT_EQ(ending.status, 1);
    EXPECT_NE(ending.errors.find("already running (process " + std::to_string(first.process()) + ")"),
              std::string::npos)
        << ending.errors;
    EXPECT_TRUE(first.command("state").starts_with("ok")) << "the first one is undisturbed";
    EXPECT_TRUE(exists(socketPath));
}

TEST(Program, ClearsAwayTheSocketOfOneThatWasKilled) {
    {
        Program killed;
        EXPECT_TRUE(killed.line().starts_with("ready"));
        killed.signal(SIGKILL);
        EXPECT_EQ(killed.end().status, -SIGKILL);
    }
    EXPECT_TRUE(exists(socketPath));
    Program next;
    EXPECT_TRUE(next.line().starts_with("ready"));
}

TEST(Program, DoesNotReplaceAnotherServerOrAFile) {
    ASSERT_TRUE(::mkdir("/run/fenwhirl", 0755) == 0 || errno == EEXIST);
    const int other = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, socketPath); // NOLINT(clang-analyzer-security.insecureAPI.strcpy)
    ::unlink(socketPath);
    ASSERT_EQ(::bind(other, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(::listen(other, 1), 0);
    Program beside;
    const Ending refused = beside.end();
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.errors.find("another program"), std::string::npos) << refused.errors;
    EXPECT_TRUE(exists(socketPath));
    ::close(other);
    ::unlink(socketPath);

    std::ofstream(socketPath) << "precious";
    Program before;
    EXPECT_EQ(before.end().status, 1);
    EXPECT_TRUE(exists(socketPath));
    ::unlink(socketPath);
}

TEST(Program, RefusesAFolderThatClientsWouldNotTrust) {
    ASSERT_TRUE(::mkdir("/run/fenwhirl", 0755) == 0 || errno == EEXIST);
    ASSERT_EQ(::chmod("/run/fenwhirl", 0777), 0);
    Program program;
    const Ending ending = program.end();
    EXPECT_EQ(ending.status, 1);
    EXPECT_NE(ending.errors.find("/run/fenwhirl"), std::string::npos);
    ASSERT_EQ(::chmod("/run/fenwhirl", 0755), 0);
}

TEST(Program, WithoutRootItSaysWhatHelps) {
    std::ifstream map("/proc/self/uid_map");
    const std::string text((std::istreambuf_iterator<char>(map)), {});
    if (text.find("4294967295") == std::string::npos) {
        GTEST_SKIP() << "there is nobody else to become in this user namespace";
    }
    Program program({}, -1, true);
    const Ending ending = program.end();
    EXPECT_EQ(ending.status, 1);
    EXPECT_NE(ending.errors.find("root"), std::string::npos) << ending.errors;
    EXPECT_NE(ending.errors.find("unshare -rm"), std::string::npos) << ending.errors;
}

TEST(Program, WrongArgumentsAreExplained) {
    Program wrong({"--socket", "/tmp/x"});
    const Ending usage = wrong.end();
    EXPECT_EQ(usage.status, 64);
    EXPECT_NE(usage.errors.find("--socket"), std::string::npos);
    Program unknown({"--machine", "Lisa"});
    const Ending machine = unknown.end();
    EXPECT_EQ(machine.status, 1);
    EXPECT_NE(machine.errors.find("Lisa"), std::string::npos);
    Program heat({"--heat", "lots"});
    EXPECT_EQ(heat.end().status, 1);
    Program script({"--script", "/nowhere"});
    EXPECT_EQ(script.end().status, 1);
    EXPECT_FALSE(exists(socketPath));
}

std::vector<std::string> recordedMachines() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(FENWHIRL_MACHINES)) {
        if (file.path().extension() == ".csv") {
            names.push_back(file.path().stem());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST(Program, ListNamesEveryMachineWithoutRootAndSocket) {
    Program program({"--list"});
    std::vector<std::string> names;
    for (std::string line = program.line(); !line.ends_with("<end>"); line = program.line()) {
        names.push_back(line.substr(0, line.find(' ')));
        EXPECT_NE(line.find(" temperature keys, "), std::string::npos) << line;
    }
    EXPECT_EQ(names, recordedMachines());
    EXPECT_EQ(program.end().status, 0);
    EXPECT_FALSE(exists(socketPath));
}

TEST(Program, EveryMachineOfTheListCanBeStarted) {
    const std::vector<std::string> names = recordedMachines();
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names) {
        Program program({"--machine", name, "--speed", "0"});
        EXPECT_EQ(program.line(), "ready " + name + " at /run/fenwhirl/AppleSMC");
        EXPECT_TRUE(program.command("get #KEY").starts_with("ok #KEY type=ui32")) << name;
        EXPECT_EQ(program.command("quit"), "ok bye");
        EXPECT_EQ(program.end().status, 0) << name;
    }
}

TEST(Program, HelpNeedsNoRootAndNoSocket) {
    Program help({"--help"});
    EXPECT_TRUE(help.line().starts_with("simulated-mac:"));
    EXPECT_EQ(help.end().status, 0);
    EXPECT_FALSE(exists(socketPath));
}

TEST(Program, AScriptRunsBeforeClientsAreAccepted) {
    const std::string script =
        temporaryFile("script", "# a warm start\nset TC0P 93.5\nwait 3600\nset TC0P 20\n");
    Program program({"--script", script});
    EXPECT_TRUE(program.line().starts_with("ready"));
    EXPECT_NE(program.command("get TC0P").find("value=93.50"), std::string::npos)
        << "and its waiting does not hold up typed commands";
    (void)std::remove(script.c_str());
}

TEST(Program, AnErrorInAScriptIsShown) {
    const std::string script = temporaryFile("script", "set NOPE 1\n");
    Program program({"--script", script});
    EXPECT_EQ(program.line(), "script: set NOPE 1: error: no key \"NOPE\" on this machine");
    EXPECT_TRUE(program.line().starts_with("ready"));
    (void)std::remove(script.c_str());
}

TEST(Program, GoesOnWhenInputEndsUnlessToldOtherwise) {
    Program persistent;
    EXPECT_TRUE(persistent.line().starts_with("ready"));
    persistent.send("say last words");
    persistent.closeInput();
    EXPECT_EQ(persistent.line(), "ok last words") << "also without a line end";
    const int socket = connectToSMC();
    EXPECT_GE(socket, 0);
    ::close(socket);
    persistent.signal(SIGTERM);
    EXPECT_EQ(persistent.end().status, 0);

    Program obedient({"--quit-at-end-of-input"});
    EXPECT_TRUE(obedient.line().starts_with("ready"));
    obedient.closeInput();
    EXPECT_EQ(obedient.end().status, 0);
}

TEST(Program, InputMayBeAFileOrNothing) {
    const std::string commands = temporaryFile("commands", "say one\nsay two\n");
    const int file = ::open(commands.c_str(), O_RDONLY | O_CLOEXEC);
    Program fromFile({"--quit-at-end-of-input"}, file);
    ::close(file);
    EXPECT_TRUE(fromFile.line().starts_with("ready"));
    EXPECT_EQ(fromFile.line(), "ok one");
    EXPECT_EQ(fromFile.line(), "ok two");
    EXPECT_EQ(fromFile.end().status, 0);
    (void)std::remove(commands.c_str());

    const int null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    Program quiet({}, null);
    ::close(null);
    EXPECT_TRUE(quiet.line().starts_with("ready"));
    const int socket = connectToSMC();
    EXPECT_GE(socket, 0);
    ::close(socket);
    quiet.signal(SIGTERM);
    EXPECT_EQ(quiet.end().status, 0);
}

TEST(Program, WritesAreAppendedToTheWriteLog) {
    const std::string log = temporaryFile("writes", "");
    Program program({"--write-log", log});
    EXPECT_TRUE(program.line().starts_with("ready"));
    const int socket = connectToSMC();
    Fenwhirl::SMCParam request{};
    request.key = 0x46532120; // "FS! "
    request.data8 = Fenwhirl::SMCCommand::writeKey;
    request.keyInfo.dataSize = 2;
    request.bytes[1] = 1;
    ASSERT_EQ(::send(socket, &request, sizeof(request), 0), 80);
    std::array<char, 200> reply{};
    EXPECT_EQ(::recv(socket, reply.data(), reply.size(), 0), 84);
    ::close(socket);
    std::ifstream file(log);
    std::string line;
    std::getline(file, line);
    EXPECT_NE(line.find("pid=" + std::to_string(::getpid()) + " uid=0 key=FS! type=ui16 bytes=0001"),
              std::string::npos)
        << line;
    (void)std::remove(log.c_str());
}

// The line of a process's status that begins with that name.
std::string statusLine(pid_t process, std::string_view name) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name)) {
            return line;
        }
    }
    return "";
}

std::string voluntarySwitches(pid_t process) {
    return statusLine(process, "voluntary_ctxt_switches:");
}

// Not so while it only waits for a processor.
bool isAsleep(pid_t process) {
    return statusLine(process, "State:").starts_with("State:\tS");
}

TEST(Program, StaysAsleepWhileIdle) {
    Program program;
    EXPECT_TRUE(program.line().starts_with("ready"));
    EXPECT_TRUE(program.command("state").starts_with("ok"));
    // The program writes the answer before it falls asleep, so wait until it sleeps and its switches have
    // stopped increasing.
    constexpr int interval = 50;
    std::string before;
    bool isQuiet = false;
    for (int left = patienceMilliseconds / interval; !isQuiet && left > 0; --left) {
        before = voluntarySwitches(program.process());
        ::poll(nullptr, 0, interval);
        isQuiet = isAsleep(program.process()) && voluntarySwitches(program.process()) == before;
    }
    ASSERT_TRUE(isQuiet) << before;
    ::poll(nullptr, 0, 400); // long enough for any tick that would matter
    EXPECT_EQ(voluntarySwitches(program.process()), before);
}

} // namespace
