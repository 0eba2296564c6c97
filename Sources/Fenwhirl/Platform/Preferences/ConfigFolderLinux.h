// The folder in which the desktop keeps the settings of programs, by the desktop's own rule: $XDG_CONFIG_HOME
// if that is an absolute path, otherwise ~/.config.

#pragma once

#include <string>

namespace Fenwhirl {

[[nodiscard]] std::string configFolder();

} // namespace Fenwhirl
