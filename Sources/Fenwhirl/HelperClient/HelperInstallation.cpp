#include "Fenwhirl/HelperClient/HelperInstallation.h"

#include "Fenwhirl/HelperClient/HelperRun.h"
#include "Fenwhirl/HelperClient/OutputText.h"

namespace Fenwhirl {

namespace {

constexpr std::uint32_t root = 0;

std::vector<std::string> helperArguments(const std::vector<std::string>& command) {
    std::vector<std::string> arguments = {"--helper"};
    arguments.insert(arguments.end(), command.begin(), command.end());
    return arguments;
}

std::pair<FileStatus::Stamp, FileStatus::Stamp> stampsOf(const FileStatus& status) {
    return {status.modified, status.changed};
}

std::string parentFolder(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

bool isQuotable(std::string_view path) {
    return !path.empty() && path.find_first_of(std::string_view("'\"\\\n\r\0", 6)) == std::string_view::npos;
}

} // namespace

HelperInstallation::HelperInstallation(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

bool HelperInstallation::isInstalled() const {
    const auto status = fileStatus(surroundings_.helperPath);
    return status && status->kind != FileStatus::Kind::symbolicLink && status->isSetUserID() &&
           status->owner == root;
}

std::optional<std::string> HelperInstallation::installedVersion() {
    const auto status = fileStatus(surroundings_.helperPath);
    if (!status) {
        return std::nullopt;
    }
    const std::lock_guard lock(versionLock_);
    if (knownVersion_ && knownVersion_->first == stampsOf(*status)) {
        return knownVersion_->second;
    }
    const auto result = runHelper({"version"}, ChildOutput::capture);
    // This may be a temporary shortage of resources: not cached, so that the next call tries again.
    if (!result || !result->exitStatus) {
        return std::string(launchFailureText);
    }
    knownVersion_.emplace(stampsOf(*status), trimmed(repairedUTF8(result->output)));
    return knownVersion_->second;
}

std::optional<ChildResult> HelperInstallation::runHelper(const std::vector<std::string>& arguments,
                                                         ChildOutput output) const {
    const HelperRun run;
    if (!run.isAllowed()) {
        return std::nullopt;
    }
    return runChild(surroundings_.helperPath, helperArguments(arguments), output, ChildEnvironment::empty);
}

bool HelperInstallation::run(const std::vector<std::string>& arguments) const {
    const auto result = runHelper(arguments, ChildOutput::discard);
    return result && result->succeeded();
}

std::string HelperInstallation::output(const std::vector<std::string>& arguments) const {
    const auto result = runHelper(arguments, ChildOutput::capture);
    if (!result) {
        return std::string(launchFailureText);
    }
    return repairedUTF8(result->output);
}

bool HelperInstallation::install() const {
    if (!surroundings_.mayRunAsRoot) {
        return false;
    }
    const auto executable = surroundings_.executablePath();
    if (!executable) {
        return false;
    }
    const auto command = installCommand(*executable);
    if (!command || !isPathRootControlled()) {
        return false;
    }
    return surroundings_.runAsAdministrator(*command) && isInstalled();
}

std::optional<std::string> HelperInstallation::installCommand(std::string_view executable) const {
    const std::string& helper = surroundings_.helperPath;
    if (!isQuotable(executable) || !isQuotable(helper)) {
        return std::nullopt;
    }
    const bool isRenamed = surroundings_.installsByRename;
    const std::string place = "'" + helper + "'";
    const std::string written = isRenamed ? "'" + helper + ".new'" : place;
    std::string command = "mkdir -p " + parentFolder(helper);
    if (isRenamed) { // an interrupted installation may have left a set-user-ID file there
        command += " && rm -f " + written;
    }
    command += " && cp '";
    command += executable;
    command += "' " + written;
    command += " && chown root:" + surroundings_.group + " " + written;
    command += " && chmod 4755 " + written;
    if (!isRenamed) {
        return command;
    }
    // The system's dialog passes the caller's umask on to root's command; with 000, everybody could write to
    // a new folder and exchange the file between the steps.
    return "umask 022 && " + command + " && mv -fT " + written + " " + place + " || { rm -f " + written +
           "; exit 1; }";
}

bool HelperInstallation::isPathRootControlled() const {
    bool isSharedFolder = false;
    const std::string home = parentFolder(surroundings_.helperPath);
    for (std::string folder = home; !folder.empty(); folder = parentFolder(folder)) {
        const auto status = fileStatus(folder);
        if (!status) {
            continue;
        }
        if (status->kind != FileStatus::Kind::directory || status->owner != root) {
            return false;
        }
        if (status->isWritableByOthers() && !status->isSticky()) {
            return false;
        }
        if (folder == home) {
            isSharedFolder = status->isWritableByOthers();
        }
    }
    // In a sticky folder that others may write to, users can replace their own files between the steps of the
    // command. Only a file that already belongs to root is safe. A new file beside it is not: another user
    // might create it first.
    if (!isSharedFolder) {
        return true;
    }
    if (surroundings_.installsByRename) {
        return false;
    }
    const auto present = fileStatus(surroundings_.helperPath);
    return present && present->kind == FileStatus::Kind::regular && present->owner == root;
}

} // namespace Fenwhirl
