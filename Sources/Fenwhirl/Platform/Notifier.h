// Notifications of the desktop.
//
// On macOS the system's script tool shows them, on Linux the desktop's notification service over D-Bus,
// marked as urgent and with a sound. Nothing is waited for, and a desktop that shows none is no error.
//
// Threads: main thread.

#pragma once

#include <QString>

namespace Notifier {

void send(const QString& title, const QString& message);

} // namespace Notifier
