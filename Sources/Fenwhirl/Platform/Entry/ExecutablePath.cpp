#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

namespace Fenwhirl {

std::string installedBeside(std::string_view executable, std::string_view path) {
    for (int name = 0; name < 2; ++name) {
        executable = executable.substr(0, executable.rfind('/'));
    }
    std::string file(executable);
    file += '/';
    file += path;
    return file;
}

} // namespace Fenwhirl
