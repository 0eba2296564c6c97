// Desktop notifications.
//
// On macOS the system's script tool shows them. On Linux the desktop's notification service does, over D-Bus;
// they are marked as urgent and have a sound. Sending does not wait, and a desktop that shows no
// notifications is not an error.
//
// Threads: main thread.

#pragma once

#include <QString>

namespace Fenwhirl::Notifier {

void send(const QString& title, const QString& message);

// What became of a notification that was waited for.
enum class Delivery {
    taken,     // whoever shows notifications has it
    refused,   // or did not answer within five seconds
    noService, // there is nobody to show it
};

// A notification that is not urgent and goes away by itself; waits for whoever shows it. Whether it is shown
// then, nobody says.
[[nodiscard]] Delivery deliver(const QString& title, const QString& message);

} // namespace Fenwhirl::Notifier
