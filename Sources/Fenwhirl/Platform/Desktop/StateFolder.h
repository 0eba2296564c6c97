// The folder for what the program remembers of its last run: not settings, and expendable.
//
// On Linux it is a folder of this program in $XDG_STATE_HOME if that is an absolute path, otherwise in
// ~/.local/state; on macOS in ~/Library/Application Support.
//
// Thread-safe.

#pragma once

#include <QString>

namespace Fenwhirl {

// The folder need not exist yet.
[[nodiscard]] QString stateFolder();

} // namespace Fenwhirl
