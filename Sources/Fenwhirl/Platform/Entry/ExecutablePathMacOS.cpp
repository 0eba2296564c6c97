#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <mach-o/dyld.h>

namespace Fenwhirl {

std::optional<std::string> executablePath() {
    char raw[PATH_MAX] = {};
    std::uint32_t size = sizeof raw;
    if (_NSGetExecutablePath(raw, &size) != 0) {
        return std::nullopt;
    }
    char resolved[PATH_MAX] = {};
    if (realpath(raw, resolved) == nullptr) {
        return std::nullopt;
    }
    return std::string(resolved);
}

std::string applicationLibraryPath(std::string_view executable) {
    return installedBeside(executable, "Frameworks/libFenwhirlApp.dylib");
}

std::string guardPath(std::string_view executable) {
    return installedBeside(executable, "Helpers/fenwhirl-guard");
}

} // namespace Fenwhirl
