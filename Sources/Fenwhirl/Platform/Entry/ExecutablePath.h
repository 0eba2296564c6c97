// Where this installation of the program lies. All paths are absolute and free of links.
//
// Part of the set-user-ID executable: needs the C library only. Thread-safe; nothing is cached.

#pragma once

#include <optional>
#include <string>
#include <string_view>

// The file that this process was started from; absent when the system cannot tell.
[[nodiscard]] std::optional<std::string> executablePath();

// A file of the installation that an executable belongs to, by its path from the folder above the
// executable's own (".../bin/Fenwhirl" and "lib/x" give ".../lib/x"): no ".." is left in the result.
[[nodiscard]] std::string installedBeside(std::string_view executable, std::string_view path);

// The application's library that belongs to an executable: Linux ../lib/fenwhirl/libFenwhirlApp.so, macOS
// ../Frameworks/libFenwhirlApp.dylib, each from the executable's folder.
[[nodiscard]] std::string applicationLibraryPath(std::string_view executable);

// The guard that belongs to an executable and hands the fans back when the application was killed or hangs:
// Linux ../lib/fenwhirl/fenwhirl-guard, macOS ../Helpers/fenwhirl-guard.
[[nodiscard]] std::string guardPath(std::string_view executable);
