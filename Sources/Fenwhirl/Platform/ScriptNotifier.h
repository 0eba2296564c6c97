// Notifications through the script tool of macOS. Portable, so that it is tried where there is no Mac; any
// thread.

#pragma once

#include <QString>

// Starts `tool` (osascript) with the statement that shows the notification. Returns at once: the tool runs on
// by itself, its output goes nowhere, and nobody has to wait for its end. That it cannot be started is no
// error.
void notifyByScript(const QString& tool, const QString& title, const QString& message);
