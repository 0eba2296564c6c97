#include "Fenwhirl/Platform/Toolkit/FileStatus.h"

#include <sys/stat.h>

namespace Fenwhirl {

namespace {

FileStatus::Stamp stamp(const timespec& time) {
    return {.seconds = time.tv_sec, .nanoseconds = time.tv_nsec};
}

// Linux and macOS have different names for these two fields of `struct stat`.

template <typename Status>
FileStatus::Stamp modificationStamp(const Status& status) {
    if constexpr (requires { status.st_mtim; }) {
        return stamp(status.st_mtim);
    } else {
        return stamp(status.st_mtimespec);
    }
}

template <typename Status>
FileStatus::Stamp changeStamp(const Status& status) {
    if constexpr (requires { status.st_ctim; }) {
        return stamp(status.st_ctim);
    } else {
        return stamp(status.st_ctimespec);
    }
}

} // namespace

std::optional<FileStatus> fileStatus(const std::string& path) {
    struct stat found = {};
    if (lstat(path.c_str(), &found) != 0) {
        return std::nullopt;
    }
    auto kind = FileStatus::Kind::other;
    if (S_ISREG(found.st_mode)) {
        kind = FileStatus::Kind::regular;
    } else if (S_ISDIR(found.st_mode)) {
        kind = FileStatus::Kind::directory;
    } else if (S_ISLNK(found.st_mode)) {
        kind = FileStatus::Kind::symbolicLink;
    }
    return FileStatus{.kind = kind,
                      .owner = found.st_uid,
                      .permissions = found.st_mode & 07777U,
                      .modified = modificationStamp(found),
                      .changed = changeStamp(found)};
}

} // namespace Fenwhirl
