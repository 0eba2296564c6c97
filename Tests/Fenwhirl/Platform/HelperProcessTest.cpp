// How the helper resets what it inherits from its caller. Each test spoils the state of a child process,
// prepares the helper in it, and inspects the result.

#include "Fenwhirl/Platform/Entry/HelperProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#    include <sched.h>
#    include <sys/prctl.h>
#endif

namespace Fenwhirl {

namespace {

// Runs `spoil`, HelperProcess::prepare and `look` in a child process. Returns what `look` complains about; ""
// means that all is well.
std::string complaintFromChild(const std::function<void()>& spoil, const std::function<std::string()>& look) {
    int ends[2] = {};
    if (pipe(ends) != 0) {
        return "no pipe";
    }
    const pid_t child = fork();
    if (child == 0) {
        const int answer = fcntl(ends[1], F_DUPFD, 100);
        spoil();
        // `prepare` closes all descriptors but the standard ones, so the answer's pipe replaces standard
        // error.
        dup2(answer, STDERR_FILENO);
        std::string complaint = HelperProcess::prepare() ? look() : "not prepared";
        complaint += '.';
        const ssize_t written = write(STDERR_FILENO, complaint.data(), complaint.size());
        _exit(written < 0 ? 1 : 0);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 256> buffer = {};
    for (ssize_t length = 0; (length = read(ends[0], buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(length));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status)) {
        return "ended by signal " + std::to_string(WTERMSIG(status));
    }
    return text.empty() ? "no answer" : text.substr(0, text.size() - 1);
}

// Whether this process may raise hard limits. Only root may, and in most containers not even root.
bool mayRaiseHardLimits() {
    const pid_t child = fork();
    if (child == 0) {
        const rlimit low = {.rlim_cur = 100, .rlim_max = 100};
        const rlimit high = {.rlim_cur = 200, .rlim_max = 200};
        _exit(setrlimit(RLIMIT_CPU, &low) == 0 && setrlimit(RLIMIT_CPU, &high) == 0 ? 0 : 1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && status == 0;
}

void setTimer(decltype(ITIMER_REAL) which, long seconds) {
    const itimerval timer = {.it_interval = {.tv_sec = 1, .tv_usec = 0},
                             .it_value = {.tv_sec = seconds, .tv_usec = 0}};
    setitimer(which, &timer, nullptr);
}

TEST(HelperProcess, HasNoTimerButItsOwn) {
    const std::string complaint = complaintFromChild(
        [] {
            for (const auto which : {ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF}) {
                setTimer(which, 3600);
            }
        },
        []() -> std::string {
            for (const auto which : {ITIMER_VIRTUAL, ITIMER_PROF}) {
                itimerval left = {};
                getitimer(which, &left);
                if (left.it_value.tv_sec != 0 || left.it_value.tv_usec != 0 || left.it_interval.tv_sec != 0) {
                    return "a timer of processor time";
                }
            }
            itimerval left = {};
            getitimer(ITIMER_REAL, &left);
            if (left.it_interval.tv_sec != 0 || left.it_value.tv_sec > 30 || left.it_value.tv_sec < 20) {
                return "another alarm";
            }
            return {};
        });
    EXPECT_EQ(complaint, "");
}

TEST(HelperProcess, BlocksOnlyPipeAndTerminalStopSignals) {
    const std::string complaint = complaintFromChild(
        [] {
            sigset_t all;
            sigfillset(&all);
            sigprocmask(SIG_SETMASK, &all, nullptr);
            for (const int signal : {SIGTERM, SIGUSR1, SIGTSTP, SIGPROF}) {
                raise(signal);
            }
        },
        []() -> std::string {
            sigset_t blocked;
            sigprocmask(SIG_BLOCK, nullptr, &blocked);
            std::string wrong;
            for (int signal = 1; signal < NSIG; ++signal) {
                const bool isExpected =
                    signal == SIGPIPE || signal == SIGTTIN || signal == SIGTTOU || signal == SIGTSTP;
                if ((sigismember(&blocked, signal) == 1) != isExpected) {
                    wrong += std::to_string(signal) + ' ';
                }
            }
            return wrong;
        });
    EXPECT_EQ(complaint, "");
}

TEST(HelperProcess, RaisesHardLimitsWhereItMay) {
    if (!mayRaiseHardLimits()) {
        GTEST_SKIP() << "may not raise a hard limit here";
    }
    const std::string complaint = complaintFromChild(
        [] {
            // A limit that leaves this process about a second of processor time.
            const rlimit second = {.rlim_cur = 1, .rlim_max = 1};
            setrlimit(RLIMIT_CPU, &second);
            setrlimit(RLIMIT_FSIZE, &second);
            const rlimit space = {.rlim_cur = rlim_t{1} << 40U, .rlim_max = rlim_t{1} << 45U};
            setrlimit(RLIMIT_DATA, &space);
            const rlimit three = {.rlim_cur = 3, .rlim_max = 3};
            setrlimit(RLIMIT_NOFILE, &three);
        },
        []() -> std::string {
            for (const auto resource : {RLIMIT_CPU, RLIMIT_FSIZE, RLIMIT_DATA}) {
                rlimit limit = {};
                getrlimit(resource, &limit);
                if (limit.rlim_cur != RLIM_INFINITY || limit.rlim_max != RLIM_INFINITY) {
                    return "limit " + std::to_string(static_cast<int>(resource));
                }
            }
            rlimit descriptors = {};
            getrlimit(RLIMIT_NOFILE, &descriptors);
            if (descriptors.rlim_cur < 16) {
                return "too few descriptors";
            }
            return {};
        });
    EXPECT_EQ(complaint, "");
}

TEST(HelperProcess, RaisesSoftLimitsWhateverItIs) {
    const std::string complaint = complaintFromChild(
        [] {
            rlimit limit = {};
            getrlimit(RLIMIT_NOFILE, &limit);
            limit.rlim_cur = 20;
            setrlimit(RLIMIT_NOFILE, &limit);
            if (geteuid() == 0 && setuid(65534) != 0) {
                _exit(2);
            }
        },
        []() -> std::string {
            rlimit limit = {};
            getrlimit(RLIMIT_NOFILE, &limit);
            return limit.rlim_cur == limit.rlim_max ? "" : "below the hard limit";
        });
    EXPECT_EQ(complaint, "");
}

TEST(HelperProcess, DoesNotTakeBackRightsThatWereGivenUp) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root has rights to give up";
    }
    const std::string complaint = complaintFromChild(
        [] {
            if (setreuid(0, 65534) != 0) {
                _exit(2);
            }
        },
        []() -> std::string {
            if (getuid() != 0 || geteuid() != 65534) {
                return std::to_string(getuid()) + ' ' + std::to_string(geteuid());
            }
            return {};
        });
    EXPECT_EQ(complaint, "");
}

TEST(HelperProcess, ShedsTheCallersIdentity) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give another identity";
    }
    const std::string complaint = complaintFromChild(
        [] {
            if (setreuid(65534, 0) != 0) {
                _exit(2);
            }
        },
        []() -> std::string { return getuid() == 0 && geteuid() == 0 ? "" : "still the caller's"; });
    EXPECT_EQ(complaint, "");
}

TEST(HelperProcess, IsPreparedWithItsDescriptorsClosed) {
    for (const int closed : {STDIN_FILENO, STDOUT_FILENO}) {
        const std::string complaint =
            complaintFromChild([closed] { close(closed); },
                               [closed]() -> std::string {
                                   const bool isOpen = fcntl(closed, F_GETFD) != -1;
                                   const bool isAlone = fcntl(STDERR_FILENO + 1, F_GETFD) == -1;
                                   return isOpen && isAlone ? "" : "wrong descriptors";
                               });
        EXPECT_EQ(complaint, "") << closed;
    }
}

#ifdef __linux__

// In a container not even root may: it has no CAP_SYS_NICE there.
bool mayLowerNiceness() {
    const pid_t child = fork();
    if (child == 0) {
        const bool may = setpriority(PRIO_PROCESS, 0, 1) == 0 && setpriority(PRIO_PROCESS, 0, 0) == 0;
        _exit(may ? 0 : 1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && status == 0;
}

TEST(HelperProcess, IsScheduledAsUsual) {
    if (!mayLowerNiceness()) {
        GTEST_SKIP() << "may not lower a niceness here";
    }

    struct Row {
        int schedulingClass;
        int niceness;
    };

    for (const Row& row :
         {Row{SCHED_OTHER, 0}, Row{SCHED_OTHER, 19}, Row{SCHED_IDLE, 0}, Row{SCHED_BATCH, 7}}) {
        const std::string complaint = complaintFromChild(
            [&row] {
                const sched_param none = {};
                sched_setscheduler(0, row.schedulingClass, &none);
                setpriority(PRIO_PROCESS, 0, row.niceness);
                // This name imitates fields of /proc/self/stat, which the helper parses.
                prctl(PR_SET_NAME, ") 0 (0 ) 0", 0, 0, 0);
            },
            []() -> std::string {
                return std::to_string(sched_getscheduler(0)) + ' ' +
                       std::to_string(getpriority(PRIO_PROCESS, 0));
            });
        EXPECT_EQ(complaint, std::to_string(SCHED_OTHER) + " 0")
            << row.schedulingClass << ' ' << row.niceness;
    }
}

TEST(HelperProcess, WaitsWithoutSlack) {
    const std::string complaint =
        complaintFromChild([] { prctl(PR_SET_TIMERSLACK, 90'000'000'000UL, 0, 0, 0); },
                           [] { return std::to_string(prctl(PR_GET_TIMERSLACK, 0, 0, 0, 0)); });
    EXPECT_EQ(complaint, "50000");
}

#endif

} // namespace

} // namespace Fenwhirl
