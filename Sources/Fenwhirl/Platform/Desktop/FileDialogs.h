// Asking where to save a file, and showing a file to the user.
//
// Threads: main thread only.

#pragma once

#include <QString>

// Runs the system's save panel modally with a proposed file name; the chosen path, empty when the user
// declined.
[[nodiscard]] QString askSavePath(const QString& proposedName);

// Opens the file browser with this file selected, or its folder where selecting is not possible. Does not
// wait, and says nothing when it fails.
void revealInFileBrowser(const QString& path);
