#include "Fenwhirl/HelperClient/CrashHandBack.h"

#include "Fenwhirl/HelperClient/HelperRun.h"
#include "Fenwhirl/Platform/Toolkit/AlternateSignalStack.h"
#include "Fenwhirl/Platform/Toolkit/SignalSafeStart.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Fenwhirl::CrashHandBack {

namespace {

// Besides crashes these cover the traps of compilers and frameworks, a forbidden system call (SIGSYS) and an
// exhausted limit of processor time (SIGXCPU).
constexpr std::array fatalSignals = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP, SIGSYS, SIGXCPU};

// A "set" that another thread has just started may go on trying for 4.2 s on a locked controller.
constexpr auto patienceWithOthers = std::chrono::milliseconds(5000);

#ifdef FENWHIRL_SANITIZED
// A sanitizer's vfork assumes that it is called on the thread's own stack.
constexpr int stackOfHandler = 0;
#else
constexpr int stackOfHandler = SA_ONSTACK;
#endif

// The argument lists of some helper runs, ready for exec.
class PreparedRuns {
public:
    PreparedRuns(const std::string& helperPath, const HandBack& handBack) {
        for (const auto& command : HandBackRule::commands(handBack)) {
            auto& words = words_.emplace_back(std::vector<std::string>{helperPath, "--helper"});
            words.insert(words.end(), command.begin(), command.end());
        }
        for (auto& words : words_) {
            auto& arguments = arguments_.emplace_back();
            for (std::string& word : words) {
                arguments.push_back(word.data());
            }
            arguments.push_back(nullptr);
        }
    }

    [[nodiscard]] const std::vector<std::vector<char*>>& arguments() const { return arguments_; }

private:
    std::vector<std::vector<std::string>> words_;
    std::vector<std::vector<char*>> arguments_;
};

std::atomic<const PreparedRuns*> prepared = nullptr;
std::atomic<bool> isDying = false;

static_assert(std::atomic<const PreparedRuns*>::is_always_lock_free, "the signal handler reads it");

void runAndWait(char* const* arguments) {
    const pid_t helper = startInSignalHandler(arguments);
    while (helper > 0 && waitpid(helper, nullptr, 0) < 0 && errno == EINTR) {
    }
}

// Restores the default action and unblocks the signal, so that the process really dies of it and its parent
// sees which one it was.
void dieBySignal(int signal) {
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
    sigset_t unblocked;
    sigemptyset(&unblocked);
    sigaddset(&unblocked, signal);
    pthread_sigmask(SIG_UNBLOCK, &unblocked, nullptr);
    (void)raise(signal);
    _exit(128 + signal);
}

extern "C" void fenwhirlHandleFatalSignal(int signal) {
    // The first thread acts and the process ends with it; the others only have to wait.
    while (isDying.exchange(true)) {
        pause();
    }
    HelperRun::forbid();
    HelperRun::waitForOthers(patienceWithOthers);
    if (const PreparedRuns* const runs = prepared.load()) {
        for (const auto& arguments : runs->arguments()) {
            runAndWait(arguments.data());
        }
    }
    dieBySignal(signal);
}

} // namespace

void install() {
    static const AlternateSignalStack stackOfMainThread;
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    // The handler runs with all fatal signals blocked: if it crashes itself, the kernel ends the process.
    for (const int signal : fatalSignals) {
        sigaddset(&action.sa_mask, signal);
    }
    action.sa_handler = fenwhirlHandleFatalSignal;
    action.sa_flags = stackOfHandler;
    for (const int signal : fatalSignals) {
        sigaction(signal, &action, nullptr);
    }
}

void prepare(const std::string& helperPath, const HandBack& handBack) {
    const auto* const next = new PreparedRuns(helperPath, handBack);
    std::unique_ptr<const PreparedRuns> previous(prepared.exchange(next));
    // A thread that began to die before the exchange may be reading the old lists, so they are leaked.
    if (isDying.load()) {
        (void)previous.release();
    }
}

} // namespace Fenwhirl::CrashHandBack
