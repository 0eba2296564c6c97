// From a French text to the text that the user sees.
//
// French is the source language: every text of the program is written in French at the place that shows it,
// and that French text is the key of the translation tables. A text without a translation is shown in French.
// Tables exist for seven languages; Serbian in Cyrillic script is transliterated from the Latin texts at each
// lookup.
//
// C++ asks with localized(u"…"); QML asks with qsTr("…"), which LocalizerTranslator answers from the same
// lookup. The build ends when a text that is asked for has no row in the tables.
//
// Threads: lookups from any thread; the language is set from the main thread.

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

namespace Localizer {

// The user's choice; `automatic` at launch. Only the monitor sets it.
[[nodiscard]] AppLanguage language();
void setLanguage(AppLanguage language);

// The language that is shown, never `automatic`: that is resolved afresh from the system's preferred
// languages at each call.
[[nodiscard]] AppLanguage resolved();

// The translation of a French text into the shown language; nothing in French and for texts without a row.
// Allocates nothing but in Cyrillic: the text is a view of the program's constants that lasts as long as it
// does.
[[nodiscard]] std::optional<QString> lookup(QStringView key);

} // namespace Localizer

// The shown text: the lookup, or the French text itself.
[[nodiscard]] QString localized(TextKey key);

[[nodiscard]] inline QString localized(LiteralTextKey key) {
    return localized(TextKey(key));
}

[[nodiscard]] QString localized(const QString& key);

// The same for a text with "%@" placeholders, filled in order with the values as they are: a "%@" inside a
// value is not filled again. localized(u"Ventilateur %@", {number}) compiles only with a value for each
// placeholder; where only run time knows the text, a placeholder without a value stays and values left over
// are not shown.
template <std::size_t Count>
[[nodiscard]] QString localized(std::type_identity_t<FilledTextKey<Count>> key,
                                const QString (&values)[Count]);
[[nodiscard]] QString localized(const QString& key, const QStringList& values);

// The filling alone, for a text that is translated already.
[[nodiscard]] QString filledPlaceholders(QStringView text, const QStringList& values);

template <std::size_t Count>
QString localized(std::type_identity_t<FilledTextKey<Count>> key, const QString (&values)[Count]) {
    return filledPlaceholders(localized(TextKey(key)), QStringList(std::begin(values), std::end(values)));
}
