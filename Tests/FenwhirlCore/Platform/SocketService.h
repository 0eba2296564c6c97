// A service at a socket of its own folder that answers requests as a test says: the other side of a
// `SocketTransport`.
//
// Runs in a thread of its own, one connection after the other; a connection that ends makes room for the
// next. The script is called in that thread, once for each request, with its number counted from 0.

#pragma once

#include "FenwhirlCore/SMCRecord.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

class SocketService {
public:
    // How the service answers one request through the connected descriptor; false closes the connection.
    using Script = std::function<bool(int connection, const SMCParam& request, int number)>;

    explicit SocketService(Script script);
    ~SocketService();
    SocketService(const SocketService&) = delete;
    SocketService& operator=(const SocketService&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }

    [[nodiscard]] std::string folder() const { return path_.substr(0, path_.rfind('/')); }

    [[nodiscard]] int requests() const { return requests_; }

    [[nodiscard]] int connections() const { return connections_; }

    // Stops listening; a connection that is open stays.
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

// The 84 bytes of a reply.
[[nodiscard]] std::vector<std::uint8_t> replyBytes(std::uint32_t kernelReturn, const SMCParam& record);
// Sends one packet.
void sendPacket(int connection, const std::vector<std::uint8_t>& bytes);
// A good reply that echoes the request with the first value byte set, and keeps the connection.
bool answer(int connection, const SMCParam& request, std::uint8_t firstByte);
