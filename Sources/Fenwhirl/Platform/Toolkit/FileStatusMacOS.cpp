#include "Fenwhirl/Platform/Toolkit/FileStatusSystem.h"

FileStatus::Stamp modificationStamp(const struct stat& status) {
    return {.seconds = status.st_mtimespec.tv_sec, .nanoseconds = status.st_mtimespec.tv_nsec};
}

FileStatus::Stamp changeStamp(const struct stat& status) {
    return {.seconds = status.st_ctimespec.tv_sec, .nanoseconds = status.st_ctimespec.tv_nsec};
}
