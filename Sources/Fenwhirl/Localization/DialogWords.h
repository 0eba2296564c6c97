// The words of Qt's own dialogs in the languages for which Qt has none: European Portuguese (it has the
// Brazilian ones) and Serbian. They are seen where the desktop has no dialog of its own to choose a file.
//
// Threads: any.

#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace DialogWords {

// The English texts that have an answer.
[[nodiscard]] QStringList all();

// Qt's English text in the shown language; nothing for an unknown text and in the languages that Qt speaks
// itself.
[[nodiscard]] std::optional<QString> lookup(QStringView english);

} // namespace DialogWords
