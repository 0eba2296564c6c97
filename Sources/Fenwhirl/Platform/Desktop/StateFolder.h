// Where the system keeps what a program remembers of its last run: not settings, and no loss when it is gone.
//
// Linux: $XDG_STATE_HOME when that is an absolute path, else ~/.local/state. macOS: ~/Library/Application
// Support. In each a folder of this program.
//
// Thread-safe.

#pragma once

#include <QString>

// Need not exist yet.
[[nodiscard]] QString stateFolder();
