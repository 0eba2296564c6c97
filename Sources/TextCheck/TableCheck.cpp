#include "TextCheck/TableCheck.h"

#include "TextCheck/GatheredTexts.h"
#include "TextCheck/SourceTokens.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>

namespace TextCheck {

namespace {

struct Text {
    std::string text;
    int line;
};

Grammar grammarOf(std::string_view place) {
    return place.ends_with(".qml") || place.ends_with(".js") ? Grammar::qml : Grammar::cpp;
}

// The texts of a table. The names of included headers are not UTF-16 literals and are skipped.
std::vector<Text> textsOf(const SourceFile& file) {
    std::vector<Text> texts;
    for (const Token& token : tokensOf(file.content, Grammar::cpp)) {
        if (token.kind == Token::Kind::literal && token.wide) {
            texts.push_back({token.text, token.line});
        }
    }
    return texts;
}

std::size_t occurrences(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

bool beginsWithABlank(std::string_view text) {
    static constexpr std::array<std::string_view, 6> blanks = {" ", "\t", "\n", "\r", "\u00A0", "\u202F"};
    return std::ranges::any_of(blanks, [text](std::string_view blank) { return text.starts_with(blank); });
}

bool endsWithABlank(std::string_view text) {
    static constexpr std::array<std::string_view, 6> blanks = {" ", "\t", "\n", "\r", "\u00A0", "\u202F"};
    return std::ranges::any_of(blanks, [text](std::string_view blank) { return text.ends_with(blank); });
}

// The sensors' names: the second literal of each pair of key and name. A name that ends with a blank is
// followed by a number; the blank is not part of the text.
std::vector<Text> sensorNamesOf(const SourceFile& file) {
    std::vector<Text> names;
    const auto tokens = tokensOf(file.content, Grammar::cpp);
    const auto isMark = [&tokens](std::size_t at, std::string_view mark) {
        return tokens[at].kind == Token::Kind::punctuation && tokens[at].text == mark;
    };
    for (std::size_t at = 0; at + 4 < tokens.size(); ++at) { // {"TC0P", "Processeur"}
        if (isMark(at, "{") && tokens[at + 1].kind == Token::Kind::literal && isMark(at + 2, ",") &&
            tokens[at + 3].kind == Token::Kind::literal && isMark(at + 4, "}")) {
            std::string name = tokens[at + 3].text;
            if (name.ends_with(' ')) {
                name.pop_back();
            }
            names.push_back({std::move(name), tokens[at + 3].line});
        }
    }
    return names;
}

class Check {
public:
    explicit Check(const SourceFile& french) : frenchPlace_(french.place) {
        for (Text& text : textsOf(french)) {
            if (!places_.emplace(text.text, french_.size()).second) {
                fault(frenchPlace_, text.line, quoted(text.text) + " stands here twice");
            }
            french_.push_back(std::move(text.text));
        }
    }

    void table(const SourceFile& file) {
        const std::vector<Text> texts = textsOf(file);
        std::vector<bool> has(french_.size());
        std::vector<std::pair<const Text*, std::size_t>> rows; // each with its place in French
        for (std::size_t i = 0; i + 1 < texts.size(); i += 2) {
            const Text& french = texts[i];
            const auto known = places_.find(french.text);
            if (known == places_.end()) {
                fault(file.place, french.line, quoted(french.text) + " is not in " + frenchPlace_);
                continue;
            }
            if (has[known->second]) {
                fault(file.place, french.line, quoted(french.text) + " has two rows");
            } else {
                rows.emplace_back(&french, known->second);
            }
            has[known->second] = true;
            row(file.place, french, texts[i + 1].text);
        }
        order(file.place, rows);
        if (texts.size() % 2 != 0) {
            fault(file.place, texts.back().line, quoted(texts.back().text) + " has no translation");
        }
        for (std::size_t i = 0; i < has.size(); ++i) {
            if (!has[i]) {
                fault(file.place, 0, "no row for " + quoted(french_[i]));
            }
        }
    }

    void source(const SourceFile& file) {
        for (const Gathered& text : gather(file.content, grammarOf(file.place))) {
            if (text.kind == Gathered::Kind::asked) {
                asked(file.place, {text.text, text.line});
            }
        }
        if (file.place.ends_with("SensorNames.cpp")) {
            for (const Text& name : sensorNamesOf(file)) {
                asked(file.place, name);
            }
        }
    }

    [[nodiscard]] std::vector<std::string> faults() && { return std::move(faults_); }

private:
    static std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

    void fault(const std::string& place, int line, const std::string& what) {
        faults_.push_back(place + (line > 0 ? ':' + std::to_string(line) : std::string()) + ": " + what);
    }

    // Names the rows that would have to be moved to have all of them in order: those outside of the longest
    // rising sequence.
    void order(const std::string& place, const std::vector<std::pair<const Text*, std::size_t>>& rows) {
        std::vector<std::size_t> length(rows.size(), 1); // of the longest sequence that ends with this row
        for (std::size_t i = 0; i < rows.size(); ++i) {
            for (std::size_t before = 0; before < i; ++before) {
                if (rows[before].second < rows[i].second) {
                    length[i] = std::max(length[i], length[before] + 1);
                }
            }
        }
        std::vector<bool> stays(rows.size());
        std::size_t next = french_.size(); // the place of the row after it in the sequence
        auto left = length.empty() ? 0 : *std::ranges::max_element(length);
        for (std::size_t i = rows.size(); i-- > 0;) {
            if (length[i] == left && rows[i].second < next) {
                stays[i] = true;
                next = rows[i].second;
                --left;
            }
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (!stays[i]) {
                fault(place, rows[i].first->line,
                      quoted(rows[i].first->text) + " stands in another place than in " + frenchPlace_);
            }
        }
    }

    void row(const std::string& place, const Text& french, std::string_view translation) {
        const std::string name = quoted(french.text);
        if (translation.empty()) {
            fault(place, french.line, name + " has an empty translation");
            return;
        }
        if (beginsWithABlank(translation) != beginsWithABlank(french.text) ||
            endsWithABlank(translation) != endsWithABlank(french.text)) {
            fault(place, french.line, name + " has another blank at its beginning or end");
        }
        // "%@" is the only placeholder, so an equal count means equal placeholders.
        // Any other "%" is a mistake.
        if (occurrences(translation, "%@") != occurrences(french.text, "%@") ||
            occurrences(translation, "%") != occurrences(translation, "%@")) {
            fault(place, french.line, name + " has other placeholders");
        }
        if (occurrences(translation, "Fenwhirl") != occurrences(french.text, "Fenwhirl")) {
            fault(place, french.line, name + " names Fenwhirl more or less often");
        }
    }

    void asked(const std::string& place, const Text& text) {
        if (!places_.contains(text.text)) {
            fault(place, text.line,
                  quoted(text.text) + " has no row in " + frenchPlace_ + " and in the tables");
        }
    }

    std::string frenchPlace_;
    std::vector<std::string> french_;
    std::map<std::string, std::size_t> places_; // index in french_
    std::vector<std::string> faults_;
};

} // namespace

std::vector<std::string> faults(const SourceFile& french, std::span<const SourceFile> tables,
                                std::span<const SourceFile> sources) {
    Check check(french);
    for (const SourceFile& file : tables) {
        check.table(file);
    }
    for (const SourceFile& file : sources) {
        check.source(file);
    }
    return std::move(check).faults();
}

} // namespace TextCheck
