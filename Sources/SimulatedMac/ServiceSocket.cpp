#include "SimulatedMac/ServiceSocket.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace simulated {

namespace {

std::string failure(std::string_view what) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this program has one thread
    return std::string(what) + ": " + std::strerror(errno);
}

sockaddr_un socketAddress() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string_view path = ServiceSocket::socketPath;
    path.copy(static_cast<char*>(address.sun_path), sizeof(address.sun_path) - 1);
    return address;
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address); // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

bool prepareFolder(std::string& error) {
    if (::geteuid() != 0) {
        error = "has to run as root, like the SMC it stands for.\n"
                "An ordinary user can give it a small world of its own:\n"
                "  unshare -rm sh -c 'mount -t tmpfs tmpfs /run && exec simulated-mac'";
        return false;
    }
    // The folder's mode must not depend on the caller's umask.
    const mode_t before = ::umask(0);
    const int made = ::mkdir(ServiceSocket::folder, 0755);
    ::umask(before);
    if (made != 0 && errno != EEXIST) {
        error = failure(std::string("cannot make ") + ServiceSocket::folder) +
                "\nIn a user namespace, first mount something of its own there: mount -t tmpfs tmpfs /run";
        return false;
    }

    struct stat status {};

    if (::lstat(ServiceSocket::folder, &status) != 0) {
        error = failure(ServiceSocket::folder);
        return false;
    }
    if (!S_ISDIR(status.st_mode) || status.st_uid != 0 || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        error = std::string(ServiceSocket::folder) +
                " is not a folder that belongs to root and is writable by "
                "nobody else; clients would not trust it";
        return false;
    }
    return true;
}

std::string lockHolder(int lock) {
    std::array<char, 32> text{};
    const ssize_t length = ::pread(lock, text.data(), text.size() - 1, 0);
    std::string holder(text.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    holder.erase(holder.find_last_not_of('\n') + 1);
    return holder;
}

// Removes the socket of a simulation that did not shut down properly. False when something else occupies the
// path.
bool clearLeftover(std::string& error) {
    struct stat status {};

    if (::lstat(ServiceSocket::socketPath, &status) != 0) {
        if (errno == ENOENT) {
            return true;
        }
        error = failure(ServiceSocket::socketPath);
        return false;
    }
    if (!S_ISSOCK(status.st_mode)) {
        error = std::string(ServiceSocket::socketPath) + " exists and is no socket";
        return false;
    }
    // The kernel refuses a connection only if no process listens on the socket any more.
    const int probe = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const sockaddr_un address = socketAddress();
    const int connected = ::connect(probe, generic(address), sizeof(address));
    const bool refused = connected != 0 && errno == ECONNREFUSED;
    ::close(probe);
    if (!refused) {
        error = std::string("another program already serves ") + ServiceSocket::socketPath;
        return false;
    }
    if (::unlink(ServiceSocket::socketPath) != 0) {
        error = failure(std::string("cannot remove ") + ServiceSocket::socketPath);
        return false;
    }
    return true;
}

} // namespace

std::unique_ptr<ServiceSocket> ServiceSocket::claim(std::string& error) {
    std::unique_ptr<ServiceSocket> place(new ServiceSocket);
    if (!prepareFolder(error) || !place->takeLock(error) || !clearLeftover(error) || !place->listen(error)) {
        return nullptr;
    }
    return place;
}

bool ServiceSocket::takeLock(std::string& error) {
    for (;;) {
        lock_ = ::open(lockPath, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (lock_ < 0) {
            error = failure(std::string("cannot open ") + lockPath);
            return false;
        }
        if (::flock(lock_, LOCK_EX | LOCK_NB) != 0) {
            error = "another simulated Mac is already running (process " + lockHolder(lock_) + ")";
            ::close(lock_);
            lock_ = -1;
            return false;
        }

        // The previous holder may have removed the file between the two calls above. The lock is then on a
        // file that nobody else will ever open, so try again.
        struct stat opened {};

        struct stat present {};

        if (::fstat(lock_, &opened) == 0 && ::lstat(lockPath, &present) == 0 &&
            opened.st_dev == present.st_dev && opened.st_ino == present.st_ino) {
            break;
        }
        ::close(lock_);
        lock_ = -1;
    }
    const std::string process = std::to_string(::getpid()) + "\n";
    if (::ftruncate(lock_, 0) != 0 ||
        ::pwrite(lock_, process.data(), process.size(), 0) != static_cast<ssize_t>(process.size())) {
        error = failure(std::string("cannot write ") + lockPath);
        return false;
    }
    return true;
}

bool ServiceSocket::listen(std::string& error) {
    listener_ = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const sockaddr_un address = socketAddress();

    struct stat status {};

    // Nobody can connect before listen(), so no client ever sees the socket with its initial, narrower mode.
    if (listener_ < 0 || ::bind(listener_, generic(address), sizeof(address)) != 0 ||
        ::lstat(socketPath, &status) != 0) {
        error = failure(std::string("cannot make ") + socketPath);
        return false;
    }
    socketDevice_ = status.st_dev;
    socketInode_ = status.st_ino;
    if (::chmod(socketPath, 0666) != 0 || ::listen(listener_, SOMAXCONN) != 0) {
        error = failure(std::string("cannot open ") + socketPath + " to everybody");
        return false;
    }
    return true;
}

ServiceSocket::~ServiceSocket() {
    struct stat status {};

    if (socketInode_ != 0 && ::lstat(socketPath, &status) == 0 && status.st_dev == socketDevice_ &&
        status.st_ino == socketInode_) {
        ::unlink(socketPath);
    }
    if (listener_ >= 0) {
        ::close(listener_);
    }
    if (lock_ >= 0) {
        // Removed while the lock is still held; takeLock() in another process detects this.
        ::unlink(lockPath);
        ::close(lock_);
    }
}

} // namespace simulated
