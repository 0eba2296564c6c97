// The texts of Qt's own dialogs in the languages for which Qt has no translation: European Portuguese (Qt has
// only Brazilian) and Serbian. They are seen where the desktop provides no file dialog of its own.
//
// Threads: any.

#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace Fenwhirl::DialogTexts {

// The English texts that have a translation here.
[[nodiscard]] QStringList all();

// The translation of Qt's English text into the shown language; absent for an unknown text, and in the
// languages that Qt itself translates.
[[nodiscard]] std::optional<QString> lookup(QStringView english);

} // namespace Fenwhirl::DialogTexts
