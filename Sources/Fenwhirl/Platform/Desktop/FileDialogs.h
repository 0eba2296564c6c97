// Asks where to save a file, and shows a file to the user.
//
// Threads: main thread only.

#pragma once

#include <QString>

namespace Fenwhirl {

// Runs the system's save panel modally with a proposed file name. Returns the chosen path; empty when the
// user cancelled, or when such a panel is already open. The panel is in the system's language. Where the
// system has no panel (Linux without a desktop portal), Qt's dialog is shown in `language` (a code such as
// "de"), provided that Qt's translations are installed and include it.
[[nodiscard]] QString askSavePath(const QString& proposedName, const QString& language);

// Whether such a panel is open. While it is, this program's windows may ignore input.
[[nodiscard]] bool isAskingSavePath();

// Opens the file browser with this file selected, or shows its folder if selecting is not possible. Does not
// wait; a failure is not reported.
void revealInFileBrowser(const QString& path);

} // namespace Fenwhirl
