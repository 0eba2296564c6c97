// Runs a shell command with administrator rights, with the user's consent.
//
// Threads: safe from any thread. `runAsAdministrator` blocks the calling thread until the dialog is answered
// and the command has ended.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl {

// Returns true if and only if the command ran and exited with status 0, so false when the user refuses. The
// command must not contain a double quote or a backslash, because nothing is escaped on the way.
[[nodiscard]] bool runAsAdministrator(const std::string& command);

// The program and the arguments that `runAsAdministrator` starts. `isRoot` says whether this process already
// has root's rights.
[[nodiscard]] std::vector<std::string> administratorInvocation(const std::string& command, bool isRoot);

// The name of the group with id 0: "root" on Linux, "wheel" on macOS.
[[nodiscard]] std::string_view administratorGroup();

// Whether an installation as root writes the file beside its destination and then renames it. On macOS the
// command does not rename.
[[nodiscard]] bool administratorInstallsByRename();

// The AppleScript that asks for the password and runs the command; used on macOS.
[[nodiscard]] std::string administratorScript(std::string_view command);

// How macOS runs that script: its script tool and the arguments. They are the same whether or not this
// process already has the rights, because the dialog is the user's consent.
[[nodiscard]] std::vector<std::string> scriptedAdministratorInvocation(std::string_view command);

} // namespace Fenwhirl
