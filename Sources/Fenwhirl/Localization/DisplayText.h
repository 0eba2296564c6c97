// Text of others, made fit to be shown among ours.
//
// File names and answers of a server may hold anything: line breaks that push a dialog's own words off the
// screen, marks that turn the reading direction around so that one thing reads as another, or a hundred
// thousand letters that take a text layout seconds. For display only: keep and compare the text as it came.
//
// Threads: any.

#pragma once

#include <QString>
#include <QStringView>

// Longer than any name that a person reads, shorter than what disturbs a layout.
inline constexpr qsizetype displayTextLimit = 100;

// The text with every control, line break, invisible format mark and broken character replaced by U+FFFD, and
// cut to `limit` UTF-16 units (at least 1), the last of which is then "…".
[[nodiscard]] QString displayText(QStringView text, qsizetype limit = displayTextLimit);
