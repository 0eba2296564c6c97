// The server behind the socket. It accepts any number of clients and answers their requests one at a time.
//
// A request is one packet of 80 bytes, a reply one packet of 84. A packet of another length is answered as
// the kernel answers a call with a wrong structure size: with return code 0xE00002C2 and an empty record. The
// connection stays open. The server does not read further requests from a client until that client has
// fetched its replies.
//
// The owner waits on the epoll instance and passes events in. Nothing here blocks, and answering a request
// allocates nothing. Single-threaded.

#pragma once

#include "SimulatedMac/AnswerFaults.h"
#include "SimulatedMac/Mac.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace simulated {

inline constexpr std::uint32_t kernelBadArgument = 0xE00002C2U;

struct ServerCounters {
    std::size_t clients = 0;       // connected now
    std::uint64_t connections = 0; // since the start
    std::uint64_t requests = 0;
};

class SMCServer {
public:
    // This bit is set in the tags of the server's own epoll events. The owner's tags must leave it clear.
    static constexpr std::uint64_t tagBit = std::uint64_t{1} << 63;

    // `listener` and `epoll` remain the owner's. They, `mac` and `faults` must outlive the server.
    SMCServer(int listener, int epoll, Mac& mac, AnswerFaults& faults);
    SMCServer(const SMCServer&) = delete;
    SMCServer& operator=(const SMCServer&) = delete;
    SMCServer(SMCServer&&) = delete;
    SMCServer& operator=(SMCServer&&) = delete;
    ~SMCServer();

    // False when the listener cannot be added to the epoll instance.
    [[nodiscard]] bool start();

    // Handles one epoll event that carries a tag of this server.
    void handleEvent(std::uint64_t tag, std::uint32_t events, Instant now);

    // Takes ownership of a connected SOCK_SEQPACKET socket, as if it had been accepted. False on failure; the
    // socket then remains the caller's.
    bool adopt(int socket);

    // The steady time at which the next delayed reply is due; absent when there is none.
    [[nodiscard]] std::optional<double> nextDueSeconds() const;

    // Sends the delayed replies that are due.
    void sendDue(Instant now);

    [[nodiscard]] const ServerCounters& counters() const { return counters_; }

private:
    // A reply that waits for its due time, or for room in the client's queue.
    struct Held {
        Reply reply;
        std::size_t length = sizeof(Reply);
        std::optional<double> dueSeconds; // absent = waits for room
    };

    struct Client {
        int socket = -1;
        std::uint32_t generation = 0; // distinguishes events of a former client of this slot
        Peer peer;
        bool holds = false;
        Held held;
    };

    void acceptClients();
    void answerNext(std::size_t slot, Instant now);
    void send(std::size_t slot, const Reply& reply, std::size_t length);
    void hold(std::size_t slot, const Held& held);
    void watch(std::size_t slot, std::uint32_t events);
    void close(std::size_t slot);
    void watchListener(bool watched);

    int listener_;
    int epoll_;
    Mac& mac_;
    AnswerFaults& faults_;
    ServerCounters counters_;
    std::vector<Client> clients_;
    std::vector<std::size_t> freeSlots_;
    std::size_t late_ = 0; // clients whose reply waits for its due time
    bool listenerWatched_ = false;
};

} // namespace simulated
