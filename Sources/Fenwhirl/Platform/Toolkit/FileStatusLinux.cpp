#include "Fenwhirl/Platform/Toolkit/FileStatusSystem.h"

FileStatus::Stamp modificationStamp(const struct stat& status) {
    return {.seconds = status.st_mtim.tv_sec, .nanoseconds = status.st_mtim.tv_nsec};
}

FileStatus::Stamp changeStamp(const struct stat& status) {
    return {.seconds = status.st_ctim.tv_sec, .nanoseconds = status.st_ctim.tv_nsec};
}
