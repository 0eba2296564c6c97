// Where the desktop keeps the settings of programs, by its own rule: $XDG_CONFIG_HOME when that is an
// absolute path, else ~/.config.

#pragma once

#include <string>

[[nodiscard]] std::string configFolder();
