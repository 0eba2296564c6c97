// The place in the file system where the simulated SMC is found: /run/fenwhirl/AppleSMC.
//
// Clients look nowhere else, so neither does this program. Claiming the place makes the folder (root's, 0755)
// when it is missing, takes a lock that keeps a second simulation away, clears away the socket of one that
// died, and listens (0666: whoever may connect, a write asks for root). A simulation of one's own, beside a
// running one or without being root, lives in a mount namespace of its own.

#pragma once

#include <memory>
#include <string>

namespace simulated {

class SocketPlace {
public:
    static constexpr const char* folder = "/run/fenwhirl";
    static constexpr const char* socketPath = "/run/fenwhirl/AppleSMC";
    static constexpr const char* lockPath = "/run/fenwhirl/simulated-mac.lock";

    // Takes the place. Null when that is impossible; `error` then tells a person why and what helps.
    [[nodiscard]] static std::unique_ptr<SocketPlace> claim(std::string& error);

    SocketPlace(const SocketPlace&) = delete;
    SocketPlace& operator=(const SocketPlace&) = delete;
    SocketPlace(SocketPlace&&) = delete;
    SocketPlace& operator=(SocketPlace&&) = delete;
    // Removes the socket, if it is still this one, and gives the lock back.
    ~SocketPlace();

    // The listening socket: SOCK_SEQPACKET, non-blocking, owned by this object.
    [[nodiscard]] int listener() const { return listener_; }

private:
    SocketPlace() = default;
    [[nodiscard]] bool takeLock(std::string& error);
    [[nodiscard]] bool listen(std::string& error);

    int lock_ = -1;
    int listener_ = -1;
    unsigned long long socketDevice_ = 0;
    unsigned long long socketInode_ = 0;
};

} // namespace simulated
