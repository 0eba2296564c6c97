// The paths of this installation of the program. All paths are absolute and free of symbolic links.
//
// Part of the set-user-ID executable, so it uses the C library only. Thread-safe; nothing is cached.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Fenwhirl {

// The file that this process was started from; absent when the system cannot report it.
[[nodiscard]] std::optional<std::string> executablePath();

// A file of the installation that an executable belongs to. `path` is relative to the parent of the
// executable's folder: ".../bin/Fenwhirl" and "lib/x" give ".../lib/x". The result contains no "..".
[[nodiscard]] std::string installedBeside(std::string_view executable, std::string_view path);

// The application library that belongs to an executable. Relative to the executable's folder it is
// ../lib/fenwhirl/libFenwhirlApp.so on Linux and ../Frameworks/libFenwhirlApp.dylib on macOS.
[[nodiscard]] std::string applicationLibraryPath(std::string_view executable);

// The guard that belongs to an executable; it hands the fans back when the application was killed or hangs.
// On Linux it is ../lib/fenwhirl/fenwhirl-guard, on macOS ../Helpers/fenwhirl-guard.
[[nodiscard]] std::string guardPath(std::string_view executable);

} // namespace Fenwhirl
