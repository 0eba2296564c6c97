#include "SimulatedMac/SMCServer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace simulated {

namespace {

constexpr std::uint64_t listenerTag = SMCServer::tagBit | 0x7FFFFFFFU;
constexpr unsigned generationShift = 32;
constexpr std::uint32_t generationMask = 0x3FFFFFFFU;

std::uint64_t tagOf(std::size_t slot, std::uint32_t generation) {
    return SMCServer::tagBit | (std::uint64_t{generation} << generationShift) | slot;
}

} // namespace

SMCServer::SMCServer(int listener, int epoll, Mac& mac, AnswerFaults& faults)
    : listener_(listener)
    , epoll_(epoll)
    , mac_(mac)
    , faults_(faults) {}

SMCServer::~SMCServer() {
    for (std::size_t slot = 0; slot < clients_.size(); ++slot) {
        close(slot);
    }
}

bool SMCServer::start() {
    epoll_event event{.events = EPOLLIN, .data = {.u64 = listenerTag}};
    listenerWatched_ = ::epoll_ctl(epoll_, EPOLL_CTL_ADD, listener_, &event) == 0;
    return listenerWatched_;
}

void SMCServer::watchListener(bool watched) {
    epoll_event event{.events = watched ? static_cast<std::uint32_t>(EPOLLIN) : 0U,
                      .data = {.u64 = listenerTag}};
    ::epoll_ctl(epoll_, EPOLL_CTL_MOD, listener_, &event);
    listenerWatched_ = watched;
}

void SMCServer::handleEvent(std::uint64_t tag, std::uint32_t events, Instant now) {
    if (tag == listenerTag) {
        acceptClients();
        return;
    }
    const std::size_t slot = tag & 0xFFFFFFFFU;
    const auto generation = static_cast<std::uint32_t>(tag >> generationShift) & generationMask;
    if (slot >= clients_.size() || clients_[slot].socket < 0 || clients_[slot].generation != generation) {
        return;
    }
    Client& client = clients_[slot];
    if (!client.holds) {
        answerNext(slot, now);
    } else if ((events & (EPOLLHUP | EPOLLERR)) != 0) {
        close(slot);
    } else if (!client.held.dueSeconds && (events & EPOLLOUT) != 0) {
        client.holds = false;
        watch(slot, EPOLLIN);
        send(slot, client.held.reply, client.held.length);
    }
}

void SMCServer::acceptClients() {
    for (;;) {
        const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (socket < 0) {
            // Out of descriptors: further clients wait in the queue until one disconnects. Until then the
            // listener must not be watched, because it would stay readable and make the loop spin.
            if (errno == EMFILE || errno == ENFILE || errno == ENOMEM || errno == ENOBUFS) {
                watchListener(false);
            }
            if (errno == ECONNABORTED || errno == EINTR) {
                continue;
            }
            return;
        }
        if (!adopt(socket)) {
            ::close(socket);
        }
    }
}

bool SMCServer::adopt(int socket) {
    ucred credentials{};
    socklen_t length = sizeof(credentials);
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0) {
        return false;
    }
    if (freeSlots_.empty()) {
        freeSlots_.push_back(clients_.size());
        clients_.emplace_back();
    }
    const std::size_t slot = freeSlots_.back();
    Client& client = clients_[slot];
    const std::uint32_t generation = (client.generation + 1) & generationMask;
    epoll_event event{.events = EPOLLIN, .data = {.u64 = tagOf(slot, generation)}};
    if (::epoll_ctl(epoll_, EPOLL_CTL_ADD, socket, &event) != 0) {
        return false;
    }
    freeSlots_.pop_back();
    client = Client{.socket = socket,
                    .generation = generation,
                    .peer = {.process = credentials.pid, .user = credentials.uid},
                    .holds = false,
                    .held = {}};
    ++counters_.clients;
    ++counters_.connections;
    return true;
}

void SMCServer::answerNext(std::size_t slot, Instant now) {
    Client& client = clients_[slot];
    Fenwhirl::SMCParam request{};
    // MSG_TRUNC returns the packet's real length, even if only part of it fits.
    const ssize_t length = ::recv(client.socket, &request, sizeof(request), MSG_DONTWAIT | MSG_TRUNC);
    if (length <= 0) {
        if (length == 0 || (errno != EAGAIN && errno != EINTR)) {
            close(slot);
        }
        return;
    }
    ++counters_.requests;
    if (static_cast<std::size_t>(length) != sizeof(request)) {
        send(slot, Reply{.kernelReturn = kernelBadArgument, .record = {}}, sizeof(Reply));
        return;
    }
    const AnswerFault fault = faults_.decide(request);
    switch (fault.kind) {
    case FaultKind::none:
        send(slot, mac_.handle(request, client.peer, now), sizeof(Reply));
        break;
    case FaultKind::silence:
        break;
    case FaultKind::hangUp:
        close(slot);
        break;
    case FaultKind::wrongLength:
        send(slot, mac_.handle(request, client.peer, now), fault.argument);
        break;
    case FaultKind::kernel:
        send(slot, Reply{.kernelReturn = fault.argument, .record = {}}, sizeof(Reply));
        break;
    case FaultKind::result: {
        Reply reply = mac_.handle(request, client.peer, now);
        reply.record.result = static_cast<std::uint8_t>(fault.argument);
        send(slot, reply, sizeof(Reply));
        break;
    }
    case FaultKind::delay:
        hold(slot, {.reply = mac_.handle(request, client.peer, now),
                    .length = sizeof(Reply),
                    .dueSeconds = now.steadySeconds + fault.argument / 1000.0});
        break;
    }
}

void SMCServer::send(std::size_t slot, const Reply& reply, std::size_t length) {
    std::array<char, AnswerFaults::longestReply> packet; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const void* data = &reply;
    if (length > sizeof(Reply)) {
        packet.fill(0);
        std::memcpy(packet.data(), &reply, sizeof(Reply));
        data = packet.data();
    }
    const ssize_t sent = ::send(clients_[slot].socket, data, length, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent >= 0) {
        return;
    }
    if (errno == EAGAIN || errno == ENOBUFS) {
        hold(slot, {.reply = reply, .length = length, .dueSeconds = {}});
    } else {
        close(slot);
    }
}

void SMCServer::hold(std::size_t slot, const Held& held) {
    Client& client = clients_[slot];
    client.holds = true;
    client.held = held;
    late_ += held.dueSeconds ? 1U : 0U;
    // Do not read the client's next request meanwhile: the SMC serves one request of a caller at a time.
    watch(slot, held.dueSeconds ? 0U : static_cast<std::uint32_t>(EPOLLOUT));
}

void SMCServer::watch(std::size_t slot, std::uint32_t events) {
    const Client& client = clients_[slot];
    epoll_event event{.events = events, .data = {.u64 = tagOf(slot, client.generation)}};
    ::epoll_ctl(epoll_, EPOLL_CTL_MOD, client.socket, &event);
}

void SMCServer::close(std::size_t slot) {
    Client& client = clients_[slot];
    if (client.socket < 0) {
        return;
    }
    late_ -= client.holds && client.held.dueSeconds ? 1U : 0U;
    ::close(client.socket);
    client.socket = -1;
    client.holds = false;
    freeSlots_.push_back(slot);
    --counters_.clients;
    if (!listenerWatched_) {
        watchListener(true);
    }
}

std::optional<double> SMCServer::nextDueSeconds() const {
    std::optional<double> next;
    if (late_ == 0) {
        return next;
    }
    for (const Client& client : clients_) {
        if (client.socket >= 0 && client.holds && client.held.dueSeconds) {
            next = std::min(next.value_or(*client.held.dueSeconds), *client.held.dueSeconds);
        }
    }
    return next;
}

void SMCServer::sendDue(Instant now) {
    if (late_ == 0) {
        return;
    }
    for (std::size_t slot = 0; slot < clients_.size(); ++slot) {
        Client& client = clients_[slot];
        if (client.socket >= 0 && client.holds && client.held.dueSeconds &&
            *client.held.dueSeconds <= now.steadySeconds) {
            client.holds = false;
            --late_;
            watch(slot, EPOLLIN);
            // A copy, because send() may hold the reply again.
            const Held held = client.held;
            send(slot, held.reply, held.length);
        }
    }
}

} // namespace simulated
