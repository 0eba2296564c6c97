// The terms that the system uses for what every program has: the menus of macOS, and the
// command that closes a window.
//
// They are not texts of the interface: Qt and the menu bar request them in English, and each language uses
// the terms of its macOS version. They are therefore kept in a table of their own, in the nine languages,
// including French; Serbian in Cyrillic script is transliterated as everywhere else.
//
// LocalizerTranslator uses this table to answer Qt's translation calls with the context
// "MAC_APPLICATION_MENU", and QML's qsTranslate("SystemTerms", "Close").
//
// Threads: any.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace Fenwhirl::SystemTerms {

// All English texts that have an entry, in the form in which they are requested. "%1"
// stands for the program's name.
[[nodiscard]] QStringList all();

// The term in the shown language; absent for an unknown text. English has terms of its own, too: what Qt
// calls "Preferences…" has been "Settings…" since macOS 13.
[[nodiscard]] std::optional<QString> lookup(QStringView english);

// The same, with the English text if there is no entry, and with the program's name in place of "%1".
[[nodiscard]] QString text(QStringView english, const QString& program = QStringLiteral("Fenwhirl"));

} // namespace Fenwhirl::SystemTerms
