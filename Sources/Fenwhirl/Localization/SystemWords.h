// The words that the system itself has for what every program has: the menus of macOS and what closes a
// window.
//
// They are not texts of the interface: Qt and the menu bar ask for them in English, and each language has the
// words of its own macOS for them. So they stand in a table beside the translation tables, in the nine
// languages, French included; Serbian in Cyrillic script is transliterated as everywhere.
//
// LocalizerTranslator answers Qt's translation calls with the context "MAC_APPLICATION_MENU" from here, and
// QML's qsTranslate("SystemWords", "Close").
//
// Threads: any.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace SystemWords {

// All English texts that have an answer, as they are asked for. "%1" stands for the program's name.
[[nodiscard]] QStringList all();

// The words in the shown language; nothing for an unknown text. English has words of its own, too: what Qt
// calls "Preferences…" is "Settings…" since macOS 13.
[[nodiscard]] std::optional<QString> lookup(QStringView english);

// The same with the English text for want of another, and the program's name in the place of "%1".
[[nodiscard]] QString text(QStringView english, const QString& program = QStringLiteral("Fenwhirl"));

} // namespace SystemWords
