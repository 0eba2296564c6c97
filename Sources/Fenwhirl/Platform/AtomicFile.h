// Replaces a file as a whole: after a crash or a power cut there is either the old one or the new one, never
// a part.
//
// The contents go to a file of their own beside it, reach the disk, and take the name; then the folder
// reaches the disk too. Readable by the user alone. A link is followed: what it points to is replaced. On
// failure the old file stays and nothing is left behind; a killed process can leave one file that ends in
// ".new".
//
// Thread-safe: writers of one path leave the contents of one of them.

#pragma once

#include <string>
#include <string_view>

// False when the file could not be replaced.
[[nodiscard]] bool replaceFile(const std::string& path, std::string_view contents);
