#include "Fenwhirl/Platform/Entry/HelperProcess.h"

#include "Fenwhirl/Platform/Entry/HelperProcessSystem.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace Fenwhirl::HelperProcess {

namespace {

// Long enough for the fan write test (8 s) and for every fan of a large machine; short enough that a
// controller that stops answering does not leave a root process behind.
constexpr unsigned secondsToLive = 30;
// More than the helper ever has open at a time.
constexpr rlim_t enoughDescriptors = 64;

void setDisposition(int signal, void (*disposition)(int)) {
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_handler = disposition;
    sigaction(signal, &action, nullptr);
}

// Timers survive exec. The processor-time timers could end the process at a moment that the caller chose, so
// they are turned off. The real-time timer becomes the helper's own time limit.
void resetTimers() {
    const itimerval off = {};
    setitimer(ITIMER_VIRTUAL, &off, nullptr);
    setitimer(ITIMER_PROF, &off, nullptr);
    alarm(secondsToLive);
}

void resetSignals(std::uint64_t ignored) {
    // Exec itself resets handlers. A caller can still pass on ignored signals, and signals that are pending
    // because they are blocked. The pending ones would stop or end the process as soon as they are unblocked;
    // ignoring them once discards them.
    sigset_t waiting;
    sigemptyset(&waiting);
    sigpending(&waiting);
    for (int signal = 1; signal < NSIG && signal <= 64; ++signal) {
        if (signal == SIGKILL || signal == SIGSTOP) {
            continue;
        }
        const bool isWaiting = sigismember(&waiting, signal) == 1;
        if (isWaiting) {
            setDisposition(signal, SIG_IGN);
        }
        if (isWaiting || (ignored >> static_cast<unsigned>(signal - 1) & 1U) != 0) {
            setDisposition(signal, SIG_DFL);
        }
    }
    // The process must not die because a reader went away. Nor may a terminal stop it: the alarm cannot end a
    // stopped process, and nobody but root could continue or kill it.
    sigset_t unheard;
    sigemptyset(&unheard);
    for (const int signal : {SIGPIPE, SIGTTIN, SIGTTOU, SIGTSTP}) {
        sigaddset(&unheard, signal);
    }
    sigprocmask(SIG_SETMASK, &unheard, nullptr);
}

// Sets the soft and hard limit to `wanted`. Only root may raise the hard limit; otherwise raises the soft
// limit to the hard one.
void raiseLimit(decltype(RLIMIT_CPU) resource, rlim_t wanted) {
    rlimit limit = {.rlim_cur = wanted, .rlim_max = wanted};
    if (setrlimit(resource, &limit) != 0 && getrlimit(resource, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(resource, &limit);
    }
}

// Raises the limits that could end a sequence of writes half-way. The other limits restrict what the helper
// does not do. The hard limits are raised, too, where the process may, because the caller may have used up
// nearly all of what it was allowed.
void raiseLimits() {
    for (const auto resource : {RLIMIT_CPU, RLIMIT_FSIZE, RLIMIT_DATA, RLIMIT_STACK, RLIMIT_AS}) {
        raiseLimit(resource, RLIM_INFINITY);
    }
    rlimit descriptors = {};
    if (getrlimit(RLIMIT_NOFILE, &descriptors) != 0) {
        return;
    }
    const rlim_t most = std::max(descriptors.rlim_max, enoughDescriptors);
    if (descriptors.rlim_cur != most) {
        raiseLimit(RLIMIT_NOFILE, most);
    }
}

// Whether all three are already open, as they nearly always are. A false result may be wrong: on some systems
// poll does not support every device, and it fails for more descriptors than the limit allows.
bool areStandardDescriptorsOpen() {
    pollfd standard[3] = {};
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        standard[descriptor].fd = descriptor;
    }
    if (poll(standard, 3, 0) < 0) {
        return false;
    }
    for (const pollfd& descriptor : standard) {
        if ((descriptor.revents & POLLNVAL) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace

bool occupyStandardDescriptors() {
    if (areStandardDescriptorsOpen()) {
        return true;
    }
    int descriptor = -1;
    do {
        descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
        if (descriptor < 0) {
            return false;
        }
    } while (descriptor <= STDERR_FILENO);
    close(descriptor);
    return true;
}

bool prepare() {
    // First, because until then the caller may stop the process. If the effective user is not root, a caller
    // that could regain root's rights has dropped them on purpose.
    if (geteuid() == 0) {
        setAllUserIdsToRoot();
    }
    resetTimers();
    raiseLimits();
    const bool areOccupied = occupyStandardDescriptors();
    closeDescriptorsFrom(STDERR_FILENO + 1);
    const Inherited inherited = inheritedState();
    resetSignals(inherited.ignoredSignals);
    if (!inherited.hasDefaultScheduling) {
        resetScheduling();
    }
    resetTimerSlack();
    const rlimit noCore = {.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_CORE, &noCore);
    forbidTracing();
    umask(S_IRWXG | S_IRWXO);
    return chdir("/") == 0 && areOccupied;
}

} // namespace Fenwhirl::HelperProcess
