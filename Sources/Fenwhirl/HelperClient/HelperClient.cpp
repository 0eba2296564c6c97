#include "Fenwhirl/HelperClient/HelperClient.h"

#include "Fenwhirl/HelperClient/HelperInstallation.h"
#include "Fenwhirl/Platform/Administrator.h"
#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

namespace Fenwhirl::HelperClient {

namespace {

#ifdef FENWHIRL_SANITIZED
constexpr bool mayRunAsRoot = false;
#else
constexpr bool mayRunAsRoot = true;
#endif

HelperInstallation& installation() {
    static HelperInstallation shared({.helperPath = std::string(helperPath),
                                      .executablePath = executablePath,
                                      .runAsAdministrator = Fenwhirl::runAsAdministrator,
                                      .group = std::string(administratorGroup()),
                                      .installsByRename = administratorInstallsByRename(),
                                      .mayRunAsRoot = mayRunAsRoot});
    return shared;
}

} // namespace

bool isInstalled() {
    return installation().isInstalled();
}

std::optional<std::string> installedVersion() {
    return installation().installedVersion();
}

bool run(const std::vector<std::string>& arguments) {
    return installation().run(arguments);
}

std::string output(const std::vector<std::string>& arguments) {
    return installation().output(arguments);
}

bool runAsAdministrator(const std::string& command) {
    return Fenwhirl::runAsAdministrator(command);
}

bool install() {
    return installation().install();
}

std::optional<std::string> installCommand(std::string_view executablePath) {
    return installation().installCommand(executablePath);
}

// Contains no double quote and no backslash, as runAsAdministrator requires.
std::string removalCommand() {
    return "rm -f '" + std::string(helperPath) + "'";
}

} // namespace Fenwhirl::HelperClient
