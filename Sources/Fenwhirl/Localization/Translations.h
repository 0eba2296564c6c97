// The seven translation tables, one per language with texts of its own: French needs none, and Serbian in
// Cyrillic script is transliterated from `sr`.
//
// Each table is built when it is first requested, exactly once however many threads request it, and lives
// until the process ends. A language that is never shown costs nothing.

#pragma once

#include "Fenwhirl/Localization/TranslationTable.h"

namespace Fenwhirl::Translations {

[[nodiscard]] const TranslationTable& en();
[[nodiscard]] const TranslationTable& sr(); // Latin script
[[nodiscard]] const TranslationTable& de();
[[nodiscard]] const TranslationTable& es();
[[nodiscard]] const TranslationTable& it();
[[nodiscard]] const TranslationTable& pt();
[[nodiscard]] const TranslationTable& ru();

} // namespace Fenwhirl::Translations
