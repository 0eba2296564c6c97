#include "Fenwhirl/Platform/Toolkit/AtomicFile.h"

#include "Fenwhirl/Platform/Toolkit/FileDescriptor.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// A name that no other writer uses: it is unique among the threads of this process and among running
// processes.
std::string temporaryName(const std::string& path) {
    static std::atomic<unsigned> counter = 0;
    return path + '.' + std::to_string(getpid()) + '-' + std::to_string(counter++) + ".new";
}

FileDescriptor openNew(const std::string& path) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    FileDescriptor file(::open(path.c_str(), flags, 0600));
    if (!file.isOpen() && errno == EEXIST && ::unlink(path.c_str()) == 0) {
        // A killed process that had the same id left this file behind.
        file = FileDescriptor(::open(path.c_str(), flags, 0600));
    }
    return file;
}

bool writeAll(int file, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t written = ::write(file, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool reachesDisk(int file) {
    while (::fsync(file) != 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

} // namespace

bool replaceFile(const std::string& path, std::string_view contents) {
    std::error_code notThere;
    // Resolves links, so that the rename replaces the file that a link points to and not the link.
    const std::filesystem::path resolved = std::filesystem::canonical(path, notThere);
    const std::string target = notThere ? path : resolved.string();
    const std::string temporary = temporaryName(target);
    FileDescriptor file = openNew(temporary);
    if (!file.isOpen()) {
        return false;
    }
    const bool written = writeAll(file.number(), contents) && reachesDisk(file.number());
    file.close();
    if (!written || std::rename(temporary.c_str(), target.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    // The rename has taken effect. To survive a power cut, the folder must reach the disk, too. Some file
    // systems cannot sync a folder; that is ignored, because nothing is lost by carrying on.
    const std::string folder = std::filesystem::path(target).parent_path().string();
    const FileDescriptor directory(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    static_cast<void>(directory.isOpen() && reachesDisk(directory.number()));
    return true;
}

} // namespace Fenwhirl
