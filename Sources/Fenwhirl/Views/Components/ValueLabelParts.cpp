#include "Fenwhirl/Views/Components/ValueLabelParts.h"

#include <algorithm>

namespace Fenwhirl {

namespace {

bool isDigit(QChar letter) {
    return letter.isDigit();
}

} // namespace

WordsAroundValue wordsAroundValue(const QString& text) {
    const auto first = std::find_if(text.begin(), text.end(), isDigit);
    if (first == text.end()) {
        return {text.trimmed(), {}, {}};
    }
    const auto last = std::find_if(text.rbegin(), text.rend(), isDigit);
    QString name = text.left(first - text.begin()).trimmed();
    if (name.endsWith(u':')) {
        name = name.chopped(1).trimmed();
    }
    return {name, text.mid(first - text.begin()).trimmed(), text.right(last - text.rbegin()).trimmed()};
}

} // namespace Fenwhirl
