// Announcements through the system's own screen reader, without a change of focus.
//
// macOS has announcements for this. On other systems the window shows the text instead, as an element that
// becomes visible.
//
// Threads: main thread only.

#pragma once

#include <QString>

namespace Fenwhirl {

// Has the system's screen reader speak a text. An urgent one interrupts what it is saying. Without a screen
// reader nothing happens. False where the system has no announcements.
[[nodiscard]] bool announceBySystem(const QString& text, bool urgent);

} // namespace Fenwhirl
