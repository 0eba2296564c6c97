// A service at a socket in a folder of its own, which answers requests as the test's script says: the peer of
// a `SocketTransport`.
//
// It runs in a thread of its own and serves one connection at a time; the next one is accepted when the
// current one ends. The script is called in that thread, once per request, with the request's number counted
// from 0.

#pragma once

#include "FenwhirlCore/SMCRecord.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace Fenwhirl {

class SocketService {
public:
    // Answers one request through the connected descriptor; returning false closes the connection.
    using Script = std::function<bool(int connection, const SMCParam& request, int number)>;

    explicit SocketService(Script script);
    ~SocketService();
    SocketService(const SocketService&) = delete;
    SocketService& operator=(const SocketService&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

    [[nodiscard]] std::string folder() const { return path_.substr(0, path_.rfind('/')); }

    [[nodiscard]] int requests() const { return requests_; }

    [[nodiscard]] int connections() const { return connections_; }

    // Stops listening. An open connection stays open.
    void stopListening();

private:
    void serve();
    void serveConnection(int connection);

    Script script_;
    std::string path_;
    int listener_ = -1;
    int wake_[2] = {-1, -1};
    std::atomic<int> requests_ = 0;
    std::atomic<int> connections_ = 0;
    std::thread thread_;
};

// The 84 bytes of a reply packet.
[[nodiscard]] std::vector<std::uint8_t> replyBytes(std::uint32_t kernelReturn, const SMCParam& record);
// Sends one packet.
void sendPacket(int connection, const std::vector<std::uint8_t>& bytes);
// Sends a successful reply that echoes the request with the first value byte set. Returns true, which keeps
// the connection open.
bool answer(int connection, const SMCParam& request, std::uint8_t firstByte);

} // namespace Fenwhirl
