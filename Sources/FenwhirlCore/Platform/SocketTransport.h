// The simulated Mac's controller, reached through a Unix-domain socket (Linux only).
//
// One request is one packet of 80 bytes, the input record; one reply is one packet of 84 bytes: the kernel's
// return code (0 is success), then the output record. A packet of any other size fails the call that it
// answers and no other.
//
// A reply that comes too late must never answer the next call: after a silence, as after the end of the
// stream, the connection is dead, and every further call fails at once.
//
// Trust: a process with effective user id 0 talks only to a service of uid 0, in a folder that belongs to
// root and that nobody else can write to; otherwise any user could answer the privileged helper.
//
// Cost: a call is one send and one receive, without allocation. The descriptor is never 0, 1 or 2 and is
// closed in child processes. Threads: as `SMCTransport`.

#pragma once

#include "FenwhirlCore/SMCTransport.h"

#include <string>

class SocketTransport final : public SMCTransport {
public:
    // The only path that programs use. Other paths are for tests, through this class alone.
    static constexpr const char* systemPath = "/run/fenwhirl/AppleSMC";
    static constexpr std::chrono::milliseconds systemSilenceLimit{2000};

    // Connects; null when there is no socket at the path, nobody answers there, or it cannot be trusted.
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
    // What a service has sent beside a packet of the wrong size.
    void dropWhatIsLeft();
    [[nodiscard]] bool sendRequest(const SMCParam& input);
    // Whether one packet of just this size came; the connection is dead when none came at all.
    [[nodiscard]] bool receivePacket(void* packet, std::size_t size);
    [[nodiscard]] bool waitUntil(std::chrono::steady_clock::time_point limit) const;
    [[nodiscard]] bool isAtEndOfStream() const;

    std::chrono::milliseconds silenceLimit_;
    int socket_ = -1;
    bool isMoreExpected_ = false; // a reply of the wrong size may have been sent in several packets
    bool isDead_ = false;
};
