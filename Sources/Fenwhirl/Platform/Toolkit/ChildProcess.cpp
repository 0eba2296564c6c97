#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"

#include "Fenwhirl/Platform/Toolkit/ChildProcessSystem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

namespace {

// The environment block in the form that exec expects.
char** listOf(ChildEnvironment environment) {
    static char all[] = "LC_ALL=C";
    static char language[] = "LANG=C";
    static char* none[] = {nullptr};
    static char* neutral[] = {all, language, nullptr};
    switch (environment) {
    case ChildEnvironment::empty:
        return none;
    case ChildEnvironment::neutral:
        return neutral;
    case ChildEnvironment::inherited:
        break;
    }
    return currentEnvironment();
}

// The two objects that posix_spawn takes, destroyed together. If one step fails, `start` fails.
class SpawnRequest {
public:
    SpawnRequest() {
        ok_ = posix_spawn_file_actions_init(&actions_) == 0;
        ok_ = posix_spawnattr_init(&attributes_) == 0 && ok_;
    }

    SpawnRequest(const SpawnRequest&) = delete;
    SpawnRequest& operator=(const SpawnRequest&) = delete;

    ~SpawnRequest() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }

    // `ours` is -1 for the null device.
    void connect(int descriptor, int ours) {
        const int access = descriptor == STDIN_FILENO ? O_RDONLY : O_WRONLY;
        note(ours < 0 ? posix_spawn_file_actions_addopen(&actions_, descriptor, "/dev/null", access, 0)
                      : posix_spawn_file_actions_adddup2(&actions_, ours, descriptor));
    }

    [[nodiscard]] std::optional<pid_t> start(const std::string& executable,
                                             std::span<const std::string> arguments,
                                             ChildEnvironment environment, bool ownGroup) {
        setSignalsAndGroup(ownGroup);
        if (!ok_) {
            return std::nullopt;
        }
        std::vector<char*> argv = {const_cast<char*>(executable.c_str())};
        for (const std::string& argument : arguments) {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);
        pid_t child = 0;
        if (posix_spawn(&child, executable.c_str(), &actions_, &attributes_, argv.data(),
                        listOf(environment)) != 0) {
            return std::nullopt;
        }
        return child;
    }

private:
    void note(int error) { ok_ = ok_ && error == 0; }

    void setSignalsAndGroup(bool ownGroup) {
        sigset_t defaults;
        sigfillset(&defaults);
        sigdelset(&defaults, SIGKILL);
        sigdelset(&defaults, SIGSTOP);
        sigset_t blocked;
        sigemptyset(&blocked);
        note(posix_spawnattr_setsigdefault(&attributes_, &defaults));
        note(posix_spawnattr_setsigmask(&attributes_, &blocked));
        short flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
        if (ownGroup) {
            note(posix_spawnattr_setpgroup(&attributes_, 0));
            flags = static_cast<short>(flags | POSIX_SPAWN_SETPGROUP);
        }
        ok_ = ok_ && keepOnlyStandardDescriptors(actions_, flags);
        note(posix_spawnattr_setflags(&attributes_, flags));
    }

    posix_spawn_file_actions_t actions_ = {};
    posix_spawnattr_t attributes_ = {};
    bool ok_ = false;
};

std::string readToEnd(int descriptor) {
    std::string kept;
    std::array<char, 16384> buffer = {};
    for (;;) {
        const ssize_t length = read(descriptor, buffer.data(), buffer.size());
        if (length < 0 && errno == EINTR) {
            continue;
        }
        if (length <= 0) {
            return kept;
        }
        const std::size_t room = childOutputLimit - kept.size();
        kept.append(buffer.data(), std::min(room, static_cast<std::size_t>(length)));
    }
}

std::optional<int> waitForExit(pid_t child) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    if (ended != child || !WIFEXITED(status)) {
        return std::nullopt;
    }
    return WEXITSTATUS(status);
}

// Moves a descriptor out of the range 0 to 2. A process that was started with its standard descriptors closed
// may get one of these numbers for a pipe, and `SpawnRequest::connect` would overwrite that end in the child
// before it is used.
int movedAboveStandard(int descriptor) {
    if (descriptor > STDERR_FILENO) {
        return descriptor;
    }
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(descriptor);
    return moved;
}

} // namespace

std::optional<ChildResult> runChild(const std::string& executable, std::span<const std::string> arguments,
                                    ChildOutput output, ChildEnvironment environment) {
    std::optional<Pipe> pipe;
    if (output == ChildOutput::capture) {
        pipe = Pipe::make();
        if (!pipe) {
            return std::nullopt;
        }
    }
    SpawnRequest request;
    request.connect(STDIN_FILENO, -1);
    request.connect(STDOUT_FILENO, pipe ? pipe->writeEnd.number() : -1);
    request.connect(STDERR_FILENO, -1);
    const auto child = request.start(executable, arguments, environment, false);
    if (!child) {
        return std::nullopt;
    }
    ChildResult result;
    if (pipe) {
        // Our own write end would keep the pipe open after the child has exited.
        pipe->writeEnd.close();
        result.output = readToEnd(pipe->readEnd.number());
    }
    result.exitStatus = waitForExit(*child);
    return result;
}

std::optional<pid_t> startChild(const std::string& executable, std::span<const std::string> arguments,
                                ChildEnvironment environment, int standardInput, bool ownGroup,
                                int standardOutput) {
    SpawnRequest request;
    request.connect(STDIN_FILENO, standardInput);
    request.connect(STDOUT_FILENO, standardOutput);
    request.connect(STDERR_FILENO, -1);
    return request.start(executable, arguments, environment, ownGroup);
}

std::optional<Pipe> Pipe::make() {
    int ends[2] = {-1, -1};
    if (!makeCloseOnExecPipe(ends)) {
        return std::nullopt;
    }
    Pipe pipe = {.readEnd = FileDescriptor(movedAboveStandard(ends[0])),
                 .writeEnd = FileDescriptor(movedAboveStandard(ends[1]))};
    if (!pipe.readEnd.isOpen() || !pipe.writeEnd.isOpen()) {
        return std::nullopt;
    }
    return pipe;
}

} // namespace Fenwhirl
