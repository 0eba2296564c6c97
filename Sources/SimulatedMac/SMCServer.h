// The server behind the socket: takes requests of any number of clients and answers them one by one.
//
// One request is one packet of 80 bytes, one reply one packet of 84. A packet of another length is answered
// as the kernel answers a call with a wrong structure size: return code 0xE00002C2 and an empty record; the
// connection lives on. A client that does not fetch its replies is not read from until it does.
//
// Driven by one epoll instance that its owner waits on; nothing here blocks, and answering a request
// allocates nothing. One thread.

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
    // Tags of its own epoll events have this bit set; the owner's events must not.
    static constexpr std::uint64_t tagBit = std::uint64_t{1} << 63;

    // `listener` and `epoll` stay the owner's and must outlive the server, as must `mac` and `faults`.
    SMCServer(int listener, int epoll, Mac& mac, AnswerFaults& faults);
    SMCServer(const SMCServer&) = delete;
    SMCServer& operator=(const SMCServer&) = delete;
    SMCServer(SMCServer&&) = delete;
    SMCServer& operator=(SMCServer&&) = delete;
    ~SMCServer();

    // False when the listener could not be watched.
    [[nodiscard]] bool start();

    // Deals with one epoll event that carries a tag of this server.
    void handleEvent(std::uint64_t tag, std::uint32_t events, Instant now);

    // Takes over a connected SOCK_SEQPACKET socket as if it had been accepted. False when it cannot.
    bool adopt(int socket);

    // The steady time at which the next late reply is due; absent when none is.
    [[nodiscard]] std::optional<double> nextDueSeconds() const;

    // Sends the late replies that are due.
    void sendDue(Instant now);

    [[nodiscard]] const ServerCounters& counters() const { return counters_; }

private:
    // A reply that waits: for its time, or for room in the client's queue.
    struct Held {
        Reply reply;
        std::size_t length = sizeof(Reply);
        std::optional<double> dueSeconds; // absent = waits for room
    };

    struct Client {
        int socket = -1;
        std::uint32_t generation = 0; // tells an old event of this slot from one of its present client
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
    std::size_t late_ = 0; // clients whose held reply waits for its time
    bool listenerWatched_ = false;
};

} // namespace simulated
