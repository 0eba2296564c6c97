// From a French text to the text that the user sees.
//
// French is the source language: every text of the program is written in French at the place that shows it,
// and that French text is the key of the translation tables. A text without a translation is shown in French.
//
// Threads: lookups from any thread; the language is set from the main thread.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace Localizer {

// The user's choice; `automatic` at launch. Only the monitor sets it.
[[nodiscard]] AppLanguage language();
void setLanguage(AppLanguage language);

// The language that is shown, never `automatic`: that is resolved afresh from the system's preferred
// languages at each call.
[[nodiscard]] AppLanguage resolved();

// The translation of a French text into the shown language; nothing in French and for texts without a row.
[[nodiscard]] std::optional<QString> lookup(const QString& key);

} // namespace Localizer

// The shown text: the lookup, or the French text itself.
[[nodiscard]] QString localized(const QString& key);

// The same for a text with "%@" placeholders, filled in order; the values are put in as they are.
[[nodiscard]] QString localized(const QString& key, const QStringList& values);
