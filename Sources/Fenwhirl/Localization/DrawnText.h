// A text as it is drawn: the same words with typographic spaces and apostrophes.
//
// The texts of the interface contain ordinary blanks and, in French, straight apostrophes, because that is
// how they are written, looked up and compared. Drawn like that, "92 °C" may be split between two lines, and
// French shows typewriter apostrophes beside the typographic ones of other languages. The functions here
// replace characters one for one, so the length of the text does not change. For display only: screen
// readers, files and other programs get the original text.
//
// Pure; any thread.

#pragma once

#include <QString>

namespace Fenwhirl {

// Puts no-break spaces in place of single blanks
//   - before "°", "%", ":", ";", "?", "!", "»", "…" and dashes, and after "«";
//   - between a number and the unit or word that follows it ("5 minutes", "2400 rpm");
//   - in a text of nine words or more, before a short last word, which would look lost on a line of its own.
[[nodiscard]] QString withNoBreakSpaces(const QString& text);

// Puts "’" in place of "'" between letters.
[[nodiscard]] QString withApostrophes(const QString& text);

// Does both.
[[nodiscard]] QString drawnText(const QString& text);

} // namespace Fenwhirl
