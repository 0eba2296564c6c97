#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <array>
#include <climits>
#include <unistd.h>

namespace {

std::string besideLibraries(std::string_view executable, std::string_view file) {
    // Two names up: ".../bin/Fenwhirl" becomes "...", so that no ".." is left in the path.
    for (int name = 0; name < 2; ++name)
        executable = executable.substr(0, executable.rfind('/'));
    std::string path(executable);
    path += "/lib/fenwhirl/";
    path += file;
    return path;
}

} // namespace

std::optional<std::string> executablePath() {
    std::array<char, PATH_MAX> target = {};
    const ssize_t length = readlink("/proc/self/exe", target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= target.size() || target[0] != '/')
        return std::nullopt;
    return std::string(target.data(), static_cast<std::size_t>(length));
}

std::string applicationLibraryPath(std::string_view executable) {
    return besideLibraries(executable, "libFenwhirlApp.so");
}

std::optional<std::string> guardPath(std::string_view executable) {
    return besideLibraries(executable, "fenwhirl-guard");
}
