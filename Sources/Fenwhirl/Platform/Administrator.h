// Running a shell command with administrator rights, with the user's consent.
//
// Threads: safe from any thread; `runAsAdministrator` blocks it until the dialog is answered and the command
// has ended.

#pragma once

#include <string>
#include <string_view>
#include <vector>

// True exactly when the command ran and ended with status 0. False when the user refuses. The command must
// hold no double quote or backslash: nothing is escaped on the way.
[[nodiscard]] bool runAsAdministrator(const std::string& command);

// The program and the arguments that `runAsAdministrator` starts; `isRoot` says whether this process already
// has the rights.
[[nodiscard]] std::vector<std::string> administratorInvocation(const std::string& command, bool isRoot);

// The group of id 0: "root" on Linux, "wheel" on macOS.
[[nodiscard]] std::string_view administratorGroup();

// Whether what root installs is written beside its place and renamed. macOS is given a command that does not.
[[nodiscard]] bool administratorRenames();

// The AppleScript that asks for the password and runs the command; what macOS is given.
[[nodiscard]] std::string administratorScript(std::string_view command);

// How macOS is given it: its script tool and the arguments. The same whether or not this process has the
// rights already: the dialog is the user's consent.
[[nodiscard]] std::vector<std::string> scriptedAdministratorInvocation(std::string_view command);
