// The simulated Mac's controller, reached through a Unix-domain socket (Linux only).
//
// A request is one packet of 80 bytes, the input record. A reply is one packet of 84 bytes: the kernel's
// return code (0 is success), then the output record. A packet of any other size fails the call that it
// answers, and no other.
//
// A late reply must never answer the next call. After a time-out, as after the end of the stream, the
// connection is therefore dead, and every further call fails immediately.
//
// Trust: a process with effective user ID 0 talks only to a service that runs as user ID 0, through a socket
// in a folder that belongs to root and that nobody else can write to. Otherwise any user could answer the
// privileged helper.
//
// Cost: a call is one send and one receive, without allocation. The descriptor is never 0, 1 or 2 and is not
// inherited by child processes. Threads: as for `SMCTransport`.

#pragma once

#include "FenwhirlCore/SMCTransport.h"

#include <string>

namespace Fenwhirl {

class SocketTransport final : public SMCTransport {
public:
    // The only path that programs use. Other paths are for tests, which use this class directly.
    static constexpr const char* systemPath = "/run/fenwhirl/AppleSMC";
    static constexpr std::chrono::milliseconds systemSilenceLimit{2000};

    // Connects; null when there is no socket at the path, nobody answers there, or
    // the peer cannot be trusted.
    [[nodiscard]] static std::unique_ptr<SocketTransport>
    open(const std::string& path = systemPath, std::chrono::milliseconds silenceLimit = systemSilenceLimit);

    ~SocketTransport() override;
    SocketTransport(const SocketTransport&) = delete;
    SocketTransport& operator=(const SocketTransport&) = delete;

    [[nodiscard]] std::optional<SMCParam> call(const SMCParam& input) override;

    [[nodiscard]] bool isDead() const override { return isDead_; }

private:
    explicit SocketTransport(std::chrono::milliseconds silenceLimit);

    [[nodiscard]] bool connect(const std::string& path);
    // Discards what the service may have sent in addition to a packet of the wrong size.
    void discardPendingPackets();
    [[nodiscard]] bool sendRequest(const SMCParam& input);
    // Whether one packet of exactly this size arrived. When no packet arrives at all, the connection is dead.
    [[nodiscard]] bool receivePacket(void* packet, std::size_t size);
    [[nodiscard]] bool waitUntil(std::chrono::steady_clock::time_point limit) const;
    [[nodiscard]] bool isAtEndOfStream() const;

    std::chrono::milliseconds silenceLimit_;
    int socket_ = -1;
    bool isMoreExpected_ = false; // a reply of the wrong size may have been sent in several packets
    bool isDead_ = false;
};

} // namespace Fenwhirl
