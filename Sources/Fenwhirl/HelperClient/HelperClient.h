// The application's side of the privileged helper: where it is installed, whether the installation is
// valid, which protocol it speaks, how to run one of its commands, and how to install it with the
// administrator's consent.
//
// The helper is a copy of this program's own executable, owned by root and set-user-ID. One run performs one
// command and answers with its exit status.
//
// Threads: every operation may be called from any thread and blocks it until the child process has ended,
// except `isInstalled`, which only looks at the file system. The only shared state, the cache of
// `installedVersion`, has a lock of its own.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl::HelperClient {

inline constexpr std::string_view helperPath = "/Library/PrivilegedHelperTools/FenwhirlHelper";

// The protocol version that this application speaks. A helper that answers "version" with
// anything else is outdated.
inline constexpr std::string_view expectedVersion = "3";

// Whether the helper file (the file itself, not the target of a link) belongs to root and is set-user-ID.
[[nodiscard]] bool isInstalled();

// The installed helper's answer to "version", trimmed: empty when it prints nothing, absent when there is no
// helper file, `HelperInstallation::launchFailureText` when it cannot be started. An answer is cached until the file changes in
// any way. Concurrent callers wait for the run.
[[nodiscard]] std::optional<std::string> installedVersion();

// Runs one helper command and waits; true exactly when it exited with status 0. There is no time-out here,
// because the helper limits its own lifetime.
[[nodiscard]] bool run(const std::vector<std::string>& arguments);

// Runs one helper command and returns what it printed (UTF-8, invalid sequences replaced), or
// `HelperInstallation::launchFailureText`.
[[nodiscard]] std::string output(const std::vector<std::string>& arguments);

// Runs a shell command with administrator rights, asking the user for consent. The command must not contain a
// double quote or a backslash. False when it cannot be started, when the user refuses, or when it fails.
[[nodiscard]] bool runAsAdministrator(const std::string& command);

// Copies the running executable to `helperPath`, owned by root and set-user-ID; true if
// `isInstalled` afterwards.
[[nodiscard]] bool install();

// The shell command with which `install` copies an executable; absent when its path cannot be quoted.
[[nodiscard]] std::optional<std::string> installCommand(std::string_view executablePath);
// The shell command that removes the helper.
[[nodiscard]] std::string removalCommand();

} // namespace Fenwhirl::HelperClient
