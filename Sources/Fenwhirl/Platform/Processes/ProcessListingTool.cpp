#include "Fenwhirl/Platform/Processes/ProcessListingTool.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

using Clock = std::chrono::steady_clock;

// A timeout for poll(2), rounded up so that a wait for less than a millisecond does not spin.
int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    constexpr decltype(left) longest = 1 << 30;
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, longest));
}

// Reads until end of file; absent when the deadline passes or the call is cancelled first.
std::optional<QByteArray> readToEnd(int descriptor, Clock::time_point deadline,
                                    const Cancellation& cancellation) {
    QByteArray text;
    std::array<char, 65536> buffer = {};
    for (;;) {
        // poll ignores an entry whose descriptor is -1, such as that of a Cancellation without a pipe.
        std::array<pollfd, 2> waited = {{{descriptor, POLLIN, 0}, {cancellation.descriptor(), POLLIN, 0}}};
        const int ready = poll(waited.data(), waited.size(), millisecondsUntil(deadline));
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0 || waited[1].revents != 0) {
            return std::nullopt;
        }
        const ssize_t length = read(descriptor, buffer.data(), buffer.size());
        if (length < 0 && errno == EINTR) {
            continue;
        }
        if (length <= 0) {
            return text;
        }
        // A computer with a million processes prints less. A tool that prints more is not a process lister.
        constexpr qsizetype room = qsizetype{256} << 20U;
        if (text.size() < room) {
            text.append(buffer.data(), length);
        }
    }
}

// Waits for a child that has closed its output, which is usually the last thing that it does. False when the
// deadline passed or the wait was cancelled.
bool waitForEnd(pid_t child, Clock::time_point deadline, const Cancellation& cancellation) {
    constexpr auto pause = std::chrono::milliseconds(5);
    // waitpid has no time-out, so it is called repeatedly.
    while (waitpid(child, nullptr, WNOHANG) == 0) {
        if (Clock::now() > deadline || !cancellation.waitFor(pause)) {
            return false;
        }
    }
    return true;
}

} // namespace

void Cancellation::cancel() {
    if (pipe_) {
        pipe_->writeEnd.close();
    }
}

bool Cancellation::isCancelled() const {
    return !waitFor(std::chrono::milliseconds(0));
}

bool Cancellation::waitFor(std::chrono::milliseconds duration) const {
    const Clock::time_point deadline = Clock::now() + duration;
    for (;;) {
        pollfd waited = {descriptor(), POLLIN, 0};
        const int ready = poll(&waited, 1, millisecondsUntil(deadline));
        if (ready == 0 || (ready < 0 && errno != EINTR)) {
            return true;
        }
        if (ready > 0) {
            return false;
        }
    }
}

int Cancellation::descriptor() const {
    return pipe_ ? pipe_->readEnd.number() : -1;
}

std::optional<QByteArray> runListingTool(const std::string& tool, const std::vector<std::string>& arguments,
                                         std::chrono::milliseconds limit, const Cancellation& cancellation) {
    if (cancellation.isCancelled()) {
        return std::nullopt;
    }
    const Clock::time_point deadline = Clock::now() + limit;
    std::optional<Pipe> pipe = Pipe::make();
    if (!pipe) {
        return std::nullopt;
    }
    const std::optional<pid_t> child =
        startChild(tool, arguments, ChildEnvironment::neutral, -1, false, pipe->writeEnd.number());
    if (!child) {
        return std::nullopt;
    }
    pipe->writeEnd.close();
    std::optional<QByteArray> text = readToEnd(pipe->readEnd.number(), deadline, cancellation);
    if (!text || !waitForEnd(*child, deadline, cancellation)) {
        (void)kill(*child, SIGKILL);
        while (waitpid(*child, nullptr, 0) < 0 && errno == EINTR) {
        }
        return std::nullopt;
    }
    return text;
}

} // namespace Fenwhirl
