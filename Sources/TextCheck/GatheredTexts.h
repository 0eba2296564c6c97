// The texts that a source file shows to the user, found in the file itself.

#pragma once

#include "TextCheck/SourceTokens.h"

#include <string>
#include <string_view>
#include <vector>

namespace TextCheck {

struct Gathered {
    enum class Kind {
        asked,   // given to localized, lookup, TextKey or qsTr: must be a key of the translation tables
        dynamic, // qsTr of something that holds no literal: nobody can tell whether it has a translation
        system,  // the text of qsTranslate: must be among the words of the system
        loose,   // looks like a text for the user, but nobody asks for its translation
        other,   // any other literal
    };
    Kind kind;
    std::string text;
    int line;
    std::string control; // QML: what the text is bound to, "PrimaryButton.text", as far as it can be told
};

// Loose are, in QML: letters bound to a property that shows text ("text", "title", "Accessible.name", …) and
// any literal that reads like language (words with a blank between them, letters beyond ASCII). In C++:
// literals with letters beyond ASCII, and UTF-16 literals with a blank between words.
[[nodiscard]] std::vector<Gathered> gather(std::string_view source, Grammar grammar);

} // namespace TextCheck
