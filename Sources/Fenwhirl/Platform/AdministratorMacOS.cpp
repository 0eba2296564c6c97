#include "Fenwhirl/Platform/Administrator.h"

namespace Fenwhirl {

std::vector<std::string> administratorInvocation(const std::string& command, bool) {
    return scriptedAdministratorInvocation(command);
}

std::string_view administratorGroup() {
    return "wheel";
}

bool administratorInstallsByRename() {
    return false;
}

} // namespace Fenwhirl
