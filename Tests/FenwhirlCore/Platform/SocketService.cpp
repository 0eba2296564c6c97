#include "FenwhirlCore/Platform/SocketService.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

namespace {

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::abort();
}

// Waits until the descriptor is readable. Returns false once the write end of the pipe `wake` has been
// closed.
bool isReadable(int descriptor, int wake) {
    std::array<pollfd, 2> waiting = {{{descriptor, POLLIN, 0}, {wake, POLLIN, 0}}};
    return poll(waiting.data(), waiting.size(), -1) > 0 && waiting[1].revents == 0;
}

} // namespace

SocketService::SocketService(Script script) : script_(std::move(script)) {
    char folder[] = "/tmp/fenwhirl-test-XXXXXX";
    // mkdtemp makes a private folder, but some tests connect as another user.
    if (mkdtemp(folder) == nullptr || chmod(folder, 0755) != 0 || pipe(wake_) != 0) {
        fail("folder");
    }
    path_ = std::string(folder) + "/AppleSMC";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path_.data(), path_.size());
    listener_ = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listener_, 8) != 0) {
        fail("listen");
    }
    thread_ = std::thread([this] { serve(); });
}

SocketService::~SocketService() {
    // Ends the thread, see isReadable.
    ::close(wake_[1]);
    thread_.join();
    ::close(wake_[0]);
    ::close(listener_);
    std::error_code ignored;
    std::filesystem::remove_all(folder(), ignored);
}

void SocketService::stopListening() {
    shutdown(listener_, SHUT_RDWR);
    unlink(path_.c_str());
}

void SocketService::serve() {
    while (isReadable(listener_, wake_[0])) {
        const int connection = accept(listener_, nullptr, nullptr);
        if (connection < 0) {
            return;
        }
        ++connections_;
        serveConnection(connection);
        ::close(connection);
    }
}

void SocketService::serveConnection(int connection) {
    while (isReadable(connection, wake_[0])) {
        SMCParam request{};
        if (recv(connection, &request, sizeof(request), 0) != sizeof(request)) {
            return;
        }
        if (!script_(connection, request, requests_++)) {
            return;
        }
    }
}

std::vector<std::uint8_t> replyBytes(std::uint32_t kernelReturn, const SMCParam& record) {
    std::vector<std::uint8_t> bytes(sizeof(kernelReturn) + sizeof(record));
    std::memcpy(bytes.data(), &kernelReturn, sizeof(kernelReturn));
    std::memcpy(bytes.data() + sizeof(kernelReturn), &record, sizeof(record));
    return bytes;
}

void sendPacket(int connection, const std::vector<std::uint8_t>& bytes) {
    // The client may have left; SIGPIPE would end the test program.
    send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

bool answer(int connection, const SMCParam& request, std::uint8_t firstByte) {
    SMCParam record = request;
    record.bytes[0] = firstByte;
    sendPacket(connection, replyBytes(KernelReturn::success, record));
    return true;
}

} // namespace Fenwhirl
