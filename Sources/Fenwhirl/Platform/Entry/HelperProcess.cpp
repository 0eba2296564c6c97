#include "Fenwhirl/Platform/Entry/HelperProcess.h"

#include "Fenwhirl/Platform/Entry/HelperProcessSystem.h"

#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <initializer_list>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HelperProcess {

namespace {

// Long enough for the fan write test (8 s) and for every fan of a large machine, short enough that a
// controller that stops answering does not leave a root process behind.
constexpr unsigned secondsToLive = 30;

void setDisposition(int signal, void (*disposition)(int)) {
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_handler = disposition;
    sigaction(signal, &action, nullptr);
}

void resetSignals() {
    // Handlers end with exec by themselves. What a caller can pass on is "ignored", and signals that wait
    // behind his mask: those would stop or end the process as soon as none is blocked, and ignoring them once
    // discards them.
    const std::uint64_t ignored = ignoredSignals();
    sigset_t waiting;
    sigemptyset(&waiting);
    sigpending(&waiting);
    for (int signal = 1; signal < NSIG && signal <= 64; ++signal) {
        if (signal == SIGKILL || signal == SIGSTOP)
            continue;
        const bool isWaiting = sigismember(&waiting, signal) == 1;
        if (isWaiting)
            setDisposition(signal, SIG_IGN);
        if (isWaiting || (ignored >> static_cast<unsigned>(signal - 1) & 1U) != 0)
            setDisposition(signal, SIG_DFL);
    }
    setDisposition(SIGPIPE, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Those that could end a sequence of writes half-way; the others bound what the helper does not do.
void raiseLimits() {
    for (const auto resource :
         {RLIMIT_CPU, RLIMIT_FSIZE, RLIMIT_DATA, RLIMIT_STACK, RLIMIT_NOFILE, RLIMIT_AS}) {
        rlimit limit = {};
        if (getrlimit(resource, &limit) == 0 && limit.rlim_cur != limit.rlim_max) {
            limit.rlim_cur = limit.rlim_max;
            setrlimit(resource, &limit);
        }
    }
}

} // namespace

bool occupyStandardDescriptors() {
    int descriptor = -1;
    do {
        descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
        if (descriptor < 0)
            return false;
    } while (descriptor <= STDERR_FILENO);
    close(descriptor);
    return true;
}

bool prepare() {
    if (!occupyStandardDescriptors())
        return false;
    closeDescriptorsFrom(STDERR_FILENO + 1);
    resetSignals();
    const rlimit noCore = {.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_CORE, &noCore);
    forbidTracing();
    raiseLimits();
    umask(S_IRWXG | S_IRWXO);
    if (chdir("/") != 0)
        return false;
    becomeRootEntirely();
    alarm(secondsToLive);
    return true;
}

} // namespace HelperProcess
