// The application's side of the privileged helper: where it lives, whether it is in order, what it speaks,
// how to run one of its commands, and how to install it with the administrator's consent.
//
// The helper is a copy of this program's own executable, owned by root and set-user-ID. One run performs one
// command and answers by its exit status.
//
// Threads: every operation may be called from any thread and blocks it until the child has ended; only
// `isInstalled` is a mere look at the file system. The one shared state, the cache of `installedVersion`, has
// its own lock.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace HelperClient {

inline constexpr std::string_view helperPath = "/Library/PrivilegedHelperTools/FenwhirlHelper";

// The protocol that this application speaks; a helper that answers "version" with anything else is outdated.
inline constexpr std::string_view expectedVersion = "3";

// What `output` returns when the helper cannot be started; part of the diagnostic report, hence French in
// every language.
inline constexpr std::string_view launchFailureText = "Impossible de lancer l'assistant.";

// Whether the helper file (itself, not what a link points to) belongs to root and is set-user-ID.
[[nodiscard]] bool isInstalled();

// What the installed helper answers to "version", trimmed; empty when it prints nothing, absent without a
// helper file, `launchFailureText` when it cannot be started. An answer is remembered as long as nothing of
// the file changes; callers on other threads wait for the run.
[[nodiscard]] std::optional<std::string> installedVersion();

// Runs one helper command and waits; true exactly when it exited with status 0. There is no time-out here:
// the helper bounds its own life.
[[nodiscard]] bool run(const std::vector<std::string>& arguments);

// Runs one helper command and returns what it printed (UTF-8, invalid sequences replaced), or
// `launchFailureText`.
[[nodiscard]] std::string output(const std::vector<std::string>& arguments);

// Runs a shell command with administrator rights, asking the user. The command must hold no double quote or
// backslash. False when it cannot be started, when the user refuses, and when it fails.
[[nodiscard]] bool runAsAdministrator(const std::string& command);

// Copies the running executable to `helperPath` as root, set-user-ID; true when `isInstalled` afterwards.
[[nodiscard]] bool install();

// The shell command of `install` for an executable, or nothing when its path cannot be put between quotes.
[[nodiscard]] std::optional<std::string> installCommand(std::string_view executablePath);
// The one that removes the helper again.
[[nodiscard]] std::string removalCommand();

} // namespace HelperClient
