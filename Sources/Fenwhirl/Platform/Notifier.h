// Desktop notifications.
//
// On macOS the system's script tool shows them. On Linux the desktop's notification service does, over D-Bus;
// they are marked as urgent and have a sound. Sending does not wait, and a desktop that shows no
// notifications is not an error.
//
// Threads: main thread.

#pragma once

#include <QString>

namespace Notifier {

void send(const QString& title, const QString& message);

} // namespace Notifier
