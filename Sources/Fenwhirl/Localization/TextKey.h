// A French text of the interface, which is the key of its translations.
//
// Keys are made from literals only, so that the build finds every text in the sources: it fails when the text
// of `localized(u"Ventilateurs")` or `TextKey(u"Ventilateurs")` has no row in the translation tables
// (TextCheck). This header is all that a source needs to include for that, so a new text recompiles only the
// source that shows it, and the tables.
//
// Contains a view of a string literal: it can be copied freely and never dangles.

#pragma once

#include <QStringView>

#include <cstddef>
#include <string_view>

namespace Fenwhirl {

class TextKey {
public:
    template <std::size_t Size>
    explicit consteval TextKey(const char16_t (&literal)[Size]) : french_(literal, Size - 1) {}

    [[nodiscard]] constexpr std::u16string_view french() const { return french_; }

    friend constexpr bool operator==(TextKey, TextKey) = default;

private:
    std::u16string_view french_;
};

// The parameter type of localized(u"…"), which lets a literal be passed directly.
class LiteralTextKey : public TextKey {
public:
    template <std::size_t Size>
    // NOLINTNEXTLINE(google-explicit-constructor)
    consteval LiteralTextKey(const char16_t (&literal)[Size]) : TextKey(literal) {}
};

// A text with exactly this many "%@" placeholders; any other number does not compile.
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
            // Not a constant expression, so the compiler rejects the call.
            throw "this French text has another number of placeholders";
        }
    }
};

} // namespace Fenwhirl
