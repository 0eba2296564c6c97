// The texts of the desktop entry, taken from the translation tables, so that the desktop's menu and search
// use the program's own words.
//
// Single-threaded: the functions change the interface language and reset it.

#pragma once

#include <QString>

namespace Fenwhirl {

// The lines "GenericName", "Comment" and "Keywords": first without a language, in English, which is also the
// program's fallback, then once for every language.
[[nodiscard]] QString desktopEntryTexts();

// The line "Actions" and a group for each preset, with the title in every language and the command line that
// chooses the preset. The group's name is the word that the program receives over D-Bus.
[[nodiscard]] QString desktopEntryActions();

// The template with these lines in place of "@TEXTS@" and "@ACTIONS@".
[[nodiscard]] QString desktopEntry(QString entryTemplate);

} // namespace Fenwhirl
