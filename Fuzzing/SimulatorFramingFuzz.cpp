// Fuzzes the simulated Mac's server with packets and commands of any form.
//
// Input: a first byte that selects a machine, then pieces. A piece is a byte that gives its kind (even: a
// packet from the client, odd: a command line; the upper bits select how much time passes), a length byte,
// and as many bytes.
//
// Invariants: The server answers every packet with exactly one packet of 84 bytes, unless a command has set a
// fault. It never sends more answers than requests. Every command's answer has a proper last line.

#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/CommandStream.h"
#include "SimulatedMac/Mac.h"
#include "SimulatedMac/SMCServer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace simulated {

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// Excludes commands that read the file system or take long.
bool isHarmless(std::string_view line) {
    return line.find("course") == std::string_view::npos && line.find("advance") == std::string_view::npos;
}

bool endsClearly(const std::string& answer) {
    const std::size_t last = answer.rfind('\n');
    const std::string_view line = std::string_view(answer).substr(last == std::string::npos ? 0 : last + 1);
    return line.starts_with("ok") || line.starts_with("error:");
}

class Session {
public:
    explicit Session(const MachineTable& table) : mac_(table, now_) {
        std::array<int, 2> pair{};
        require(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair.data()) == 0);
        client_ = pair[0];
        require(server_.adopt(pair[1]));
    }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    Session(Session&&) = delete;
    Session& operator=(Session&&) = delete;

    ~Session() {
        ::close(client_);
        ::close(epoll_);
    }

    void packet(std::span<const std::uint8_t> bytes) {
        if (::send(client_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) {
            return; // the connection has ended
        }
        serve();
        std::array<std::uint8_t, AnswerFaults::longestReply> reply{};
        const ssize_t length = ::recv(client_, reply.data(), reply.size(), MSG_DONTWAIT);
        if (!spoiled_ && !bytes.empty()) {
            require(length == static_cast<ssize_t>(sizeof(Reply)));
            require(::recv(client_, reply.data(), reply.size(), MSG_DONTWAIT) < 0);
        }
    }

    void command(std::string_view line) {
        if (!isHarmless(line)) {
            return;
        }
        stream_.add(std::string(line));
        stream_.run(context_, now_,
                    [](const std::string&, const std::string& answer) { require(endsClearly(answer)); });
        spoiled_ = spoiled_ || faults_.current().kind != FaultKind::none;
    }

    void pass(double seconds) { now_.steadySeconds += seconds; }

private:
    void serve() {
        std::array<epoll_event, 8> events{};
        for (int count = 1; count > 0;) {
            count = ::epoll_wait(epoll_, events.data(), static_cast<int>(events.size()), 0);
            for (int i = 0; i < count; ++i) {
                server_.handleEvent(events[static_cast<std::size_t>(i)].data.u64,
                                    events[static_cast<std::size_t>(i)].events, now_);
            }
        }
        server_.sendDue(now_);
    }

    Instant now_{.steadySeconds = 1, .wallSeconds = 1'700'000'000};
    Mac mac_;
    AnswerFaults faults_;
    int epoll_ = ::epoll_create1(EPOLL_CLOEXEC);
    SMCServer server_{-1, epoll_, mac_, faults_};
    CommandContext context_{.mac = mac_, .faults = faults_, .counters = server_.counters()};
    CommandStream stream_;
    int client_ = -1;
    bool spoiled_ = false;
};

// Parsed once, because the tables do not depend on the input.
const std::vector<MachineTable>& machines() {
    static const std::vector<MachineTable> tables = [] {
        std::vector<MachineTable> all;
        for (const char* name : {"MacBookPro11,4", "AppleSilicon", "MacBook10,1"}) {
            all.push_back(*findMachine(name));
        }
        return all;
    }();
    return tables;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::span<const std::uint8_t> rest(data, size);
    if (rest.empty()) {
        return 0;
    }
    Session session(machines()[rest[0] % machines().size()]);
    rest = rest.subspan(1);
    while (rest.size() >= 2) {
        const std::uint8_t kind = rest[0];
        const std::size_t length = std::min<std::size_t>(rest[1], rest.size() - 2);
        const auto piece = rest.subspan(2, length);
        session.pass((kind >> 1) * 0.01);
        if (kind % 2 == 0) {
            session.packet(piece);
        } else {
            std::string line;
            std::transform(piece.begin(), piece.end(), std::back_inserter(line),
                           [](std::uint8_t byte) { return static_cast<char>(byte); });
            session.command(line);
        }
        rest = rest.subspan(2 + length);
    }
    return 0;
}

} // namespace simulated
