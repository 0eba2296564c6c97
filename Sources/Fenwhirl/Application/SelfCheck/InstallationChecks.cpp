#include "Fenwhirl/Application/SelfCheck/InstallationChecks.h"

#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

std::optional<std::string> resolved(const std::string& path) {
    std::array<char, PATH_MAX> result{};
    return realpath(path.c_str(), result.data()) != nullptr ? std::optional(std::string(result.data()))
                                                            : std::nullopt;
}

QString shown(const std::string& path) {
    return QString::fromStdString(path);
}

CheckResult checkExecutable(const Installation& installation) {
    return installation.executable ? CheckResult::pass(shown(*installation.executable))
                                   : CheckResult::fail(QStringLiteral("the system does not tell its path"));
}

CheckResult checkLibrary(const Installation& installation) {
    if (!installation.executable || !installation.library) {
        return CheckResult::fail(QStringLiteral("the system does not tell its path"));
    }
    const std::string expected = applicationLibraryPath(*installation.executable);
    if (resolved(expected) != resolved(*installation.library)) {
        return CheckResult::fail(
            QStringLiteral("%1 instead of %2").arg(shown(*installation.library), shown(expected)));
    }
    return CheckResult::pass(shown(expected));
}

CheckResult checkGuard(const Installation& installation) {
    if (!installation.executable) {
        return CheckResult::fail(QStringLiteral("the executable is unknown"));
    }
    const std::string guard = guardPath(*installation.executable);
    return access(guard.c_str(), X_OK) == 0
               ? CheckResult::pass(shown(guard))
               : CheckResult::fail(shown(guard) + QStringLiteral(" cannot be started"));
}

} // namespace

Installation Installation::present() {
    Dl_info info{};
    const bool isKnown = dladdr(reinterpret_cast<const void*>(&installationChecks), &info) != 0;
    return {.executable = executablePath(),
            .library = isKnown && info.dli_fname != nullptr ? std::optional<std::string>(info.dli_fname)
                                                            : std::nullopt};
}

std::vector<SelfCheck> installationChecks(const Installation& installation) {
    return {{QStringLiteral("executable"), [installation] { return checkExecutable(installation); }},
            {QStringLiteral("application library"), [installation] { return checkLibrary(installation); }},
            {QStringLiteral("guard"), [installation] { return checkGuard(installation); }}};
}

} // namespace Fenwhirl
