// One installed helper: its file, its answers, and its installation.
//
// HelperClient is an instance of this class for the product's path. The class exists separately because
// nothing in it depends on that path.
//
// Threads: as for HelperClient. Everything but the version cache is immutable after construction.

#pragma once

#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"
#include "Fenwhirl/Platform/Toolkit/FileStatus.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Fenwhirl {

class HelperInstallation {
public:
    // What `output` and `installedVersion` return when the helper cannot be started. It is part of the diagnostic
    // report, and therefore French in every language.
    static constexpr std::string_view launchFailureText = "Impossible de lancer l'assistant.";

    struct Surroundings {
        std::string helperPath; // absolute
        // The executable that `install` copies, if known.
        std::function<std::optional<std::string>()> executablePath;
        // Runs a shell command as root with the user's consent; true when it ran and succeeded.
        std::function<bool(const std::string& command)> runAsAdministrator;
        // The group of id 0.
        std::string group;
        // True: the copy is written beside its final path and renamed, so that a partial file is never
        // visible, even while the helper runs. False: the file is written in place, by the command that has
        // always been used on macOS.
        bool installsByRename = false;
        // Whether this build may become a set-user-ID program. A sanitizer build may not: the sanitizer's
        // run-time library, running as root, would write files wherever its environment says.
        bool mayRunAsRoot = true;
    };

    explicit HelperInstallation(Surroundings surroundings);

    [[nodiscard]] bool isInstalled() const;
    [[nodiscard]] std::optional<std::string> installedVersion();
    [[nodiscard]] bool run(const std::vector<std::string>& arguments) const;
    [[nodiscard]] std::string output(const std::vector<std::string>& arguments) const;
    [[nodiscard]] bool install() const;

    // The shell command that copies `executable` to the helper's path, independently of the umask; absent
    // when a path cannot be put in single quotes inside a double-quoted text.
    [[nodiscard]] std::optional<std::string> installCommand(std::string_view executable) const;

    // Whether only root can change what is at the helper's path while the command runs. Missing folders do
    // not matter: root creates them.
    [[nodiscard]] bool isPathRootControlled() const;

private:
    [[nodiscard]] std::optional<ChildResult> runHelper(const std::vector<std::string>& arguments,
                                                       ChildOutput output) const;

    Surroundings surroundings_;
    std::mutex versionLock_;
    // The file's stamps (contents changed, anything changed) and the answer it gave. Guarded by versionLock_.
    std::optional<std::pair<std::pair<FileStatus::Stamp, FileStatus::Stamp>, std::string>> knownVersion_;
};

} // namespace Fenwhirl
