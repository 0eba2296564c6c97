#include "Fenwhirl/Helper.h"

#include "Support/ScriptedSMC.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <deque>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <poll.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

namespace {

using Writes = std::vector<ScriptedSMC::Write>;

// Runs the helper's commands against a controller in memory.
class HelperTest : public testing::Test {
protected:
    ScriptedSMC controller;
    int opened = 0;
    std::string printed;

    int run(std::vector<std::string> words) {
        controller.writes.clear();
        testing::internal::CaptureStdout();
        const int status = runUncaptured(std::move(words));
        printed = testing::internal::GetCapturedStdout();
        return status;
    }

    // For runs that end the process, which would leave the file of a capture behind.
    int runUncaptured(std::vector<std::string> words) {
        std::vector<char*> arguments;
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        return HelperMode::run(arguments, [this] {
            ++opened;
            return std::make_unique<SMC>(controller.connect());
        });
    }

    [[nodiscard]] std::vector<std::string> writtenKeys() const {
        std::vector<std::string> keys;
        for (const auto& write : controller.writes) {
            keys.push_back(write.key);
        }
        return keys;
    }
};

using Keys = std::vector<std::string>;

int runWithoutController(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    return HelperMode::run(arguments, [] { return std::unique_ptr<SMC>(); });
}

TEST(HelperWithoutController, TheOrderOfChecksDecidesTheStatus) {
    EXPECT_EQ(runWithoutController({}), 64);
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"bogus"}, {""}, {"set"}, {"set", "x", "y"}, {"auto"}, {"test"}, {"VERSION"}}) {
        EXPECT_EQ(runWithoutController(words), 2) << words.front();
    }
}

TEST_F(HelperTest, VersionIsAnsweredWithoutOpeningTheController) {
    EXPECT_EQ(run({"version"}), 0);
    EXPECT_EQ(printed, "3\n");
    EXPECT_EQ(run({"version", "extra"}), 0);
    EXPECT_EQ(printed, "3\n");
    EXPECT_EQ(opened, 0);
}

TEST_F(HelperTest, UnknownWordsAreUsageErrors) {
    for (const char* word : {"bogus", "", "SET", "set ", " auto", "versions", "--helper"}) {
        EXPECT_EQ(run({word}), 64) << word;
    }
    EXPECT_EQ(printed, "");
    EXPECT_EQ(opened, 7);
}

TEST_F(HelperTest, SetNeedsAnIndexAndASpeed) {
    controller.addOlderFans(2);
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"set"},
                                               {"set", "0"},
                                               {"set", "x", "1200"},
                                               {"set", "-", "1200"},
                                               {"set", "", "1200"},
                                               {"set", "0", "abc"},
                                               {"set", "0", ""},
                                               {"set", "0", "1200 "},
                                               {"set", "0x0", "1200"}}) {
        EXPECT_EQ(run(words), 64);
    }
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(HelperTest, SetDrivesTheFan) {
    controller.addOlderFans(2);
    EXPECT_EQ(run({"set", "+1", "2400.75", "extra"}), 0);
    EXPECT_EQ(printed, "");
    EXPECT_EQ(controller.number("F1Tg"), 2400);
    EXPECT_EQ(controller.number("FS! "), 2);
}

TEST_F(HelperTest, SetTellsARefusal) {
    controller.addOlderFans(1);
    controller.at("F0Tg").writeResult = SMCResult::notWritable;
    EXPECT_EQ(run({"set", "0", "2400"}), 1);
}

TEST_F(HelperTest, NonFiniteSpeedsNeverReachTheController) {
    controller.addOlderFans(1);
    for (const char* word : {"nan", "-nan", "nan(7)"}) {
        EXPECT_EQ(run({"set", "0", word}), 1) << word;
        EXPECT_TRUE(controller.writes.empty()) << word;
    }
    EXPECT_EQ(run({"set", "0", "inf"}), 0);
    EXPECT_EQ(controller.number("F0Tg"), 6000);
    EXPECT_EQ(run({"set", "0", "-1e999"}), 0);
    EXPECT_EQ(controller.number("F0Tg"), 1200);
}

TEST_F(HelperTest, SetRetriesAModeThatIsUnlockedLate) {
    controller.addUnlockableFans(1);
    controller.refusedModeWrites = 3;
    EXPECT_EQ(run({"set", "0", "2400"}), 0);
    EXPECT_EQ(controller.waited, std::chrono::milliseconds(600));
    controller.refusedModeWrites = 1000;
    EXPECT_EQ(run({"set", "0", "2400"}), 1);
}

TEST_F(HelperTest, AutoHandsBackOneFan) {
    controller.addOlderFans(2);
    ASSERT_EQ(run({"set", "0", "2400"}), 0);
    ASSERT_EQ(run({"set", "1", "2400"}), 0);
    EXPECT_EQ(run({"auto", "1", "extra"}), 0);
    EXPECT_EQ(controller.number("FS! "), 1);
}

TEST_F(HelperTest, AutoWithoutAUsableIndexHandsBackAllFans) {
    controller.addOlderFans(3);
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"auto"}, {"auto", "x"}, {"auto", ""}, {"auto", "1 "}}) {
        controller.setNumber("FS! ", "ui16", 7);
        EXPECT_EQ(run(words), 0);
        EXPECT_EQ(writtenKeys(), Keys({"FS! ", "FS! ", "FS! "}));
        EXPECT_EQ(controller.number("FS! "), 0);
    }
}

TEST_F(HelperTest, AutoDoesNotStopAtAFailure) {
    controller.addUnlockableFans(3);
    controller.at("F1Md").writeResult = SMCResult::notWritable;
    EXPECT_EQ(run({"auto"}), 1);
    EXPECT_EQ(writtenKeys(), Keys({"F0Md", "Ftst", "F1Md", "Ftst", "F2Md", "Ftst"}));
}

TEST_F(HelperTest, AutoWithoutFansSucceeds) {
    EXPECT_EQ(run({"auto"}), 0);
    EXPECT_TRUE(controller.writes.empty());
    controller.setNumber("FNum", "ui8 ", 0);
    EXPECT_EQ(run({"auto"}), 0);
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(HelperTest, ANegativeIndexIsPassedOn) {
    controller.addUnlockableFans(
        1); // these fans have no mask, and fan -1 has no keys, so only the unlock is written
    EXPECT_EQ(run({"auto", "-1"}), 0);
    EXPECT_EQ(writtenKeys(), Keys({"Ftst"}));
    EXPECT_EQ(run({"set", "-1", "2400"}), 1);
}

TEST_F(HelperTest, AnIndexThatTheMaskCannotHoldStopsBeforeAnyWrite) {
    controller.addOlderFans(1);
    controller.hook = ScriptedSMC::exitAtWrite;
    const rlimit noCore = {.rlim_cur = 0, .rlim_max = 0};
    for (const char* index : {"-1", "65536"}) {
        EXPECT_EXIT(
            {
                setrlimit(RLIMIT_CORE, &noCore);
                (void)runUncaptured({"auto", index});
            },
            testing::KilledBySignal(SIGABRT), "");
    }
}

TEST_F(HelperTest, TestPrintsItsReportAndOneLineEnd) {
    controller.addOlderFans(1);
    EXPECT_EQ(run({"test", "extra"}), 0);
    if (geteuid() == 0) {
        EXPECT_TRUE(printed.starts_with("Ventilateur 0 : ")) << printed;
        EXPECT_NE(printed.find("\nRetour en automatique : oui, cible après "), std::string::npos) << printed;
    } else {
        EXPECT_EQ(printed, "Test impossible : droits administrateur absents.\n");
    }
    EXPECT_TRUE(printed.ends_with('\n') && !printed.ends_with("\n\n"));
}

// Redirects standard output during its lifetime.
class RedirectedOutput {
public:
    explicit RedirectedOutput(int descriptor) : before_(dup(STDOUT_FILENO)) {
        dup2(descriptor, STDOUT_FILENO);
    }

    RedirectedOutput(const RedirectedOutput&) = delete;
    RedirectedOutput& operator=(const RedirectedOutput&) = delete;

    ~RedirectedOutput() {
        dup2(before_, STDOUT_FILENO);
        close(before_);
    }

private:
    int before_;
};

TEST(HelperOutput, ThatCannotBeWrittenIsNoFailure) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    {
        const RedirectedOutput output(full);
        EXPECT_EQ(runWithoutController({"version"}), 0);
    }
    close(full);
}

TEST(HelperOutput, WaitsForASlowReaderAndOutlastsSignals) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    fcntl(ends[1], F_SETFL, O_NONBLOCK);
    // Fill the pipe, so that the helper has to wait for its reader.
    std::size_t filled = 0;
    const std::string page(4096, 'x');
    for (ssize_t length = 0; (length = write(ends[1], page.data(), page.size())) > 0;) {
        filled += static_cast<std::size_t>(length);
    }
    for (const bool isBlocking : {false, true}) {
        fcntl(ends[1], F_SETFL, isBlocking ? 0 : O_NONBLOCK);
        struct sigaction action = {};
        action.sa_handler = [](int) {}; // without SA_RESTART, so calls are interrupted
        ASSERT_EQ(sigaction(SIGUSR1, &action, nullptr), 0);
        const pthread_t writer = pthread_self();
        std::thread reader([&] {
            for (int i = 0; i < 50; ++i) {
                pthread_kill(writer, SIGUSR1);
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            std::string text(filled, '\0');
            EXPECT_EQ(read(ends[0], text.data(), text.size()), static_cast<ssize_t>(filled));
        });
        int status = -1;
        {
            const RedirectedOutput output(ends[1]);
            status = runWithoutController({"version"});
        }
        reader.join();
        std::signal(SIGUSR1, SIG_DFL);
        EXPECT_EQ(status, 0);
        std::array<char, 8> answer = {};
        ASSERT_EQ(read(ends[0], answer.data(), answer.size()), 2);
        EXPECT_STREQ(answer.data(), "3\n");
        fcntl(ends[1], F_SETFL, O_NONBLOCK);
        for (std::size_t rest = filled; rest > 0; rest -= page.size()) {
            ASSERT_EQ(write(ends[1], page.data(), page.size()), static_cast<ssize_t>(page.size()));
        }
    }
    close(ends[0]);
    close(ends[1]);
}

#ifdef FENWHIRL_WRAPPED_OUTPUT

// While one exists, it answers the helper's calls of poll and write on standard output, and moves its clock.
class ScriptedReader {
public:
    struct Failure {
        int error;
        std::chrono::milliseconds after{0};
    };

    std::deque<Failure> pollFailures; // of the first calls of poll; the later ones are answered as follows
    bool reads = true;                // if not, poll waits until its time is over
    std::deque<int> writeErrors;      // of the first calls of write; the later ones take everything
    std::vector<int> waits;           // the times that poll was given, in milliseconds
    std::string text;                 // what was written
    std::chrono::nanoseconds now = std::chrono::hours(1); // of the monotonic clock

    static inline ScriptedReader* current = nullptr;

    ScriptedReader() { current = this; }

    ScriptedReader(const ScriptedReader&) = delete;
    ScriptedReader& operator=(const ScriptedReader&) = delete;

    ~ScriptedReader() { current = nullptr; }

    int poll(int milliseconds) {
        waits.push_back(milliseconds);
        if (!pollFailures.empty()) {
            now += pollFailures.front().after;
            errno = pollFailures.front().error;
            pollFailures.pop_front();
            return -1;
        }
        if (!reads) {
            now += std::chrono::milliseconds(milliseconds);
        }
        return reads ? 1 : 0;
    }

    ssize_t write(std::string_view part) {
        if (!writeErrors.empty()) {
            errno = writeErrors.front();
            writeErrors.pop_front();
            return -1;
        }
        text += part;
        return static_cast<ssize_t>(part.size());
    }
};

TEST(HelperOutput, IsGivenUpWhenNobodyReadsItForThreeSeconds) {
    ScriptedReader reader;
    reader.reads = false;
    EXPECT_EQ(runWithoutController({"version"}), 0);
    EXPECT_EQ(reader.waits, std::vector<int>({3000}));
    EXPECT_EQ(reader.text, "");
}

TEST(HelperOutput, SignalsDoNotProlongTheWaitForAReader) {
    ScriptedReader reader;
    reader.pollFailures = {3, {.error = EINTR, .after = std::chrono::milliseconds(1500)}};
    EXPECT_EQ(runWithoutController({"version"}), 0);
    EXPECT_EQ(reader.waits, (std::vector<int>{3000, 1500}));
    EXPECT_EQ(reader.text, "");
}

TEST(HelperOutput, IsWrittenThoughItCannotBeWaitedForAReader) {
    ScriptedReader reader;
    reader.pollFailures = {{.error = ENOMEM}};
    EXPECT_EQ(runWithoutController({"version"}), 0);
    EXPECT_EQ(reader.waits.size(), 1U);
    EXPECT_EQ(reader.text, "3\n");
}

TEST(HelperOutput, IsWrittenAgainWhenItIsInterruptedOrFindsNoRoom) {
    for (const int error : {EAGAIN, EINTR}) {
        ScriptedReader reader;
        reader.writeErrors = {error};
        EXPECT_EQ(runWithoutController({"version"}), 0);
        EXPECT_EQ(reader.text, "3\n") << error;
        EXPECT_EQ(reader.waits.size(), 2U) << error; // waited again before the second attempt
    }
}

TEST(HelperOutput, IsGivenUpWhenItsReaderIsGone) {
    ScriptedReader reader;
    reader.writeErrors = {EPIPE};
    EXPECT_EQ(runWithoutController({"version"}), 0);
    EXPECT_EQ(reader.text, "");
}

#endif

TEST_F(HelperTest, SignalsAreHeldWhileItWritesAndLetThroughAfterwards) {
    controller.addOlderFans(1);
    std::vector<bool> held;
    controller.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 == SMCCommand::writeKey) {
            sigset_t blocked;
            sigprocmask(SIG_BLOCK, nullptr, &blocked);
            for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGTSTP, SIGQUIT, SIGPROF, SIGVTALRM, SIGXCPU,
                                     SIGUSR1, SIGIO, SIGTTOU}) {
                held.push_back(sigismember(&blocked, signal) == 1);
            }
            held.push_back(sigismember(&blocked, SIGALRM) == 0);
        }
        return std::nullopt;
    };
    EXPECT_EQ(run({"set", "0", "2400"}), 0);
    EXPECT_EQ(run({"auto"}), 0);
    EXPECT_EQ(held, std::vector<bool>(36, true)); // 12 for each write: mask, target, mask
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGTERM), 0);
}

TEST_F(HelperTest, AutoIsNoSuccessWhenTheControllerDiesAtAnyOfItsRequests) {
    controller.addUnlockableFans(2);
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"auto"}, {"auto", "1"}}) {
        controller.requests.clear();
        ASSERT_EQ(run(words), 0);
        const std::size_t requests = controller.requests.size();
        for (std::size_t last = 0; last < requests; ++last) {
            controller.requests.clear();
            controller.diesAtRequest = last;
            EXPECT_EQ(run(words), 1) << words.size() << ' ' << last;
            controller.diesAtRequest.reset();
        }
    }
}

TEST_F(HelperTest, AControllerThatDiesAtAnyRequestIsAFailureThatAutoRepairs) {
    controller.addUnlockableFans(2);
    ASSERT_EQ(run({"set", "0", "2400"}), 0);
    const std::size_t requests = controller.requests.size();
    for (std::size_t last = 0; last < requests; ++last) {
        controller.requests.clear();
        controller.diesAtRequest = last;
        EXPECT_EQ(run({"set", "0", "2400"}), 1) << last;
        controller.diesAtRequest.reset();
        EXPECT_EQ(run({"auto"}), 0) << last;
        EXPECT_EQ(controller.number("F0Md"), 0) << last;
        EXPECT_EQ(controller.number("Ftst"), 0) << last;
    }
}

} // namespace

#ifdef FENWHIRL_WRAPPED_OUTPUT

// The linker redirects every call to the __wrap_ function; __real_ is the C library's own.
extern "C" int __wrap_poll(pollfd* descriptors, nfds_t count, int milliseconds);
extern "C" int __real_poll(pollfd* descriptors, nfds_t count, int milliseconds);
extern "C" ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size);
extern "C" ssize_t __real_write(int descriptor, const void* bytes, std::size_t size);
extern "C" int __wrap_clock_gettime(clockid_t clock, timespec* time);
extern "C" int __real_clock_gettime(clockid_t clock, timespec* time);

int __wrap_poll(pollfd* descriptors, nfds_t count, int milliseconds) {
    ScriptedReader* const reader = ScriptedReader::current;
    return reader ? reader->poll(milliseconds) : __real_poll(descriptors, count, milliseconds);
}

ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
    ScriptedReader* const reader = descriptor == STDOUT_FILENO ? ScriptedReader::current : nullptr;
    return reader ? reader->write({static_cast<const char*>(bytes), size})
                  : __real_write(descriptor, bytes, size);
}

int __wrap_clock_gettime(clockid_t clock, timespec* time) {
    if (!ScriptedReader::current || clock != CLOCK_MONOTONIC) {
        return __real_clock_gettime(clock, time);
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(ScriptedReader::current->now);
    time->tv_sec = seconds.count();
    time->tv_nsec = (ScriptedReader::current->now - seconds).count();
    return 0;
}

#endif

} // namespace Fenwhirl
