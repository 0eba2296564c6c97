// What the system itself tells the users of its screen reader, although the focus stays where it is.
//
// macOS has announcements for this. Elsewhere it is said by the window, as something that becomes visible.
//
// Threads: main thread only.

#pragma once

#include <QString>

// Has the system's screen reader say a text; at once, in the middle of what it is saying, when it is urgent.
// Without a screen reader nothing happens. False where the system has no such thing.
[[nodiscard]] bool announceBySystem(const QString& text, bool urgent);
