#include "Fenwhirl/Localization/DrawnText.h"

#include <QStringView>

QString keptTogether(const QString& text) {
    // A dash belongs to the line before: so Russian has it, and no other language minds.
    static constexpr QStringView stayWithWhatIsBefore = u"°%:;?!»…–—";
    static constexpr QChar noBreakSpace = QChar::Nbsp;
    QString kept = text;
    for (qsizetype at = 1; at + 1 < text.size(); ++at) {
        if (text[at] != u' ')
            continue;
        const QChar before = text[at - 1];
        const QChar after = text[at + 1];
        if (stayWithWhatIsBefore.contains(after) || before == u'«' || (before.isDigit() && after.isLetter()))
            kept[at] = noBreakSpace;
    }
    return kept;
}

QString withApostrophes(const QString& text) {
    QString set = text;
    for (qsizetype at = 1; at + 1 < text.size(); ++at) {
        if (text[at] == u'\'' && text[at - 1].isLetter() && text[at + 1].isLetter())
            set[at] = u'’';
    }
    return set;
}

QString drawnText(const QString& text) {
    return withApostrophes(keptTogether(text));
}
