#include "Fenwhirl/Views/Components/LineBreaks.h"

#include <QStringView>

namespace Fenwhirl {

QString keptTogether(const QString& text) {
    // A dash belongs to the line before: so Russian has it, and no other language minds.
    static constexpr QStringView stayWithWhatIsBefore = u"°%:;?!»…–—";
    static constexpr QChar noBreakSpace = QChar::Nbsp;
    QString kept = text;
    for (qsizetype at = 1; at + 1 < text.size(); ++at) {
        if (text[at] == u' ' && (stayWithWhatIsBefore.contains(text[at + 1]) || text[at - 1] == u'«'))
            kept[at] = noBreakSpace;
    }
    return kept;
}

} // namespace Fenwhirl
