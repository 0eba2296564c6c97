// Finds the texts that a source file shows to the user.

#pragma once

#include "TextCheck/SourceTokens.h"

#include <string>
#include <string_view>
#include <vector>

namespace TextCheck {

struct Gathered {
    enum class Kind {
        asked,   // argument of localized, lookup, TextKey or qsTr: must be a key of the translation tables
        dynamic, // qsTr without a literal: nobody can tell whether a translation exists
        system,  // the text of qsTranslate: must be one of the system's terms (SystemTerms.h)
        loose,   // looks like text for the user, but no translation is requested
        other,   // any other literal
    };
    Kind kind;
    std::string text;
    int line;
    std::string control; // QML: what the text is bound to, e.g. "PrimaryButton.text", as far as can be told
};

// Which literals are loose. In QML: letters bound to a property that shows text ("text", "title",
// "Accessible.name", …), and any literal that reads like language (words separated by a blank, or non-ASCII
// letters), unless it is the first argument of console.warn() and its like. In C++: literals with non-ASCII
// letters, and UTF-16 literals with a blank between words.
[[nodiscard]] std::vector<Gathered> gather(std::string_view source, Grammar grammar);

} // namespace TextCheck
