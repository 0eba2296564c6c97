// The fields of `struct stat` whose names differ between systems. Only FileStatus's sources include this.

#pragma once

#include "Fenwhirl/Platform/Toolkit/FileStatus.h"

#include <sys/stat.h>

[[nodiscard]] FileStatus::Stamp modificationStamp(const struct stat& status);
[[nodiscard]] FileStatus::Stamp changeStamp(const struct stat& status);
