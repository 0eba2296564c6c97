// A French text of the interface, checked while compiling.
//
// `localized(u"Ventilateurs")` compiles only when that very text has its row in the translation tables: a
// typing error, or a text that nobody translated, is a compiler error at the place that shows it. Tables of
// texts hold TextKey values for the same reason.
//
// Holds a view of a string literal: copy it freely, it never dangles.

#pragma once

#include "Fenwhirl/Localization/FrenchTexts.h"

#include <QStringView>

#include <cstddef>
#include <string_view>

class TextKey {
public:
    // Implicit, so that a literal can stand where a text is asked for.
    template <std::size_t Size>
    // NOLINTNEXTLINE(google-explicit-constructor)
    consteval TextKey(const char16_t (&literal)[Size]) : french_(literal, Size - 1) {
        if (!isFrenchText(french_)) {
            // Not a constant expression: this is what stops the compiler.
            throw "this French text has no row in the translation tables";
        }
    }

    [[nodiscard]] constexpr std::u16string_view french() const { return french_; }

    friend constexpr bool operator==(TextKey, TextKey) = default;

private:
    std::u16string_view french_;
};

// A text that holds exactly this many placeholders "%@": any other does not compile.
template <std::size_t Placeholders>
class FilledTextKey : public TextKey {
public:
    template <std::size_t Size>
    // NOLINTNEXTLINE(google-explicit-constructor)
    consteval FilledTextKey(const char16_t (&literal)[Size]) : TextKey(literal) {
        if (occurrences(french(), u"%@") != Placeholders) {
            throw "this French text has another number of placeholders";
        }
    }
};
