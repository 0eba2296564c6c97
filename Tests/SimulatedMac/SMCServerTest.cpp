#include "SimulatedMac/SMCServer.h"

#include "SimulatedMac/MacHarness.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace simulated {
namespace {

// A client of the server. By default nothing in it blocks: the test runs the server between its calls.
class TestClient {
public:
    explicit TestClient(int socket) : socket_(socket) {}

    TestClient(TestClient&& other) noexcept : socket_(std::exchange(other.socket_, -1)) {}

    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;
    TestClient& operator=(TestClient&&) = delete;

    ~TestClient() { disconnect(); }

    void disconnect() {
        if (socket_ >= 0) {
            ::close(std::exchange(socket_, -1));
        }
    }

    [[nodiscard]] bool send(const void* data, std::size_t length) const {
        return ::send(socket_, data, length, MSG_NOSIGNAL | MSG_DONTWAIT) == static_cast<ssize_t>(length);
    }

    [[nodiscard]] bool ask(FourCC key, std::uint8_t command = Fenwhirl::SMCCommand::keyInfo,
                           std::uint32_t size = 0) const {
        Fenwhirl::SMCParam request{};
        request.key = key;
        request.data8 = command;
        request.keyInfo.dataSize = size;
        return send(&request, sizeof(request));
    }

    // Returns the length of the next packet: 0 at the end of the stream, nothing when no packet is there.
    // With flags 0 it waits for a packet.
    std::optional<std::size_t> receive(int flags = MSG_DONTWAIT) {
        std::array<char, 8192> packet{};
        const ssize_t length = ::recv(socket_, packet.data(), packet.size(), flags);
        if (length < 0) {
            return errno == ECONNRESET ? std::optional<std::size_t>(0) : std::nullopt;
        }
        std::memcpy(&reply, packet.data(), std::min(sizeof(reply), static_cast<std::size_t>(length)));
        return static_cast<std::size_t>(length);
    }

    Reply reply;

private:
    int socket_;
};

struct SMCServerTest : testing::Test {
    MacHarness harness;
    AnswerFaults faults;
    std::string folder;
    int listener = -1;
    int epoll = ::epoll_create1(EPOLL_CLOEXEC);
    std::unique_ptr<SMCServer> server;
    sockaddr_un address{};

    void SetUp() override {
        std::string pattern = testing::TempDir() + "smc-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        ::chmod(folder.c_str(), 0755);
        address.sun_family = AF_UNIX;
        (folder + "/socket").copy(address.sun_path, sizeof(address.sun_path) - 1);
        listener = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        ::chmod(address.sun_path, 0666);
        ASSERT_EQ(::listen(listener, 4096), 0);
        server = std::make_unique<SMCServer>(listener, epoll, harness.mac, faults);
        ASSERT_TRUE(server->start());
    }

    void TearDown() override {
        server.reset();
        ::close(listener);
        ::close(epoll);
        ::unlink(address.sun_path);
        ::rmdir(folder.c_str());
    }

    // Serves all pending events; waits up to this long for the first one.
    void serve(int milliseconds = 0) {
        std::array<epoll_event, 64> events{};
        for (;; milliseconds = 0) {
            const int count =
                ::epoll_wait(epoll, events.data(), static_cast<int>(events.size()), milliseconds);
            if (count <= 0) {
                break;
            }
            for (int i = 0; i < count; ++i) {
                const epoll_event& event = events[static_cast<std::size_t>(i)];
                server->handleEvent(event.data.u64, event.events, harness.now);
            }
        }
        server->sendDue(harness.now);
    }

    [[nodiscard]] TestClient connect() const {
        const int socket = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        return TestClient(socket);
    }
};

TEST_F(SMCServerTest, ARequestIsAnsweredByOnePacketOf84Bytes) {
    TestClient client = connect();
    ASSERT_TRUE(client.ask(fourCC("FNum"), Fenwhirl::SMCCommand::readKey, 1));
    serve();
    EXPECT_EQ(client.receive(), 84U);
    EXPECT_EQ(client.reply.kernelReturn, 0U);
    EXPECT_EQ(client.reply.record.bytes[0], 2);
    EXPECT_FALSE(client.receive()) << "and by nothing else";
}

TEST_F(SMCServerTest, PipelinedRequestsAreAnsweredInOrder) {
    TestClient client = connect();
    ASSERT_TRUE(client.ask(fourCC("F0Ac")));
    ASSERT_TRUE(client.ask(fourCC("ZZZZ")));
    ASSERT_TRUE(client.ask(fourCC("F1Ac")));
    serve();
    for (const int result : {0x00, 0x84, 0x00}) {
        EXPECT_EQ(client.receive(), 84U);
        EXPECT_EQ(client.reply.record.result, result);
    }
}

TEST_F(SMCServerTest, PacketsOfAnotherLengthAreBadArgumentsAndTheConnectionLivesOn) {
    TestClient client = connect();
    const std::array<char, 300> noise{};
    for (const std::size_t length : {std::size_t{1}, std::size_t{79}, std::size_t{81}, noise.size()}) {
        ASSERT_TRUE(client.send(noise.data(), length));
        serve();
        EXPECT_EQ(client.receive(), 84U) << length;
        EXPECT_EQ(client.reply.kernelReturn, 0xE00002C2U) << length;
    }
    ASSERT_TRUE(client.ask(fourCC("FNum")));
    serve();
    EXPECT_EQ(client.receive(), 84U);
    EXPECT_EQ(client.reply.kernelReturn, 0U);
}

TEST_F(SMCServerTest, AnEmptyPacketIsTheEndOfTheConnection) {
    TestClient client = connect();
    ASSERT_TRUE(client.send("", 0));
    serve();
    EXPECT_EQ(client.receive(), 0U);
    EXPECT_EQ(server->counters().clients, 0U);
}

TEST_F(SMCServerTest, AThousandClientsAreServedSideBySide) {
    std::vector<TestClient> clients;
    for (int i = 0; i < 1000; ++i) {
        clients.push_back(connect());
        ASSERT_TRUE(clients.back().ask(fourCC("TC0P"), Fenwhirl::SMCCommand::readKey, 2));
    }
    serve();
    for (TestClient& client : clients) {
        EXPECT_EQ(client.receive(), 84U);
        EXPECT_EQ(client.reply.record.result, 0);
    }
    EXPECT_EQ(server->counters().clients, 1000U);
    clients.clear();
    serve();
    EXPECT_EQ(server->counters().clients, 0U);
    EXPECT_EQ(server->counters().connections, 1000U);
}

TEST_F(SMCServerTest, AClientThatDiesWithARequestOnItsWayDisturbsNobody) {
    TestClient survivor = connect();
    {
        TestClient victim = connect();
        serve();
        ASSERT_TRUE(victim.ask(fourCC("F0Ac")));
        ASSERT_TRUE(victim.ask(fourCC("F0Ac")));
    }
    ASSERT_TRUE(survivor.ask(fourCC("F0Ac")));
    serve();
    EXPECT_EQ(survivor.receive(), 84U);
    EXPECT_EQ(server->counters().clients, 1U);
}

TEST_F(SMCServerTest, AClientThatNeverReadsItsRepliesBlocksNobodyElse) {
    TestClient hoarder = connect();
    TestClient other = connect();
    int sent = 0;
    for (; sent < 100'000 && hoarder.ask(fourCC("F0Ac")); ++sent) {
        serve();
    }
    EXPECT_LT(sent, 100'000) << "at some point its requests pile up";
    ASSERT_TRUE(other.ask(fourCC("F0Ac")));
    serve();
    EXPECT_EQ(other.receive(), 84U);
    int fetched = 0;
    for (; fetched < sent; ++fetched) {
        if (hoarder.receive() != 84U) {
            serve();
            ASSERT_EQ(hoarder.receive(), 84U) << fetched;
        }
    }
    EXPECT_EQ(fetched, sent) << "none was lost";
}

TEST_F(SMCServerTest, ADelayedAnswerComesWhenItIsDue) {
    faults.set({.kind = FaultKind::delay, .argument = 300, .times = {}, .key = {}, .command = {}});
    TestClient client = connect();
    ASSERT_TRUE(client.ask(fourCC("FNum"), Fenwhirl::SMCCommand::readKey, 1));
    serve();
    EXPECT_FALSE(client.receive());
    ASSERT_TRUE(server->nextDueSeconds());
    EXPECT_NEAR(*server->nextDueSeconds() - harness.now.steadySeconds, 0.3, 1e-9);
    harness.pass(0.2);
    serve();
    EXPECT_FALSE(client.receive());
    harness.pass(0.2);
    serve();
    EXPECT_EQ(client.receive(), 84U);
    EXPECT_FALSE(server->nextDueSeconds());
}

TEST_F(SMCServerTest, AClientThatLeavesBeforeItsDelayedAnswerIsForgotten) {
    faults.set({.kind = FaultKind::delay, .argument = 300, .times = {}, .key = {}, .command = {}});
    TestClient client = connect();
    ASSERT_TRUE(client.ask(fourCC("FNum")));
    serve();
    client.disconnect();
    serve();
    EXPECT_EQ(server->counters().clients, 0U);
    EXPECT_FALSE(server->nextDueSeconds());
    harness.pass(1);
    serve();
}

TEST_F(SMCServerTest, SilenceSwallowsRequests) {
    faults.set({.kind = FaultKind::silence, .times = {}, .key = {}, .command = {}});
    TestClient client = connect();
    ASSERT_TRUE(client.ask(fourCC("FNum")));
    serve();
    faults.clear();
    serve();
    EXPECT_FALSE(client.receive());
    ASSERT_TRUE(client.ask(fourCC("FNum")));
    serve();
    EXPECT_EQ(client.receive(), 84U);
    EXPECT_FALSE(client.receive());
}

TEST_F(SMCServerTest, HangUpEndsTheConnection) {
    faults.set({.kind = FaultKind::hangUp, .times = {}, .key = {}, .command = {}});
    TestClient client = connect();
    ASSERT_TRUE(client.ask(fourCC("FNum")));
    serve();
    EXPECT_EQ(client.receive(), 0U);
}

TEST_F(SMCServerTest, RepliesCanBeTooShortOrTooLong) {
    TestClient client = connect();
    for (const std::uint32_t length : {1U, 83U, 85U, 4096U}) {
        faults.set(
            {.kind = FaultKind::wrongLength, .argument = length, .times = {}, .key = {}, .command = {}});
        ASSERT_TRUE(client.ask(fourCC("FNum")));
        serve();
        EXPECT_EQ(client.receive(), length);
    }
}

TEST_F(SMCServerTest, ResultAndKernelFaultsReplaceTheOutcome) {
    TestClient client = connect();
    faults.set({.kind = FaultKind::result, .argument = 0x84, .times = {}, .key = {}, .command = {}});
    ASSERT_TRUE(client.ask(fourCC("FNum"), Fenwhirl::SMCCommand::readKey, 1));
    serve();
    EXPECT_EQ(client.receive(), 84U);
    EXPECT_EQ(client.reply.record.result, 0x84);
    EXPECT_EQ(client.reply.record.bytes[0], 2) << "with a plausible payload";
    faults.set({.kind = FaultKind::kernel, .argument = 0xE00002BC, .times = {}, .key = {}, .command = {}});
    ASSERT_TRUE(client.ask(fourCC("FNum"), Fenwhirl::SMCCommand::readKey, 1));
    serve();
    EXPECT_EQ(client.receive(), 84U);
    EXPECT_EQ(client.reply.kernelReturn, 0xE00002BCU);
}

TEST_F(SMCServerTest, AFaultCanWaitForTheNthRequestAndEndAfterSome) {
    faults.set({.kind = FaultKind::result,
                .argument = 0x99,
                .after = 2,
                .times = 1,
                .key = fourCC("F0Ac"),
                .command = {}});
    TestClient client = connect();
    std::string results;
    for (const FourCC key :
         {fourCC("F0Ac"), fourCC("FNum"), fourCC("F0Ac"), fourCC("F0Ac"), fourCC("F0Ac")}) {
        ASSERT_TRUE(client.ask(key));
        serve();
        ASSERT_EQ(client.receive(), 84U);
        results += client.reply.record.result == 0x99 ? 'x' : '.';
    }
    EXPECT_EQ(results, "...x.");
}

TEST_F(SMCServerTest, WritesOfANonRootProcessAreRefusedByItsCredentials) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can become somebody else";
    }
    const pid_t child = ::fork();
    if (child == 0) {
        if (::seteuid(65534) != 0) {
            ::_exit(9);
        }
        TestClient client = connect();
        Fenwhirl::SMCParam request{};
        request.key = fourCC("FS! ");
        request.data8 = Fenwhirl::SMCCommand::writeKey;
        request.keyInfo.dataSize = 2;
        request.bytes[1] = 1;
        if (!client.send(&request, sizeof(request))) {
            ::_exit(8);
        }
        // Becomes root again before the server looks: the credentials at the time of connecting decide.
        (void)::seteuid(0);
        const std::optional<std::size_t> length = client.receive(0);
        ::_exit(length == 84U && client.reply.kernelReturn == 0xE00002C1U ? 0 : 7);
    }
    // Serves until the write has been answered; the child's exit status is collected afterwards.
    for (int i = 0; i < 100 && harness.mac.writes().last() == 0; ++i) {
        serve(100);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    const auto& entries = harness.mac.writes().entries();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].peer.user, 65534U);
    EXPECT_EQ(entries[0].peer.process, child);
    EXPECT_EQ(harness.mac.keys().number(fourCC("FS! ")), 0);
}

TEST_F(SMCServerTest, RootsWritesAreGranted) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs root";
    }
    TestClient client = connect();
    Fenwhirl::SMCParam request{};
    request.key = fourCC("FS! ");
    request.data8 = Fenwhirl::SMCCommand::writeKey;
    request.keyInfo.dataSize = 2;
    request.bytes[1] = 1;
    ASSERT_TRUE(client.send(&request, sizeof(request)));
    serve();
    EXPECT_EQ(client.receive(), 84U);
    EXPECT_EQ(client.reply.kernelReturn, 0U);
    EXPECT_EQ(harness.mac.keys().number(fourCC("FS! ")), 1);
}

TEST_F(SMCServerTest, SlotsOfClientsThatLeftAreUsedAgainWithoutMixingThemUp) {
    for (int round = 0; round < 50; ++round) {
        TestClient first = connect();
        TestClient second = connect();
        ASSERT_TRUE(first.ask(fourCC("F0Ac")));
        ASSERT_TRUE(second.ask(fourCC("ZZZZ")));
        serve();
        EXPECT_EQ(first.receive(), 84U);
        EXPECT_EQ(first.reply.record.result, 0);
        EXPECT_EQ(second.receive(), 84U);
        EXPECT_EQ(second.reply.record.result, 0x84);
        first.disconnect();
        serve();
    }
    serve();
    EXPECT_EQ(server->counters().clients, 0U);
}

} // namespace
} // namespace simulated
