// Notifications through the script tool of macOS. Portable, so that it can be tested on other systems; any
// thread.

#pragma once

#include "Fenwhirl/Platform/Notifier.h"

#include <QString>

namespace Fenwhirl {

// The AppleScript statement that shows a notification. Backslashes become spaces and double quotes become
// apostrophes, so that no text can end its own string literal. The loss of these characters is accepted. Pure.
[[nodiscard]] QString notificationStatement(const QString& title, const QString& message);

// Starts `tool` (osascript) with the statement that shows the notification, and returns at once. The tool
// runs detached and its output is dropped, so nobody has to wait for it. A failure to start it is ignored.
void notifyByScript(const QString& tool, const QString& title, const QString& message);

// The same, waiting for the tool's end, five seconds at most.
[[nodiscard]] Notifier::Delivery deliverByScript(const QString& tool, const QString& title,
                                                 const QString& message);

} // namespace Fenwhirl
