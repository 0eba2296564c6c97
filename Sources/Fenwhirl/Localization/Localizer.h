// Translates a French text into the text that the user sees.
//
// French is the source language: every text of the program is written in French in the code that shows
// it, and that French text is the key of the translation tables. A text without a translation is shown
// in French. Tables exist for seven languages; Serbian in Cyrillic script is transliterated from the
// Latin texts at each look-up.
//
// C++ calls localized(u"…"). QML calls qsTr("…"), which LocalizerTranslator answers from the same look-up.
// The build fails when a requested text has no row in the tables.
//
// Threads: look-ups from any thread; the language is set from the main thread.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"
#include "Fenwhirl/Localization/TextKey.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <cstddef>
#include <iterator>
#include <optional>
#include <type_traits>

namespace Fenwhirl {

namespace Localizer {

// The user's choice; `automatic` at launch. Only the monitor sets it.
[[nodiscard]] AppLanguage language();
void setLanguage(AppLanguage language);

// The language that is shown, never `automatic`: that is resolved from the system's
// preferred languages at each call.
[[nodiscard]] AppLanguage resolved();

// The translation of a French text into the shown language; absent in French and for texts without a row.
// Allocates only for Cyrillic: otherwise the text refers to the program's constants and is valid for as long
// as the program runs.
[[nodiscard]] std::optional<QString> lookup(QStringView key);

// From now on each lookup first calls this function, on its own thread. For measurements; null ends it.
void setLookupObserver(void (*observer)(QStringView key));

} // namespace Localizer

// The shown text: the translation, or else the French text itself.
[[nodiscard]] QString localized(TextKey key);

[[nodiscard]] inline QString localized(LiteralTextKey key) {
    return localized(TextKey(key));
}

[[nodiscard]] QString localized(const QString& key);

// The same for a text with "%@" placeholders. They are filled in order with the values as given: a "%@"
// inside a value is not filled again. localized(u"Ventilateur %@", {number}) compiles only with one value
// for each placeholder. For texts known only at run time, a placeholder without a value stays, and
// surplus values are not shown.
template <std::size_t Count>
[[nodiscard]] QString localized(std::type_identity_t<FilledTextKey<Count>> key,
                                const QString (&values)[Count]);
[[nodiscard]] QString localized(const QString& key, const QStringList& values);

// Only fills the placeholders, for a text that is already translated.
[[nodiscard]] QString filledPlaceholders(QStringView text, const QStringList& values);

template <std::size_t Count>
QString localized(std::type_identity_t<FilledTextKey<Count>> key, const QString (&values)[Count]) {
    return filledPlaceholders(localized(TextKey(key)), QStringList(std::begin(values), std::end(values)));
}

} // namespace Fenwhirl
