// Splits C++ and QML sources into what a search for texts needs: names, punctuation and string literals,
// without comments. Not a parser: it knows how literals and comments are written, nothing else.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TextCheck {

enum class Grammar { cpp, qml };

struct Token {
    enum class Kind { name, punctuation, literal };
    Kind kind;
    std::string text; // of a literal: its value in UTF-8, adjacent C++ literals joined
    int line;         // counted from 1
    bool wide;        // a literal of UTF-16 text (u"…", QStringLiteral); every literal of QML
};

[[nodiscard]] std::vector<Token> tokensOf(std::string_view source, Grammar grammar);

} // namespace TextCheck
