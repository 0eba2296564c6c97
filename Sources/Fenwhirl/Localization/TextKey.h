// A French text of the interface, the key of its translations.
//
// Made of literals only, so that the build finds every text in the sources: `localized(u"Ventilateurs")` and
// `TextKey(u"Ventilateurs")` end the build when that very text has no row in the translation tables
// (TextCheck). What this header includes is all that a source needs to know of the tables; a new text
// compiles the place that shows it, and the tables.
//
// Holds a view of a string literal: copy it freely, it never dangles.

#pragma once

#include <QStringView>

#include <cstddef>
#include <string_view>

class TextKey {
public:
    template <std::size_t Size>
    explicit consteval TextKey(const char16_t (&literal)[Size]) : french_(literal, Size - 1) {}

    [[nodiscard]] constexpr std::u16string_view french() const { return french_; }

    friend constexpr bool operator==(TextKey, TextKey) = default;

private:
    std::u16string_view french_;
};

// The parameter of localized(u"…"), so that a literal can stand there by itself.
class LiteralTextKey : public TextKey {
public:
    template <std::size_t Size>
    // NOLINTNEXTLINE(google-explicit-constructor)
    consteval LiteralTextKey(const char16_t (&literal)[Size]) : TextKey(literal) {}
};

// A text that holds exactly this many placeholders "%@": any other does not compile.
template <std::size_t Placeholders>
class FilledTextKey : public LiteralTextKey {
public:
    template <std::size_t Size>
    // NOLINTNEXTLINE(google-explicit-constructor)
    consteval FilledTextKey(const char16_t (&literal)[Size]) : LiteralTextKey(literal) {
        std::size_t count = 0;
        for (auto at = french().find(u"%@"); at != std::u16string_view::npos;
             at = french().find(u"%@", at + 2)) {
            ++count;
        }
        if (count != Placeholders) {
            // Not a constant expression: this is what stops the compiler.
            throw "this French text has another number of placeholders";
        }
    }
};
