// Replaces a file atomically: after a crash or a power cut either the old or the new file is there, never a
// part of one.
//
// The contents are written to a temporary file in the same folder, which is synced to disk and renamed; then
// the folder is synced, too. The new file is readable by the user alone. A symbolic link is followed: the
// file that it points to is replaced. On failure the old file stays and nothing is left behind. A process
// that is killed can leave one file whose name ends in ".new".
//
// Thread-safe: when several writers replace one path, the result is the contents of one of them.

#pragma once

#include <string>
#include <string_view>

namespace Fenwhirl {

// False when the file could not be replaced.
[[nodiscard]] bool replaceFile(const std::string& path, std::string_view contents);

} // namespace Fenwhirl
