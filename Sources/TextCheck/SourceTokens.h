// Splits C++ and QML sources into what a search for texts needs: names, punctuation and string literals,
// without comments. This is not a parser: it knows the syntax of literals and comments, and nothing else.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TextCheck {

enum class Grammar { cpp, qml };

struct Token {
    enum class Kind { name, punctuation, literal };
    Kind kind;
    std::string text; // of a literal: its value in UTF-8, with adjacent C++ literals joined
    int line;         // counted from 1
    bool wide;        // a literal of UTF-16 text (u"…", QStringLiteral), or any literal of QML
};

[[nodiscard]] std::vector<Token> tokensOf(std::string_view source, Grammar grammar);

} // namespace TextCheck
