// The simulated Mac's controller, reached through a Unix-domain socket (Linux only).
//
// One request is one packet of 80 bytes, the input record; one reply is one packet of 84 bytes: the kernel's
// return code (0 is success), then the output record. A call fails on any other reply and after the silence
// limit. After the end of the stream every further call fails at once.
//
// A reply that comes too late must never answer the next call: after a silence or a malformed reply the next
// call first replaces the connection by a fresh one, on which nothing is owed. The controller's state lives
// in the service, so nothing is lost with the old connection.
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
    open(std::string path = systemPath, std::chrono::milliseconds silenceLimit = systemSilenceLimit);

    ~SocketTransport() override;
    SocketTransport(const SocketTransport&) = delete;
    SocketTransport& operator=(const SocketTransport&) = delete;

    [[nodiscard]] std::optional<SMCParam> call(const SMCParam& input) override;

    [[nodiscard]] bool isDead() const override { return isDead_; }

private:
    enum class Connection { made, refused, busy };

    SocketTransport(std::string path, std::chrono::milliseconds silenceLimit);

    [[nodiscard]] Connection connect();
    [[nodiscard]] bool restoreIfStale();
    [[nodiscard]] bool sendRequest(const SMCParam& input);
    // Bytes of one received packet, 0 when there was none; marks the connection as stale or dead.
    [[nodiscard]] std::size_t receivePacket(void* packet, std::size_t size);
    [[nodiscard]] bool waitUntil(std::chrono::steady_clock::time_point limit) const;
    [[nodiscard]] bool isAtEndOfStream() const;
    void close();

    std::string path_;
    std::chrono::milliseconds silenceLimit_;
    int socket_ = -1;
    bool isStale_ = false; // a reply may still come that nobody waits for any more
    bool isDead_ = false;
};
