#include "Fenwhirl/Platform/Toolkit/FileStatus.h"

#include "Fenwhirl/Platform/Toolkit/FileStatusSystem.h"

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
