// Starting Fenwhirl with the user's session.
//
// The setting is one small file of the user: on macOS a launch agent, on Linux an autostart entry of the
// desktop. It takes effect at the next login; nothing is started or stopped now.
//
// Threads: main thread. The calls access one small file.

#pragma once

#include <QString>

namespace Fenwhirl::LoginItem {

// The file.
[[nodiscard]] QString path();

// Whether the file exists, that is, whether Fenwhirl starts with the session.
[[nodiscard]] bool isEnabled();

// Writes or removes the file; false when that failed. Removing a file that does not exist succeeds.
[[nodiscard]] bool setEnabled(bool on);

} // namespace Fenwhirl::LoginItem
