#include "Fenwhirl/Platform/FileStatusSystem.h"

FileStatus::Stamp modificationStamp(const struct stat& status) {
    return {.seconds = status.st_mtim.tv_sec, .nanoseconds = status.st_mtim.tv_nsec};
}
