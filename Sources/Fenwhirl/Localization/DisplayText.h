// Makes text from outside safe to display.
//
// File names and answers of a server may contain anything: line breaks that push a dialog's own text off the
// screen, marks that reverse the reading direction so that one thing reads as another, or a hundred thousand
// letters that take the text layout seconds. For display only: store and compare the original text.
//
// Threads: any.

#pragma once

#include <QString>
#include <QStringView>

namespace Fenwhirl {

// Longer than any name that a person reads; short enough for any layout.
inline constexpr qsizetype displayTextLimit = 100;

// The text with every control character, line break, invisible formatting character and broken character
// replaced by U+FFFD, cut to `limit` UTF-16 units (at least 1). The last unit of a cut text is "…".
[[nodiscard]] QString displayText(QStringView text, qsizetype limit = displayTextLimit);

} // namespace Fenwhirl
