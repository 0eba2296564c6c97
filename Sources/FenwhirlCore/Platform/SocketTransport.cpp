#include "FenwhirlCore/Platform/SocketTransport.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

struct Reply {
    std::uint32_t kernelReturn;
    SMCParam record;
};

static_assert(sizeof(Reply) == 84);

constexpr int firstOwnDescriptor = 3; // lower numbers are the standard streams, even when they are closed

bool isFolderTrusted(const std::string& socketPath) {
    const std::string folder = socketPath.substr(0, socketPath.rfind('/'));

    struct stat status {};

    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == 0 &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool isPeerRoot(int connection) {
    ucred peer{};
    socklen_t size = sizeof(peer);
    return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == 0;
}

int makeSocket() {
    const int made = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (made < 0 || made >= firstOwnDescriptor) {
        return made;
    }
    const int moved = fcntl(made, F_DUPFD_CLOEXEC, firstOwnDescriptor);
    ::close(made);
    return moved;
}

bool limitSilence(int connection, std::chrono::milliseconds limit) {
    const timeval time{.tv_sec = limit.count() / 1000, .tv_usec = limit.count() % 1000 * 1000};
    return setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof(time)) == 0 &&
           setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof(time)) == 0;
}

} // namespace

SocketTransport::SocketTransport(std::chrono::milliseconds silenceLimit) : silenceLimit_(silenceLimit) {}

SocketTransport::~SocketTransport() {
    if (socket_ >= 0) {
        close(socket_);
    }
}

std::unique_ptr<SocketTransport> SocketTransport::open(const std::string& path,
                                                       std::chrono::milliseconds silenceLimit) {
    std::unique_ptr<SocketTransport> transport(new SocketTransport(silenceLimit));
    return transport->connect(path) ? std::move(transport) : nullptr;
}

bool SocketTransport::connect(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        return false;
    }
    std::memcpy(address.sun_path, path.data(), path.size());

    const bool mustBeTrusted = geteuid() == 0;
    if (mustBeTrusted && !isFolderTrusted(path)) {
        return false;
    }
    socket_ = makeSocket();
    if (socket_ < 0 || !limitSilence(socket_, silenceLimit_)) {
        return false;
    }
    int status = 0;
    do {
        status = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    } while (status != 0 && errno == EINTR);
    return status == 0 && (!mustBeTrusted || isPeerRoot(socket_));
}

std::optional<SMCParam> SocketTransport::call(const SMCParam& input) {
    if (isDead_) {
        return std::nullopt;
    }
    discardPendingPackets();
    Reply reply{};
    if (!sendRequest(input) || !receivePacket(&reply, sizeof(reply)) ||
        reply.kernelReturn != KernelReturn::success) {
        return std::nullopt;
    }
    return reply.record;
}

void SocketTransport::discardPendingPackets() {
    std::uint8_t byte = 0;
    while (isMoreExpected_ && recv(socket_, &byte, sizeof(byte), MSG_DONTWAIT) >= 0 && !isAtEndOfStream()) {
    }
    isMoreExpected_ = false;
}

bool SocketTransport::sendRequest(const SMCParam& input) {
    ssize_t count = 0;
    do {
        count = send(socket_, &input, sizeof(input), MSG_NOSIGNAL);
    } while (count < 0 && errno == EINTR);
    isDead_ = count != sizeof(input);
    return !isDead_;
}

bool SocketTransport::receivePacket(void* packet, std::size_t size) {
    const auto limit = std::chrono::steady_clock::now() + silenceLimit_;
    // MSG_TRUNC makes recv return the packet's real length, so that a packet that is too long is noticed.
    ssize_t count = recv(socket_, packet, size, MSG_TRUNC);
    // The time-out of the socket starts again with each call; after a signal only the
    // remaining time may be waited for.
    while (count < 0 && errno == EINTR && waitUntil(limit)) {
        count = recv(socket_, packet, size, MSG_TRUNC | MSG_DONTWAIT);
    }
    if (count == static_cast<ssize_t>(size)) {
        return true;
    }
    // Without this, a late answer to this call would be taken for the answer to the next one.
    isDead_ = count < 0 || (count == 0 && isAtEndOfStream());
    isMoreExpected_ = true;
    return false;
}

// Whether there is something to receive before the limit.
bool SocketTransport::waitUntil(std::chrono::steady_clock::time_point limit) const {
    while (true) {
        using std::chrono::milliseconds;
        const auto left = std::chrono::ceil<milliseconds>(limit - std::chrono::steady_clock::now()).count();
        pollfd waiting{.fd = socket_, .events = POLLIN, .revents = 0};
        const int ready = left > 0 ? poll(&waiting, 1, static_cast<int>(left)) : 0;
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
    }
}

// Distinguishes the end of the stream from an empty packet, for which recv returns 0 as well.
bool SocketTransport::isAtEndOfStream() const {
    pollfd state{.fd = socket_, .events = POLLRDHUP, .revents = 0};
    return poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLRDHUP | POLLERR)) != 0;
}

} // namespace Fenwhirl
