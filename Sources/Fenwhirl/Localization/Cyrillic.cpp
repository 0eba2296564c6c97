#include "Fenwhirl/Localization/Cyrillic.h"

#include <QTextBoundaryFinder>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace Fenwhirl {

namespace {

// Words that stay in Latin script, in lower case. "c" is the unit in "°C". "wi" and "fi" are "Wi-Fi", which
// the hyphen splits into two words.
constexpr std::array<std::u16string_view, 11> keep = {u"fenwhirl", u"mac", u"macos", u"cpu", u"gpu", u"ssd",
                                                      u"peci",     u"c",   u"wi",    u"fi",  u"%@"};

constexpr std::array<std::pair<char16_t, char16_t>, 27> single = {{
    {u'a', u'а'}, {u'b', u'б'}, {u'c', u'ц'}, {u'č', u'ч'}, {u'ć', u'ћ'}, {u'd', u'д'}, {u'đ', u'ђ'},
    {u'e', u'е'}, {u'f', u'ф'}, {u'g', u'г'}, {u'h', u'х'}, {u'i', u'и'}, {u'j', u'ј'}, {u'k', u'к'},
    {u'l', u'л'}, {u'm', u'м'}, {u'n', u'н'}, {u'o', u'о'}, {u'p', u'п'}, {u'r', u'р'}, {u's', u'с'},
    {u'š', u'ш'}, {u't', u'т'}, {u'u', u'у'}, {u'v', u'в'}, {u'z', u'з'}, {u'ž', u'ж'},
}};

// `single` indexed by code unit, so that a letter costs one access; 0 means that there is no Cyrillic form.
// Every letter of the alphabet is below U+0180.
constexpr auto cyrillicLetters = [] {
    std::array<char16_t, 0x180> letters = {};
    for (const auto& [latin, cyrillic] : single) {
        letters[latin] = cyrillic;
    }
    return letters;
}();

constexpr char16_t cyrillicLetter(char16_t latin) {
    return latin < cyrillicLetters.size() ? cyrillicLetters[latin] : u'\0';
}

constexpr char16_t cyrillicDigraph(char16_t first, char16_t second) {
    if (second == u'j') {
        return first == u'l' ? u'љ' : first == u'n' ? u'њ' : u'\0';
    }
    return first == u'd' && second == u'ž' ? u'џ' : u'\0';
}

// One user-perceived character: as written, and in the form that the tables use.
struct Character {
    QStringView written;
    char16_t folded; // lower case and composed; 0 when that is more than one code unit
    bool upperCase;
};

Character character(QStringView written) {
    // The common case: a single ASCII code unit, which composes with nothing and has one lower-case form.
    if (written.size() == 1 && written.front().unicode() < 0x80) {
        const QChar lower = written.front().toLower();
        return {written, lower.unicode(), lower != written.front()};
    }
    const QString composed = written.toString().normalized(QString::NormalizationForm_C);
    const QString lower = composed.toLower();
    return {written, lower.size() == 1 ? lower.front().unicode() : u'\0', lower != composed};
}

void appendInCaseOf(const Character& latin, char16_t cyrillic, QString& output) {
    output.append(latin.upperCase ? QChar(cyrillic).toUpper() : QChar(cyrillic));
}

using Word = QVarLengthArray<Character, 32>;

void transliterate(const Word& word, QString& output) {
    for (qsizetype i = 0; i < word.size(); ++i) {
        const Character& letter = word[i];
        const char16_t digraph =
            i + 1 < word.size() ? cyrillicDigraph(letter.folded, word[i + 1].folded) : u'\0';
        if (digraph != u'\0') {
            appendInCaseOf(letter, digraph, output);
            ++i;
        } else if (const char16_t cyrillic = cyrillicLetter(letter.folded)) {
            appendInCaseOf(letter, cyrillic, output);
        } else {
            output.append(letter.written);
        }
    }
}

bool staysLatin(const Word& word) {
    return std::ranges::any_of(keep, [&word](std::u16string_view kept) {
        return std::ranges::equal(word, kept, {}, &Character::folded);
    });
}

void flush(Word& word, QString& output) {
    if (word.isEmpty()) {
        return;
    }
    if (staysLatin(word)) {
        // The characters of a word are adjacent in the text.
        output.append(QStringView(word.front().written.begin(), word.back().written.end()));
    } else {
        transliterate(word, output);
    }
    word.clear();
}

char32_t firstCodePoint(QStringView written) {
    if (written.size() > 1 && written[0].isHighSurrogate() && written[1].isLowSurrogate()) {
        return QChar::surrogateToUcs4(written[0], written[1]);
    }
    return written.front().unicode();
}

bool belongsToWord(QStringView written) {
    return written == u"%" || written == u"@" || QChar::isLetter(firstCodePoint(written));
}

} // namespace

QString Cyrillic::convert(QStringView text) {
    QString output;
    output.reserve(text.size());
    Word word;
    // Working memory for the boundary finder; on the stack for texts of up to 255 characters.
    QVarLengthArray<unsigned char, 2048> workspace((text.size() + 1) * 8);
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text.data(), text.size(), workspace.data(),
                                   workspace.size());
    qsizetype begin = 0;
    for (qsizetype end = boundaries.toNextBoundary(); end > begin; end = boundaries.toNextBoundary()) {
        const QStringView written = text.sliced(begin, end - begin);
        begin = end;
        if (belongsToWord(written)) {
            word.append(character(written));
        } else {
            flush(word, output);
            output.append(written);
        }
    }
    flush(word, output);
    return output;
}

} // namespace Fenwhirl
