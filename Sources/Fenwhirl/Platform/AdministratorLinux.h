// How the program of a package asks for administrator rights: through a program of the package's own, which
// runs nothing but the two commands of the helper's installation and removal, and which polkit knows by name.
// Then the dialog says what it is about, where it would show a shell's command otherwise.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace PackagedAdministrator {

inline constexpr std::string_view program = "/usr/bin/Fenwhirl";
inline constexpr std::string_view activator = "/usr/lib/fenwhirl/fenwhirl-activate";

} // namespace PackagedAdministrator

// As administratorInvocation, for a process of this executable on a computer where `activator` is, if it is
// there and may be executed.
[[nodiscard]] std::vector<std::string> administratorInvocation(const std::string& command, bool isRoot,
                                                               std::string_view executable,
                                                               const std::string& activator);
