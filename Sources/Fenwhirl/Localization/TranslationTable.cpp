#include "Fenwhirl/Localization/TranslationTable.h"

#include <QtGlobal>

namespace Fenwhirl {

TranslationTable::TranslationTable(std::span<const Translations::Row> rows) {
    texts_.reserve(static_cast<qsizetype>(rows.size()));
    for (const Translations::Row& row : rows) {
        const QStringView french(row.french);
        if (texts_.contains(french)) {
            qFatal("two translations of the same text: %s", qUtf8Printable(french.toString()));
        }
        texts_.insert(french, QStringView(row.text));
    }
}

std::optional<QStringView> TranslationTable::find(QStringView french) const {
    const auto row = texts_.constFind(french);
    if (row == texts_.constEnd()) {
        return std::nullopt;
    }
    return *row;
}

} // namespace Fenwhirl
