// The form of a translation table in the source: one row per French text, in the order of frenchTexts. The
// build checks that no row is missing and that every table follows its other rules (TextCheck).

#pragma once

#include <string_view>

namespace Fenwhirl::Translations {

struct Row {
    std::u16string_view french;
    std::u16string_view text;
};

} // namespace Fenwhirl::Translations
