// Asking where to save a file, and showing a file to the user.
//
// Threads: main thread only.

#pragma once

#include <QString>

// Runs the system's save panel modally with a proposed file name; the chosen path, empty when the user
// declined, and while it is asking already. The panel speaks the system's language; where the system has none
// of its own (Linux without a desktop portal) and Qt's stands in for it, `language` (a code such as "de"), as
// far as Qt's translations are installed and know it.
[[nodiscard]] QString askSavePath(const QString& proposedName, const QString& language);

// Opens the file browser with this file selected, or its folder where selecting is not possible. Does not
// wait, and says nothing when it fails.
void revealInFileBrowser(const QString& path);
