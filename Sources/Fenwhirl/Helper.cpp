#include "Fenwhirl/Helper.h"

#include "Fenwhirl/HelperArguments.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <poll.h>
#include <string_view>
#include <unistd.h>

namespace Fenwhirl::HelperMode {

namespace {

// Raised whenever the commands or their meaning change. The application then offers to
// install the helper again.
constexpr std::string_view versionLine = "3\n";

constexpr std::chrono::seconds readerTimeout{3};

// Blocks every signal during a sequence of writes, so that neither ^C nor a logout nor a timer can leave a
// fan between two modes; pending signals are delivered when the sequence is complete. Only SIGALRM is let
// through: it bounds the wait for a controller that does not answer.
class UninterruptedSequence {
public:
    UninterruptedSequence() {
        sigset_t held;
        sigfillset(&held);
        sigdelset(&held, SIGALRM);
        sigprocmask(SIG_BLOCK, &held, &before_);
    }

    UninterruptedSequence(const UninterruptedSequence&) = delete;
    UninterruptedSequence& operator=(const UninterruptedSequence&) = delete;

    ~UninterruptedSequence() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_ = {};
};

// A call of the C library, which a test can replace; it has no error to return for this clock.
std::chrono::nanoseconds monotonicTime() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// The reader of the answer may be slow or gone, or may be a full device: none of that is the helper's
// failure. A reader that does not read at all is given up after a few seconds, because it must not keep a
// root process alive.
void print(std::string_view text) {
    // Any descriptor that polls as writable, including a terminal, accepts this many bytes at once.
    constexpr std::size_t mostAtOnce = 128;
    const std::chrono::nanoseconds end = monotonicTime() + readerTimeout;
    while (!text.empty()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - monotonicTime()).count();
        if (left <= 0) {
            return;
        }
        pollfd output = {.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
        const int ready = poll(&output, 1, static_cast<int>(left));
        if (ready == 0) {
            return;
        }
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        // Any other result of poll is settled by the attempt to write.
        const ssize_t written = write(STDOUT_FILENO, text.data(), std::min(text.size(), mostAtOnce));
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EAGAIN && errno != EINTR) {
            return;
        }
    }
}

int status(bool succeeded) {
    return succeeded ? success : smcFailure;
}

int handBack(SMC& smc, std::span<char* const> arguments) {
    const auto index =
        arguments.size() >= 2 ? HelperArguments::parseIndex(arguments[1]) : std::optional<std::int64_t>();
    const UninterruptedSequence sequence;
    return status(index ? smc.resetFan(*index) : smc.resetFans());
}

int setSpeed(SMC& smc, std::span<char* const> arguments) {
    if (arguments.size() < 3) {
        return usageError;
    }
    const auto index = HelperArguments::parseIndex(arguments[1]);
    const auto rpm = HelperArguments::parseRPM(arguments[2]);
    if (!index || !rpm) {
        return usageError;
    }
    const UninterruptedSequence sequence;
    return status(smc.setFanSpeed(*index, *rpm));
}

int testFans(SMC& smc) {
    std::string report;
    {
        const UninterruptedSequence sequence;
        report = smc.fanWriteTest();
    }
    report += '\n';
    print(report);
    return success;
}

} // namespace

int run(std::span<char* const> arguments, const OpenSMC& openSMC) {
    if (arguments.empty()) {
        return usageError;
    }
    const std::string_view command = arguments.front();
    if (command == "version") {
        print(versionLine);
        return success;
    }
    const std::unique_ptr<SMC> smc = openSMC();
    if (smc == nullptr) {
        return smcUnavailable;
    }
    if (command == "test") {
        return testFans(*smc);
    }
    if (command == "auto") {
        return handBack(*smc, arguments);
    }
    if (command == "set") {
        return setSpeed(*smc, arguments);
    }
    return usageError;
}

} // namespace Fenwhirl::HelperMode
