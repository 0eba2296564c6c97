// The texts and commands in the installed files: descriptions and messages come from the translation tables,
// commands from the program itself.
//
// Single-threaded: the function changes the interface language and resets it.

#pragma once

#include <QString>

namespace Fenwhirl {

// The template with these placeholders filled in:
//
//  @TEXTS@ @ACTIONS@                   of the desktop entry (DesktopEntry.h)
//  @SUMMARIES@ @DESCRIPTIONS@          the elements of AppStream's metainfo
//  @ACTIVATION_MESSAGES@ @REMOVAL_MESSAGES@   the elements of polkit's actions
//  @INSTALL_COMMAND_SH@ @REMOVE_COMMAND_SH@   the commands that a packaged program runs as root, quoted for a shell
[[nodiscard]] QString filledTemplate(QString text);

} // namespace Fenwhirl
