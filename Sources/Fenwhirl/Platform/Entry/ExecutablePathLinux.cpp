#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <array>
#include <climits>
#include <unistd.h>

namespace Fenwhirl {

std::optional<std::string> executablePath() {
    std::array<char, PATH_MAX> target = {};
    const ssize_t length = readlink("/proc/self/exe", target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= target.size() || target[0] != '/') {
        return std::nullopt;
    }
    return std::string(target.data(), static_cast<std::size_t>(length));
}

std::string applicationLibraryPath(std::string_view executable) {
    return installedBeside(executable, "lib/fenwhirl/libFenwhirlApp.so");
}

std::string guardPath(std::string_view executable) {
    return installedBeside(executable, "lib/fenwhirl/fenwhirl-guard");
}

} // namespace Fenwhirl
