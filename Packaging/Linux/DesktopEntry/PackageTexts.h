// The texts and commands that the files of a package hold: descriptions and messages from the translation
// tables, commands from the program itself.
//
// Threads: one; the interface language is changed meanwhile and reset.

#pragma once

#include <QString>

// The template with all of it filled in, each in place of a line or a word of these:
//
//  @TEXTS@ @ACTIONS@                   of the desktop entry (DesktopEntry.h)
//  @SUMMARIES@ @DESCRIPTIONS@          the elements of AppStream's metainfo
//  @ACTIVATION_MESSAGES@ @REMOVAL_MESSAGES@   the elements of polkit's actions
//  @INSTALL_COMMAND_SH@ @REMOVE_COMMAND_SH@   what the program of a package runs as root, as a shell's word
[[nodiscard]] QString filledTemplate(QString text);
