// The shape of a translation table in the source: one row per French text, in the order of frenchTexts, and
// the rules that every table keeps. Translations.cpp states them for each table with static_assert, so a
// table that breaks one does not compile.

#pragma once

#include "Fenwhirl/Localization/FrenchTexts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace Translations {

struct Row {
    std::u16string_view french;
    std::u16string_view text;
};

// A row too many does not compile; a row too few leaves an empty one, which `namesEveryFrenchText` finds.
using Rows = std::array<Row, frenchTexts.size()>;

// The same French texts as everywhere, in the same order.
[[nodiscard]] constexpr bool namesEveryFrenchText(std::span<const Row> rows) {
    return std::ranges::equal(rows, frenchTexts, {}, &Row::french);
}

[[nodiscard]] constexpr bool noTextTwice(std::span<const std::u16string_view> texts) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (std::find(texts.begin() + static_cast<std::ptrdiff_t>(i) + 1, texts.end(), texts[i]) !=
            texts.end()) {
            return false;
        }
    }
    return true;
}

// "%@" is the only placeholder there is, so the same number of them is also the same order; any other "%"
// would be a slip ("%d", "% @") and is refused.
[[nodiscard]] constexpr bool keepsPlaceholders(const Row& row) {
    return occurrences(row.text, u"%@") == occurrences(row.french, u"%@") &&
           occurrences(row.text, u"%") == occurrences(row.text, u"%@");
}

// The product is called the same in every language.
[[nodiscard]] constexpr bool keepsProductName(const Row& row) {
    return occurrences(row.text, u"Fenwhirl") == occurrences(row.french, u"Fenwhirl");
}

// Spaces at the ends would show as crooked alignment.
[[nodiscard]] constexpr bool isBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u'\u00A0' ||
           unit == u'\u202F';
}

[[nodiscard]] constexpr bool isFilledWithoutStrayBlanks(const Row& row) {
    return !row.text.empty() && isBlank(row.text.front()) == isBlank(row.french.front()) &&
           isBlank(row.text.back()) == isBlank(row.french.back());
}

[[nodiscard]] constexpr bool isSound(std::span<const Row> rows) {
    return namesEveryFrenchText(rows) && std::ranges::all_of(rows, isFilledWithoutStrayBlanks) &&
           std::ranges::all_of(rows, keepsPlaceholders) && std::ranges::all_of(rows, keepsProductName);
}

} // namespace Translations
