// The shape of a translation table in the source: one row per French text, in the order of frenchTexts. That
// no row is missing, and what else every table keeps, is checked while building (TextCheck).

#pragma once

#include <string_view>

namespace Translations {

struct Row {
    std::u16string_view french;
    std::u16string_view text;
};

} // namespace Translations
