// What kind of window the status item's panel is. Any thread.
//
// On Linux a tool window that takes the keyboard. On macOS a popup: a tool window is not shown while its
// program is not the active one, and a click on the status item does not make it so; a popup is shown in any
// case, above the menus, and the system ends it at a click elsewhere. It gets no keyboard.

#pragma once

#include <qnamespace.h>

[[nodiscard]] Qt::WindowFlags statusPanelFlags();
