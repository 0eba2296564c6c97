#include "TextCheck/GatheredTexts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <utility>

namespace TextCheck {

namespace {

bool isAsciiLetter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

// Decodes the character that begins at `at`, and moves `at` past it. Malformed UTF-8 yields some
// character, never an error.
char32_t nextCharacter(std::string_view text, std::size_t& at) {
    const auto first = static_cast<unsigned char>(text[at++]);
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
    char32_t character = more == 0 ? first : first & (0x3FU >> more);
    for (int i = 0; i < more && at < text.size(); ++i) {
        character = (character << 6U) | (static_cast<unsigned char>(text[at++]) & 0x3FU);
    }
    return character;
}

// Recognises letters of any script. Symbols, blanks, drawings and emoji are excluded by their code ranges.
bool isLetterBeyondAscii(char32_t c) {
    const bool sign = c == 0xD7 || c == 0xF7 || c == 0x1680 || c == 0x180E || (c >= 0x2000 && c < 0x2C00) ||
                      (c >= 0x3000 && c < 0x3040) || (c >= 0xD800 && c < 0xFF21) || c == 0xFFFD ||
                      c >= 0x1F000;
    return c >= 0xC0 && !sign;
}

bool holdsLettersBeyondAscii(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        if (isLetterBeyondAscii(nextCharacter(text, at))) {
            return true;
        }
    }
    return false;
}

bool holdsLetters(std::string_view text) {
    return std::ranges::any_of(text, isAsciiLetter) || holdsLettersBeyondAscii(text);
}

bool holdsWords(std::string_view text) {
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        if (text[i] == ' ' && isAsciiLetter(text[i - 1]) && isAsciiLetter(text[i + 1])) {
            return true;
        }
    }
    return false;
}

bool showsText(std::string property) {
    std::ranges::transform(property, property.begin(), [](char c) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    });
    static constexpr std::array<std::string_view, 12> endings = {
        "text",    "title",  "caption",     "message",         "label",
        "note",    "detail", "placeholder", "accessible.name", "accessible.description",
        "tooltip", "status"};
    return std::ranges::any_of(endings, [&](std::string_view ending) { return property.ends_with(ending); });
}

class Gatherer {
public:
    Gatherer(std::vector<Token> tokens, Grammar grammar) : tokens_(std::move(tokens)), grammar_(grammar) {}

    std::vector<Gathered> run() {
        for (at_ = 0; at_ < tokens_.size(); ++at_) {
            const Token& token = tokens_[at_];
            noteElementAt();
            if (token.kind == Token::Kind::name) {
                notePropertyAt();
                if (asksForTranslation()) {
                    readArgument();
                } else if (grammar_ == Grammar::qml && token.text == "qsTranslate") {
                    readSystemTerms();
                }
            } else if (token.kind == Token::Kind::literal) {
                found_.push_back({isLoose(token) ? Gathered::Kind::loose : Gathered::Kind::other, token.text,
                                  token.line, control()});
            }
        }
        return std::move(found_);
    }

private:
    [[nodiscard]] bool isText(std::size_t index, std::string_view text) const {
        return index < tokens_.size() && tokens_[index].kind != Token::Kind::literal &&
               tokens_[index].text == text;
    }

    [[nodiscard]] bool asksForTranslation() const {
        static constexpr std::array<std::string_view, 3> cppNames = {"localized", "lookup", "TextKey"};
        static constexpr std::array<std::string_view, 2> qmlNames = {"qsTr", "QT_TR_NOOP"};
        const std::string& name = tokens_[at_].text;
        const bool known = grammar_ == Grammar::cpp ? std::ranges::find(cppNames, name) != cppNames.end()
                                                    : std::ranges::find(qmlNames, name) != qmlNames.end();
        return known && isText(at_ + 1, "(");
    }

    // Reports every literal of the first argument: "on ? a : b" asks for the translation of both.
    void readArgument() {
        const int line = tokens_[at_].line;
        const std::string boundTo = control();
        bool any = false;
        int depth = 0;
        for (++at_; at_ < tokens_.size(); ++at_) {
            const Token& token = tokens_[at_];
            if (token.kind == Token::Kind::literal) {
                found_.push_back({Gathered::Kind::asked, token.text, token.line, boundTo});
                any = true;
            } else if (token.text == "(" || token.text == "{" || token.text == "[") {
                ++depth;
            } else if (token.text == ")" || token.text == "}" || token.text == "]") {
                if (--depth == 0) {
                    break;
                }
            } else if (token.text == "," && depth == 1) {
                break;
            }
        }
        if (!any && grammar_ == Grammar::qml) {
            found_.push_back({Gathered::Kind::dynamic, std::string(), line, boundTo});
        }
    }

    // qsTranslate("context", "text")
    void readSystemTerms() {
        const bool literals =
            isText(at_ + 1, "(") && isLiteral(at_ + 2) && isText(at_ + 3, ",") && isLiteral(at_ + 4);
        if (!literals) {
            found_.push_back({Gathered::Kind::dynamic, std::string(), tokens_[at_].line, control()});
            return;
        }
        found_.push_back({Gathered::Kind::system, tokens_[at_ + 4].text, tokens_[at_].line, control()});
        at_ += 4;
    }

    [[nodiscard]] bool isLiteral(std::size_t index) const {
        return index < tokens_.size() && tokens_[index].kind == Token::Kind::literal;
    }

    // "Paragraph {" begins an element. Other braces are JavaScript's and belong to the enclosing element.
    void noteElementAt() {
        if (grammar_ != Grammar::qml) {
            return;
        }
        if (isText(at_, "{")) {
            const bool element = at_ > 0 && tokens_[at_ - 1].kind == Token::Kind::name &&
                                 std::isupper(static_cast<unsigned char>(tokens_[at_ - 1].text.front())) != 0;
            elements_.push_back(element             ? tokens_[at_ - 1].text
                                : elements_.empty() ? std::string()
                                                    : elements_.back());
        } else if (isText(at_, "}") && !elements_.empty()) {
            elements_.pop_back();
        }
    }

    [[nodiscard]] std::string control() const {
        if (elements_.empty()) {
            return {};
        }
        return property_.empty() ? elements_.back() : elements_.back() + '.' + property_;
    }

    // "title:" or "Accessible.name:" begins a binding at the beginning of a line, or after "{" or ";".
    void notePropertyAt() {
        if (grammar_ != Grammar::qml) {
            return;
        }
        const bool begins = at_ == 0 || tokens_[at_ - 1].line < tokens_[at_].line || isText(at_ - 1, "{") ||
                            isText(at_ - 1, ";") || isPropertyDeclaration();
        if (!begins) {
            return;
        }
        std::string property = tokens_[at_].text;
        std::size_t next = at_ + 1;
        while (isText(next, ".") && next + 1 < tokens_.size()) {
            property += '.' + tokens_[next + 1].text;
            next += 2;
        }
        property_ = isText(next, ":")                             ? property
                    : tokens_[at_ == 0 ? 0 : at_ - 1].text == "?" ? property_
                                                                  : std::string();
    }

    [[nodiscard]] bool isPropertyDeclaration() const {
        return at_ >= 2 && isText(at_ - 2, "property") && isText(at_ + 1, ":");
    }

    [[nodiscard]] bool isLoose(const Token& token) const {
        if (grammar_ == Grammar::cpp) {
            return holdsLettersBeyondAscii(token.text) || (token.wide && holdsWords(token.text));
        }
        const bool import = at_ > 0 && isText(at_ - 1, "import");
        const bool forDevelopers = at_ > 3 && isText(at_ - 1, "(") && isText(at_ - 4, "console");
        return !import && !forDevelopers &&
               (holdsLettersBeyondAscii(token.text) || holdsWords(token.text) ||
                (showsText(property_) && holdsLetters(token.text)));
    }

    std::vector<Token> tokens_;
    Grammar grammar_;
    std::size_t at_ = 0;
    std::vector<std::string> elements_; // open elements, the innermost last; QML only
    std::string property_;              // whose binding is being read; QML only
    std::vector<Gathered> found_;
};

} // namespace

std::vector<Gathered> gather(std::string_view source, Grammar grammar) {
    return Gatherer(tokensOf(source, grammar), grammar).run();
}

} // namespace TextCheck
