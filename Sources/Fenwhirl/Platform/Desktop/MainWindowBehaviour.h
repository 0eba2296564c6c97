// What the system expects of the main window, and of the program around it, beyond what Qt does.
//
// On macOS a menu bar program is an "accessory" without a Dock icon; while its window is shown it is
// "regular". The window's title bar is hidden, and the window can be dragged by its background. On Linux a
// window is in the task bar exactly while it is shown, so the two states are the same there and nothing needs
// to be configured.
//
// Threads: main thread only.

#pragma once

#include <QString>

class QWindow;

namespace Fenwhirl::MainWindowBehaviour {

// Applies the system's look to a window. Call it each time the native window has been created, and whenever
// the window starts or stops being maximised or full-screen, because Qt then resets these properties.
void configure(QWindow& window);

// Make the program a regular application with a Dock icon, or an accessory of the status item.
void setRegular();
void setAccessory();

// Shows the window and brings it and the application to the front. `token` is the desktop's permission to
// take the focus; empty where there is none.
void bringToFront(QWindow& window, const QString& token);

} // namespace Fenwhirl::MainWindowBehaviour
