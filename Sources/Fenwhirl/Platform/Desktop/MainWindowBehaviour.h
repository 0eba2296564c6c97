// What the system wants of the main window and of the program around it, beyond what Qt does by itself.
//
// macOS: a program of the menu bar is an "accessory" without a Dock icon; while its window is shown it is
// "regular". The window's title bar is hidden and the window is dragged by its background. Linux: a window is
// in the task bar exactly while it is shown, so both states are the same there and nothing needs configuring.
//
// Threads: main thread only.

#pragma once

#include <QString>

class QWindow;

namespace MainWindowBehaviour {

// Applies the system's look to a window; to be called each time its native window has been made, and when it
// became, or ceased to be, maximised or of the whole screen: Qt then sets everything anew.
void configure(QWindow& window);

// A regular application with a presence of its own, or an accessory of the status item.
void setRegular();
void setAccessory();

// Shows the window and brings it and the application before all others. `token` is the desktop's permission
// to take the focus, empty where there is none.
void bringToFront(QWindow& window, const QString& token);

} // namespace MainWindowBehaviour
