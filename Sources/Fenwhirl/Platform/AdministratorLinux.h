// How a packaged Fenwhirl asks for administrator rights. The package brings a program of its own for this,
// the activator, which runs nothing but the two commands that install and remove the helper. Polkit knows it
// by name, so that its dialog explains what the password is for; otherwise the dialog would show a shell
// command.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl {

namespace PackagedAdministrator {

inline constexpr std::string_view program = "/usr/bin/Fenwhirl";
inline constexpr std::string_view activator = "/usr/lib/fenwhirl/fenwhirl-activate";

} // namespace PackagedAdministrator

// Like `administratorInvocation` in Administrator.h, for a process that runs `executable`. It uses the
// program at the path `activator` only if `executable` is the package's program and `activator` may be
// executed.
[[nodiscard]] std::vector<std::string> administratorInvocation(const std::string& command, bool isRoot,
                                                               std::string_view executable,
                                                               const std::string& activator);

} // namespace Fenwhirl
