// Starting with the user's session.
//
// One small file of the user says so: on macOS a launch agent, on Linux an autostart entry of the desktop. It
// takes effect at the next login; nothing is started or stopped now.
//
// Threads: main thread; the calls touch one small file.

#pragma once

namespace LoginItem {

// Whether the file exists.
[[nodiscard]] bool isEnabled();

// Writes or removes the file; false when that failed. Removing what is not there succeeds.
[[nodiscard]] bool setEnabled(bool on);

} // namespace LoginItem
