// Statements for the script tool of macOS. Pure; any thread.

#pragma once

#include <QString>

// The statement that shows a notification. Backslashes become spaces and double quotes apostrophes, so that
// no text can end its own quotes; losing them is the price.
[[nodiscard]] QString notificationStatement(const QString& title, const QString& message);
