#include "Fenwhirl/Views/Components/TabularRuns.h"

namespace Fenwhirl {

QStringList tabularRuns(const QString& text) {
    QStringList runs;
    bool lastWasDigit = true; // so that the first character begins a piece
    for (const QChar character : text) {
        const bool digit = character >= u'0' && character <= u'9';
        if (digit || lastWasDigit) {
            runs.append(QString(character));
        } else {
            runs.last().append(character);
        }
        lastWasDigit = digit;
    }
    return runs;
}

} // namespace Fenwhirl
