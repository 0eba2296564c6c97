// One installed helper: the file, what it answers, and how it comes there.
//
// HelperClient is this for the one place that the product uses; the class exists because nothing in it
// depends on that place.
//
// Threads: as HelperClient. Everything but the version cache is immutable after construction.

#pragma once

#include "Fenwhirl/Platform/ChildProcess.h"
#include "Fenwhirl/Platform/FileStatus.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class HelperInstallation {
public:
    struct Surroundings {
        std::string helperPath; // absolute
        // The executable that `install` copies, if it is known.
        std::function<std::optional<std::string>()> executablePath;
        // Runs a shell command as root with the user's consent; true when it ran and succeeded.
        std::function<bool(const std::string& command)> runAsAdministrator;
        // The group of id 0.
        std::string group;
        // Whether the copy is made beside its place and renamed, so that nobody ever sees half of it, also
        // while the helper runs; else it is written where it is to be, by the command that macOS has always
        // been given.
        bool installsByRename = false;
        // Whether this build may become a set-user-ID program. One with sanitizers may not: their run-time
        // library writes files as root wherever its environment says.
        bool isFitForRoot = true;
    };

    explicit HelperInstallation(Surroundings surroundings);

    [[nodiscard]] bool isInstalled() const;
    [[nodiscard]] std::optional<std::string> installedVersion();
    [[nodiscard]] bool run(const std::vector<std::string>& arguments) const;
    [[nodiscard]] std::string output(const std::vector<std::string>& arguments) const;
    [[nodiscard]] bool install() const;

    // The shell command that copies `executable` to the helper's path, whatever the umask of who runs it;
    // nothing when a path cannot stand between single quotes inside a double-quoted text.
    [[nodiscard]] std::optional<std::string> installCommand(std::string_view executable) const;

    // Whether only root decides what lies at the helper's path while the command runs. Folders that are
    // missing are made by root.
    [[nodiscard]] bool isPathRootControlled() const;

private:
    [[nodiscard]] std::optional<ChildResult> runHelper(const std::vector<std::string>& arguments,
                                                       ChildOutput output) const;

    Surroundings surroundings_;
    std::mutex versionLock_;
    // What a file of these stamps (contents, anything at all) has answered. Guarded by versionLock_.
    std::optional<std::pair<std::pair<FileStatus::Stamp, FileStatus::Stamp>, std::string>> knownVersion_;
};
