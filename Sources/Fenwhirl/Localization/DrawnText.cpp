#include "Fenwhirl/Localization/DrawnText.h"

#include <QStringView>

#include <algorithm>
#include <iterator>

namespace Fenwhirl {

QString withNoBreakSpaces(const QString& text) {
    // A dash stays on the line of the word before it: Russian requires that, and no other language minds.
    static constexpr QStringView stayWithWhatIsBefore = u"°%:;?!»…–—";
    static constexpr QChar noBreakSpace = QChar::Nbsp;
    QString kept = text;
    for (qsizetype at = 1; at + 1 < text.size(); ++at) {
        if (text[at] != u' ') {
            continue;
        }
        const QChar before = text[at - 1];
        const QChar after = text[at + 1];
        if (stayWithWhatIsBefore.contains(after) || before == u'«' ||
            (before.isDigit() && after.isLetter())) {
            kept[at] = noBreakSpace;
        }
    }
    static constexpr qsizetype wordsOfALongText = 9;
    static constexpr qsizetype shortWord = 16;
    // Counts blanks of both kinds, so that a second call changes nothing.
    const auto isBlank = [](QChar letter) { return letter == u' ' || letter == noBreakSpace; };
    const auto lastBlank = std::find_if(kept.rbegin(), kept.rend(), isBlank);
    if (std::count_if(kept.begin(), kept.end(), isBlank) >= wordsOfALongText - 1 &&
        std::distance(kept.rbegin(), lastBlank) <= shortWord) {
        *lastBlank = noBreakSpace;
    }
    return kept;
}

QString withApostrophes(const QString& text) {
    QString set = text;
    for (qsizetype at = 1; at + 1 < text.size(); ++at) {
        if (text[at] == u'\'' && text[at - 1].isLetter() && text[at + 1].isLetter()) {
            set[at] = u'’';
        }
    }
    return set;
}

QString drawnText(const QString& text) {
    return withApostrophes(withNoBreakSpaces(text));
}

} // namespace Fenwhirl
