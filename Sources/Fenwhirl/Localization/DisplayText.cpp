#include "Fenwhirl/Localization/DisplayText.h"

#include <QChar>

namespace Fenwhirl {

namespace {

bool isFitToShow(char32_t character) {
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    case QChar::Other_Format: {
        // The joiners are kept: they shape letters (Persian, Devanagari) and emoji.
        constexpr char32_t nonJoiner = 0x200C;
        constexpr char32_t joiner = 0x200D;
        return character == nonJoiner || character == joiner;
    }
    default:
        return true;
    }
}

} // namespace

QString displayText(QStringView text, qsizetype limit) {
    QString shown;
    qsizetype taken = 0;
    while (taken < text.size()) {
        const QChar first = text[taken];
        const bool pair =
            first.isHighSurrogate() && taken + 1 < text.size() && text[taken + 1].isLowSurrogate();
        const qsizetype units = pair ? 2 : 1;
        // One unit stays free for the ellipsis, unless the text ends here.
        const qsizetype room = taken + units == text.size() ? limit : limit - 1;
        if (shown.size() + units > room) {
            return shown + QChar(u'…');
        }
        const char32_t character =
            pair ? QChar::surrogateToUcs4(first, text[taken + 1]) : char32_t{first.unicode()};
        if (isFitToShow(character)) {
            shown += text.sliced(taken, units);
        } else {
            shown += QChar(QChar::ReplacementCharacter);
        }
        taken += units;
    }
    return shown;
}

} // namespace Fenwhirl
