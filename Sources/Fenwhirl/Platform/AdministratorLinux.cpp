#include "Fenwhirl/Platform/AdministratorLinux.h"

#include "Fenwhirl/Platform/Administrator.h"

#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Only selects which explanation the dialog shows. The activator itself decides what it is willing to run.
bool isRemoval(const std::string& command) {
    return command.rfind("rm ", 0) == 0;
}

} // namespace

std::vector<std::string> administratorInvocation(const std::string& command, bool isRoot,
                                                 std::string_view executable, const std::string& activator) {
    if (isRoot) {
        return {"/bin/sh", "-c", command};
    }
    if (executable == PackagedAdministrator::program && access(activator.c_str(), X_OK) == 0) {
        return {"/usr/bin/pkexec", activator, isRemoval(command) ? "deactivate" : "activate", command};
    }
    return {"/usr/bin/pkexec", "/bin/sh", "-c", command};
}

std::vector<std::string> administratorInvocation(const std::string& command, bool isRoot) {
    std::error_code failure;
    const std::string executable = std::filesystem::read_symlink("/proc/self/exe", failure).string();
    return administratorInvocation(command, isRoot, executable,
                                   std::string(PackagedAdministrator::activator));
}

std::string_view administratorGroup() {
    return "root";
}

bool administratorInstallsByRename() {
    return true;
}

} // namespace Fenwhirl
