// The socket at which clients find the simulated SMC: /run/fenwhirl/AppleSMC.
//
// Clients look nowhere else, so the path is fixed. Claiming it creates the folder (owned by root, 0755) when
// it is missing, takes a lock that prevents a second simulation, removes the socket of one that has died, and
// listens (0666: everybody may connect, but a write requires root). To run another simulation beside this
// one, or to run one without root rights, give it a mount namespace of its own.

#pragma once

#include <memory>
#include <string>

namespace simulated {

class ServiceSocket {
public:
    static constexpr const char* folder = "/run/fenwhirl";
    static constexpr const char* socketPath = "/run/fenwhirl/AppleSMC";
    static constexpr const char* lockPath = "/run/fenwhirl/simulated-mac.lock";

    // Claims the path. Null on failure; `error` then explains the reason and what to do about it.
    [[nodiscard]] static std::unique_ptr<ServiceSocket> claim(std::string& error);

    ServiceSocket(const ServiceSocket&) = delete;
    ServiceSocket& operator=(const ServiceSocket&) = delete;
    ServiceSocket(ServiceSocket&&) = delete;
    ServiceSocket& operator=(ServiceSocket&&) = delete;
    // Removes the socket, unless another one has replaced it, and releases the lock.
    ~ServiceSocket();

    // The listening socket: SOCK_SEQPACKET, non-blocking, owned by this object.
    [[nodiscard]] int listener() const { return listener_; }

private:
    ServiceSocket() = default;
    [[nodiscard]] bool takeLock(std::string& error);
    [[nodiscard]] bool listen(std::string& error);

    int lock_ = -1;
    int listener_ = -1;
    unsigned long long socketDevice_ = 0;
    unsigned long long socketInode_ = 0;
};

} // namespace simulated
