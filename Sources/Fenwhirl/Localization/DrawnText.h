// A text as it is drawn: the same words, set as a printer would set them.
//
// The texts of the interface have ordinary blanks and, in French, straight apostrophes, because that is how
// they are written, looked up and compared. Drawn with those, "92 °C" may end one line and begin the next,
// and French stands with typewriter's signs beside the typographic ones of the other languages. Here the
// characters are exchanged one for one, so that the text stays as long as it was. For display only: a screen
// reader is told the text as it stands, and files and other programs get that.
//
// Pure; any thread.

#pragma once

#include <QString>

// No-break spaces in place of single blanks
//   - before "°", "%", ":", ";", "?", "!", "»", "…" and dashes, and after "«";
//   - between a number and the unit or the word that follows it ("5 minutes", "2400 rpm");
//   - in a text of nine words or more, before a last word that is short, which would look lost on a line of
//     its own.
[[nodiscard]] QString keptTogether(const QString& text);

// "’" in place of "'" between letters.
[[nodiscard]] QString withApostrophes(const QString& text);

// Both.
[[nodiscard]] QString drawnText(const QString& text);
