// AppleScript statements for the script tool of macOS. Pure; any thread.

#pragma once

#include <QString>

// The statement that shows a notification. Backslashes become spaces and double quotes become apostrophes, so
// that no text can end its own string literal. The loss of these characters is accepted.
[[nodiscard]] QString notificationStatement(const QString& title, const QString& message);
