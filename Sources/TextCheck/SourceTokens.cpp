#include "TextCheck/SourceTokens.h"

#include <cctype>
#include <cstddef>
#include <utility>

namespace TextCheck {

namespace {

bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$';
}

void appendUtf8(unsigned long codePoint, std::string& text) {
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        text += static_cast<char>(0xC0 | (codePoint >> 6));
        text += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        if (codePoint < 0x10000) {
            text += static_cast<char>(0xE0 | (codePoint >> 12));
        } else {
            text += static_cast<char>(0xF0 | ((codePoint >> 18) & 0x07));
            text += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        }
        text += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

class Reader {
public:
    Reader(std::string_view source, Grammar grammar) : source_(source), grammar_(grammar) {}

    std::vector<Token> read() {
        while (at_ < source_.size()) {
            readOne();
        }
        return std::move(tokens_);
    }

private:
    [[nodiscard]] char peek(std::size_t ahead = 0) const {
        return at_ + ahead < source_.size() ? source_[at_ + ahead] : '\0';
    }

    char take() {
        const char c = source_[at_++];
        line_ += c == '\n' ? 1 : 0;
        return c;
    }

    void skipUntil(std::string_view end) {
        while (at_ < source_.size() && !source_.substr(at_).starts_with(end)) {
            take();
        }
        for (std::size_t i = 0; i < end.size() && at_ < source_.size(); ++i) {
            take();
        }
    }

    void readOne() {
        const char c = peek();
        if (std::isspace(static_cast<unsigned char>(c)) != 0) {
            take();
        } else if (c == '/' && peek(1) == '/') {
            skipUntil("\n");
        } else if (c == '/' && peek(1) == '*') {
            skipUntil("*/");
        } else if (c == '"' || c == '\'' || (c == '`' && grammar_ == Grammar::qml)) {
            readLiteral(std::string());
        } else if (isNameCharacter(c)) {
            readName();
        } else {
            tokens_.push_back({Token::Kind::punctuation, std::string(1, take()), line_, false});
        }
    }

    void readName() {
        const int line = line_;
        std::string name;
        // A digit separator (1'000) belongs to the number; it does not begin a literal.
        while (isNameCharacter(peek()) || (peek() == '\'' && !name.empty() &&
                                           std::isdigit(static_cast<unsigned char>(name.front())) != 0)) {
            name += take();
        }
        const bool prefix = name == "u" || name == "u8" || name == "U" || name == "L" || name == "R" ||
                            name == "uR" || name == "u8R" || name == "UR" || name == "LR";
        if (prefix && grammar_ == Grammar::cpp && (peek() == '"' || peek() == '\'')) {
            readLiteral(name);
        } else {
            tokens_.push_back({Token::Kind::name, std::move(name), line, false});
        }
    }

    void readLiteral(const std::string& prefix) {
        const int line = line_;
        const char quote = take();
        std::string value;
        if (prefix.ends_with('R')) {
            value = readRaw();
        } else {
            while (at_ < source_.size() && peek() != quote && (peek() != '\n' || quote == '`')) {
                if (peek() == '\\') {
                    readEscape(prefix, value);
                } else {
                    value += take();
                }
            }
            if (at_ < source_.size()) {
                take();
            }
        }
        if (grammar_ == Grammar::cpp && quote == '\'') {
            return; // a character, not a string
        }
        const bool wrapped = tokens_.size() >= 2 && tokens_.back().text == "(" &&
                             tokens_[tokens_.size() - 2].text == "QStringLiteral";
        const bool wide = grammar_ == Grammar::qml || prefix.starts_with('u') || wrapped;
        if (grammar_ == Grammar::cpp && !tokens_.empty() && tokens_.back().kind == Token::Kind::literal) {
            tokens_.back().text += value;
        } else {
            tokens_.push_back({Token::Kind::literal, std::move(value), line, wide});
        }
    }

    std::string readRaw() {
        std::string end = ")";
        while (at_ < source_.size() && peek() != '(') {
            end += take();
        }
        end += '"';
        const std::size_t begin = at_ + 1;
        skipUntil(end);
        return begin + end.size() <= at_ ? std::string(source_.substr(begin, at_ - end.size() - begin))
                                         : std::string();
    }

    void readEscape(const std::string& prefix, std::string& value) {
        take();
        if (at_ >= source_.size()) {
            return;
        }
        const char c = take();
        if (c == 'n' || c == 't' || c == 'r') {
            value += c == 'n' ? '\n' : c == 't' ? '\t' : '\r';
        } else if (c == 'u' || c == 'x' || (c == 'U' && grammar_ == Grammar::cpp)) {
            const unsigned long code = readCode(c);
            if (c == 'x' && grammar_ == Grammar::cpp && !prefix.starts_with('u')) {
                value += static_cast<char>(code); // in narrow text, "\x" is one byte
            } else {
                appendUtf8(code, value);
            }
        } else if (c != '\n') {
            value += c;
        }
    }

    // The number after \u, \U or \x. After \u, QML and C++23 also allow it in braces.
    unsigned long readCode(char kind) {
        const bool braced = kind == 'u' && peek() == '{';
        if (braced) {
            take();
        }
        const std::size_t most = braced || kind == 'U' ? 8 : kind == 'u' ? 4 : 2;
        std::string digits;
        while (digits.size() < most && std::isxdigit(static_cast<unsigned char>(peek())) != 0) {
            digits += take();
        }
        if (braced && peek() == '}') {
            take();
        }
        return digits.empty() ? 0 : std::stoul(digits, nullptr, 16);
    }

    std::string_view source_;
    Grammar grammar_;
    std::size_t at_ = 0;
    int line_ = 1;
    std::vector<Token> tokens_;
};

} // namespace

std::vector<Token> tokensOf(std::string_view source, Grammar grammar) {
    return Reader(source, grammar).read();
}

} // namespace TextCheck
