#include "Fenwhirl/Views/Components/MenuSearch.h"

#include <algorithm>

namespace Fenwhirl {

namespace {

// Removes case and accents.
QString plain(const QString& text) {
    QString letters;
    // This form separates letters from their accents, which are marks.
    for (const QChar letter : text.normalized(QString::NormalizationForm_KD)) {
        if (!letter.isMark()) {
            letters.append(letter);
        }
    }
    return letters.toCaseFolded();
}

bool hasWord(const QString& text, const QString& beginning) {
    for (qsizetype at = text.indexOf(beginning); at >= 0; at = text.indexOf(beginning, at + 1)) {
        if (at == 0 || !text[at - 1].isLetterOrNumber()) {
            return true;
        }
    }
    return false;
}

// The first of `count` items after `before`, wrapping around, that passes the test.
template <typename Test>
int firstAfter(int before, int count, const Test& test) {
    for (int i = 1; i <= count; ++i) {
        const int index = (before + i + count) % count;
        if (test(index)) {
            return index;
        }
    }
    return -1;
}

} // namespace

int foundInMenu(const QStringList& labels, const QString& typed, int current) {
    const QString sought = plain(typed);
    const int count = static_cast<int>(labels.size());
    if (sought.isEmpty() || count == 0) {
        return -1;
    }
    const int here = std::clamp(current, -1, count - 1);
    const bool oneLetter = sought.count(sought.front()) == sought.size();
    const auto nearest = [&](const QString& text, int before) {
        const int beginning =
            firstAfter(before, count, [&](int index) { return plain(labels[index]).startsWith(text); });
        return beginning >= 0 ? beginning : firstAfter(before, count, [&](int index) {
            return hasWord(plain(labels[index]), text);
        });
    };
    // From the current item itself on: it may be what the characters typed so far have found.
    const int found = nearest(sought, sought.size() > 1 ? std::max(here, 0) - 1 : here);
    return found >= 0 || !oneLetter ? found : nearest(sought.left(1), here);
}

} // namespace Fenwhirl
