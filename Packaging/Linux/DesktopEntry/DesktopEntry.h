// The texts of the desktop entry, from the translation tables: what the desktop's menu says of the program
// and finds it by is what the program says of itself.
//
// Threads: one; the interface language is changed meanwhile and reset.

#pragma once

#include <QString>

// The lines "GenericName", "Comment" and "Keywords": without a language in English, to which the program
// falls back, too, then one for every language.
[[nodiscard]] QString desktopEntryTexts();

// The line "Actions" and, for each preset, its group: the title in every language, and the command line that
// chooses it. The group's name is what the program is told over its bus.
[[nodiscard]] QString desktopEntryActions();

// The template with those lines in place of "@TEXTS@" and "@ACTIONS@".
[[nodiscard]] QString desktopEntry(QString entryTemplate);
