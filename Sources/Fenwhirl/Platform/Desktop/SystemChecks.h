// What only the system can tell of how this program is installed and of what it is let do on the screen, for
// the self-check.
//
// macOS has a signature, a mark on what was downloaded, an icon in the Dock and a menu bar; Linux has none of
// these, and says so.
//
// Threads: main thread, after the application object, but for what says otherwise.

#pragma once

#include "Fenwhirl/Platform/CheckResult.h"
#include "Fenwhirl/Platform/Desktop/MenuBar.h"

#include <string>

namespace Fenwhirl::SystemChecks {

// Before the application object: where there is no screen, windows are drawn into memory.
void prepareScreen();

// `tool` is codesign.
[[nodiscard]] CheckResult signature(const std::string& tool = "/usr/bin/codesign");
// Whether the system still holds back what was downloaded. `tool` is xattr.
[[nodiscard]] CheckResult quarantine(const std::string& tool = "/usr/bin/xattr");
// Whether the system runs the program from another place than it lies in.
[[nodiscard]] CheckResult translocation();
// Becomes a program of the Dock and one of the menu bar again; the first takes the focus.
[[nodiscard]] CheckResult activationPolicy();
// What would draw the windows.
[[nodiscard]] CheckResult graphicsDevice();
// Whether these menus, which were shown before, are those in the menu bar.
[[nodiscard]] CheckResult menuBar(const QList<Menu>& menus);

// What it means here that a status item is nowhere to be seen.
[[nodiscard]] CheckResult unplacedStatusItem();

} // namespace Fenwhirl::SystemChecks
