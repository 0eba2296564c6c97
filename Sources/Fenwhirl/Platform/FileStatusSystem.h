// The fields of `stat` that each system names in its own way. Only FileStatus's sources include this.

#pragma once

#include "Fenwhirl/Platform/FileStatus.h"

#include <sys/stat.h>

[[nodiscard]] FileStatus::Stamp modificationStamp(const struct stat& status);
[[nodiscard]] FileStatus::Stamp changeStamp(const struct stat& status);
