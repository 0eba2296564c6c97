#include "FenwhirlCore/Platform/SocketTransport.h"

#include "FenwhirlCore/Platform/SocketService.h"
#include "FenwhirlCore/SMC.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

using namespace std::chrono_literals;

// Not the system's limit, but long enough for an answer on a busy computer.
constexpr auto shortSilence = 1500ms;

SMCParam numbered(std::uint32_t number) {
    SMCParam request{};
    request.data8 = SMCCommand::keyInfo;
    request.key = number;
    return request;
}

int listeningSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int listener = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    EXPECT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(listen(listener, 8), 0);
    EXPECT_EQ(chmod(path.c_str(), 0666), 0);
    return listener;
}

// A service that answers every request except one; the fault answers that one.
struct Faulty {
    explicit Faulty(SocketService::Script fault, int faultyRequest = 1)
        : service([=](int connection, const SMCParam& request, int number) {
            return number == faultyRequest ? fault(connection, request, number)
                                           : answer(connection, request, 7);
        }) {}

    SocketService service;
    std::unique_ptr<SocketTransport> transport = SocketTransport::open(service.path(), shortSilence);
};

// Sends a request and expects the answer to this very request.
void expectAnswered(SocketTransport& transport, std::uint32_t number) {
    const auto output = transport.call(numbered(number));
    ASSERT_TRUE(output) << number;
    EXPECT_EQ(output->key, number);
    EXPECT_EQ(output->bytes[0], 7);
}

TEST(SocketTransport, CarriesARecordAndBringsOneBack) {
    SMCParam seen{};
    SocketService service([&](int connection, const SMCParam& request, int) {
        seen = request;
        SMCParam record{};
        record.result = SMCResult::keyNotFound;
        record.bytes[31] = 0xAB;
        sendPacket(connection, replyBytes(KernelReturn::success, record));
        return true;
    });
    auto transport = SocketTransport::open(service.path());
    ASSERT_TRUE(transport);
    const auto output = transport->call(numbered(0x12345678));
    ASSERT_TRUE(output);
    EXPECT_EQ(output->result, SMCResult::keyNotFound); // interpreting the result is up to the caller
    EXPECT_EQ(output->bytes[31], 0xAB);
    EXPECT_EQ(seen.key, 0x12345678U);
    EXPECT_EQ(seen.data8, SMCCommand::keyInfo);
}

TEST(SocketTransport, AKernelErrorFailsThatCallAlone) {
    Faulty faulty([](int connection, const SMCParam& request, int) {
        sendPacket(connection, replyBytes(KernelReturn::notPrivileged, request));
        return true;
    });
    expectAnswered(*faulty.transport, 0);
    EXPECT_FALSE(faulty.transport->call(numbered(1)));
    expectAnswered(*faulty.transport, 2);
    EXPECT_EQ(faulty.service.connections(), 1);
}

TEST(SocketTransport, AMissingSocketCannotBeOpened) {
    EXPECT_EQ(SocketTransport::open("/nonexistent/AppleSMC"), nullptr);
    EXPECT_EQ(SocketTransport::open(""), nullptr);
    EXPECT_EQ(SocketTransport::open("/tmp/" + std::string(200, 'x')), nullptr);
    SocketService service([](int c, const SMCParam& r, int) { return answer(c, r, 7); });
    EXPECT_EQ(SocketTransport::open(service.folder()), nullptr);
    service.stopListening();
    EXPECT_EQ(SocketTransport::open(service.path()), nullptr);
}

TEST(SocketTransport, ASocketThatItsServiceLeftBehindCannotBeOpened) {
    TemporaryFolder folder;
    close(listeningSocket(folder.path("AppleSMC")));
    EXPECT_EQ(SocketTransport::open(folder.path("AppleSMC")), nullptr);
}

// Every packet that is not exactly one reply fails its call, and must never answer a later call.
TEST(SocketTransport, MalformedRepliesFailTheirCallAndNoOther) {
    const std::vector<std::vector<std::size_t>> deliveries = {
        {0}, {1}, {4}, {40}, {80}, {83}, {85}, {168}, {4096}, {40, 44}, {42, 42, 84}, {83, 84}, {84 * 2, 84}};
    for (const auto& sizes : deliveries) {
        std::atomic_flag isSent;
        Faulty faulty([&](int connection, const SMCParam& request, int) {
            const auto reply = replyBytes(KernelReturn::success, request);
            for (const std::size_t size : sizes) {
                std::vector<std::uint8_t> packet(size);
                std::ranges::copy_n(reply.begin(), static_cast<std::ptrdiff_t>(std::min(size, reply.size())),
                                    packet.begin());
                sendPacket(connection, packet);
            }
            isSent.test_and_set();
            isSent.notify_one();
            return true;
        });
        expectAnswered(*faulty.transport, 0);
        EXPECT_FALSE(faulty.transport->call(numbered(1))) << sizes[0];
        isSent.wait(false);
        EXPECT_FALSE(faulty.transport->isDead());
        for (std::uint32_t number = 2; number < 5; ++number) {
            expectAnswered(*faulty.transport, number);
        }
        EXPECT_EQ(faulty.service.connections(), 1) << sizes[0];
    }
}

TEST(SocketTransport, AReplyInOneBytePacketsIsRejected) {
    std::atomic_flag isSent;
    Faulty faulty([&](int connection, const SMCParam& request, int) {
        for (const std::uint8_t byte : replyBytes(KernelReturn::success, request)) {
            sendPacket(connection, {byte});
        }
        isSent.test_and_set();
        isSent.notify_one();
        return true;
    });
    expectAnswered(*faulty.transport, 0);
    EXPECT_FALSE(faulty.transport->call(numbered(1)));
    isSent.wait(false);
    for (std::uint32_t number = 2; number < 100; ++number) {
        expectAnswered(*faulty.transport, number);
    }
}

TEST(SocketTransport, ATimeoutKillsTheConnection) {
    Faulty faulty([](int, const SMCParam&, int) { return true; });
    expectAnswered(*faulty.transport, 0);
    auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(faulty.transport->call(numbered(1)));
    EXPECT_GE(std::chrono::steady_clock::now() - start, shortSilence);
    EXPECT_TRUE(faulty.transport->isDead());
    start = std::chrono::steady_clock::now();
    for (std::uint32_t number = 2; number < 1000; ++number) {
        EXPECT_FALSE(faulty.transport->call(numbered(number)));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
    EXPECT_EQ(faulty.service.requests(), 2);
    EXPECT_EQ(faulty.service.connections(), 1);
}

TEST(SocketTransport, TheSystemsLimitIsTwoSeconds) {
    EXPECT_EQ(SocketTransport::systemSilenceLimit, 2s);
    EXPECT_STREQ(SocketTransport::systemPath, "/run/fenwhirl/AppleSMC");
    SocketService service([](int, const SMCParam&, int) { return true; });
    auto transport = SocketTransport::open(service.path());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(transport->call(numbered(0)));
    const auto spent = std::chrono::steady_clock::now() - start;
    EXPECT_GE(spent, 1990ms);
    EXPECT_LT(spent, 10s);
}

TEST(SocketTransport, ALateReplyNeverAnswersTheNextCall) {
    int late = -1;
    SMCParam lateRequest{};
    SocketService service([&](int connection, const SMCParam& request, int number) {
        if (number == 0) { // delays the answer beyond the limit
            late = dup(connection);
            lateRequest = request;
            return true;
        }
        sendPacket(late, replyBytes(KernelReturn::success, lateRequest));
        return answer(connection, request, 7);
    });
    auto transport = SocketTransport::open(service.path(), shortSilence);
    EXPECT_FALSE(transport->call(numbered(100)));
    for (std::uint32_t number = 1; number < 10; ++number) {
        EXPECT_FALSE(transport->call(numbered(number)));
    }
    EXPECT_EQ(service.connections(), 1);
    transport.reset();
    transport = SocketTransport::open(service.path(), shortSilence); // with no reply outstanding
    for (std::uint32_t number = 1; number < 10; ++number) {
        expectAnswered(*transport, number);
    }
    close(late);
}

TEST(SocketTransport, AnEndOfStreamKillsTheConnection) {
    Faulty faulty([](int, const SMCParam&, int) { return false; });
    expectAnswered(*faulty.transport, 0);
    EXPECT_FALSE(faulty.transport->call(numbered(1)));
    EXPECT_TRUE(faulty.transport->isDead());
    const auto start = std::chrono::steady_clock::now();
    for (std::uint32_t number = 2; number < 1000; ++number) {
        EXPECT_FALSE(faulty.transport->call(numbered(number)));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
    EXPECT_EQ(faulty.service.requests(), 2);
    EXPECT_EQ(faulty.service.connections(), 1);
}

TEST(SocketTransport, AnEndOfStreamAfterPartOfAReplyFailsTheCall) {
    Faulty faulty([](int connection, const SMCParam&, int) {
        sendPacket(connection, std::vector<std::uint8_t>(40));
        return false;
    });
    expectAnswered(*faulty.transport, 0);
    EXPECT_FALSE(faulty.transport->call(numbered(1)));
}

TEST(SocketTransport, AServiceThatIsGoneKillsTheConnectionNotTheProcess) {
    auto service =
        std::make_unique<SocketService>([](int c, const SMCParam& r, int) { return answer(c, r, 7); });
    auto transport = SocketTransport::open(service->path(), shortSilence);
    expectAnswered(*transport, 0);
    service.reset();
    EXPECT_FALSE(transport->call(numbered(1))); // SIGPIPE would end the test
    EXPECT_TRUE(transport->isDead());
}

// Silence at any request ends the reading there. What was read before it is correct.
TEST(SocketTransport, AHangAtAnyRequestOfAReadingIsBounded) {
    const auto fanController = [](int connection, const SMCParam& request, int) {
        SMCParam record{};
        if (request.data8 == SMCCommand::keyInfo) {
            record.keyInfo.dataSize = request.key == SMC::fourCC("FNum") ? 1 : 2;
            record.keyInfo.dataType = SMC::fourCC(request.key == SMC::fourCC("FNum") ? "ui8 " : "fpe2");
        } else {
            record.bytes = {0x02, 0x40}; // two fans; 144 rpm
        }
        sendPacket(connection, replyBytes(KernelReturn::success, record));
        return true;
    };
    const auto readWithHang = [&](int hanging) {
        SocketService service([=](int connection, const SMCParam& request, int number) {
            return number == hanging || fanController(connection, request, number);
        });
        SMC smc(SocketTransport::open(service.path(), shortSilence));
        const auto fans = smc.readFans();
        // The fan count takes two requests and each fan eight: its speed first, then its limits.
        const std::size_t expected = hanging < 4 ? 0 : hanging < 12 ? 1 : 2;
        EXPECT_EQ(fans.size(), expected) << hanging;
        for (const FanReading& fan : fans) {
            EXPECT_EQ(fan.rpm, 144);
        }
    };
    std::vector<std::thread> readings;
    for (int hanging = 0; hanging < 18; ++hanging) {
        readings.emplace_back(readWithHang, hanging);
    }
    for (std::thread& reading : readings) {
        reading.join();
    }
}

void onAlarm(int) {}

TEST(SocketTransport, SignalsDoNotDisturbACall) {
    struct sigaction action {};

    action.sa_handler = onAlarm; // without SA_RESTART, so system calls are interrupted

    struct sigaction previous {};

    sigaction(SIGALRM, &action, &previous);
    const itimerval often{.it_interval = {0, 2000}, .it_value = {0, 2000}};
    sigset_t alarmOnly;
    sigemptyset(&alarmOnly);
    sigaddset(&alarmOnly, SIGALRM);
    pthread_sigmask(SIG_BLOCK, &alarmOnly, nullptr); // inherited by the service's thread
    SocketService service([](int connection, const SMCParam& request, int number) {
        std::this_thread::sleep_for(10ms);
        return number == 20 || answer(connection, request, 7);
    });
    pthread_sigmask(SIG_UNBLOCK, &alarmOnly, nullptr);
    auto transport = SocketTransport::open(service.path(), shortSilence);
    setitimer(ITIMER_REAL, &often, nullptr);
    for (std::uint32_t number = 0; number < 20; ++number) {
        expectAnswered(*transport, number);
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(transport->call(numbered(20)));
    const auto spent = std::chrono::steady_clock::now() - start;
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &previous, nullptr);
    EXPECT_GE(spent, shortSilence - 10ms);
    EXPECT_LT(spent, 20s);
}

int descriptorOfSocket() {
    for (int descriptor = 0; descriptor < 64; ++descriptor) {
        struct stat status {};

        if (fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode)) {
            return descriptor;
        }
    }
    return -1;
}

TEST(SocketTransport, ItsDescriptorIsNeverAStandardStreamAndClosesOnExec) {
    for (unsigned closed = 0; closed < 8; ++closed) {
        SocketService service([](int c, const SMCParam& r, int) { return answer(c, r, 7); });
        const pid_t child = fork();
        if (child == 0) {
            for (int descriptor = 0; descriptor < 64; ++descriptor) {
                if (descriptor > 2 || (closed & 1U << static_cast<unsigned>(descriptor)) != 0) {
                    close(descriptor);
                }
            }
            const auto transport = SocketTransport::open(service.path());
            const int descriptor = descriptorOfSocket();
            const bool isGood = transport && descriptor > 2 &&
                                (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0 &&
                                transport->call(numbered(1)).has_value();
            _exit(isGood ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << closed;
    }
}

TEST(SocketTransport, TheDestructorClosesTheConnection) {
    SocketService service([](int c, const SMCParam& r, int) { return answer(c, r, 7); });
    const auto countDescriptors = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    const auto transport = SocketTransport::open(service.path());
    const auto before = countDescriptors();
    for (int round = 0; round < 5; ++round) {
        const auto another = SocketTransport::open(service.path());
        EXPECT_TRUE(another);
    }
    EXPECT_EQ(SocketTransport::open("/nonexistent/AppleSMC"), nullptr);
    EXPECT_LE(countDescriptors(), before + 1); // the service may still hold its end of the last connection
}

class SocketTrust : public testing::Test {
protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "the trust of root is only asked for by root";
        }
    }

    SocketService service = SocketService([](int c, const SMCParam& r, int) { return answer(c, r, 7); });
};

TEST_F(SocketTrust, RootRequiresAFolderThatOnlyRootCanWrite) {
    const std::string folder = service.folder();
    for (const mode_t mode : {0700U, 0755U, 0555U}) {
        ASSERT_EQ(chmod(folder.c_str(), mode), 0);
        EXPECT_TRUE(SocketTransport::open(service.path())) << std::oct << mode;
    }
    for (const mode_t mode : {0777U, 0775U, 0757U, 01777U, 0722U}) {
        ASSERT_EQ(chmod(folder.c_str(), mode), 0);
        EXPECT_FALSE(SocketTransport::open(service.path())) << std::oct << mode;
    }
    ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(chown(folder.c_str(), 65534, 65534), 0);
    EXPECT_FALSE(SocketTransport::open(service.path()));
}

TEST_F(SocketTrust, RootFollowsNoLinkToTheFolder) {
    const std::string link = service.folder() + "-link";
    ASSERT_EQ(symlink(service.folder().c_str(), link.c_str()), 0);
    EXPECT_FALSE(SocketTransport::open(link + "/AppleSMC"));
    unlink(link.c_str());
}

constexpr uid_t nobody = 65534;

// Runs the test in a child process as user nobody and returns its result.
bool asNobody(const std::function<bool()>& test) {
    const pid_t child = fork();
    if (child == 0) {
        const bool isNobody = setgid(nobody) == 0 && setuid(nobody) == 0;
        _exit(isNobody && test() ? 0 : 1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && status == 0;
}

TEST_F(SocketTrust, RootRefusesAServiceOfAnotherUser) {
    TemporaryFolder folder;
    const std::string path = folder.path("AppleSMC");
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(chown(folder.path().c_str(), nobody, nobody), 0);
    // The listening socket lives on in this process, but user nobody created it.
    ASSERT_EQ(seteuid(nobody), 0);
    const int squatter = listeningSocket(path);
    ASSERT_EQ(seteuid(0), 0);
    ASSERT_EQ(chown(folder.path().c_str(), 0, 0), 0);
    EXPECT_FALSE(SocketTransport::open(path));
    EXPECT_TRUE(asNobody([&] { return SocketTransport::open(path) != nullptr; }));
    close(squatter);
}

TEST_F(SocketTrust, AnOrdinaryUserReadsFromTheServiceOfRoot) {
    ASSERT_EQ(chmod(service.path().c_str(), 0666), 0);
    EXPECT_TRUE(asNobody([&] {
        const auto transport = SocketTransport::open(service.path());
        return transport && transport->call(numbered(1)).has_value();
    }));
}

} // namespace

} // namespace Fenwhirl
