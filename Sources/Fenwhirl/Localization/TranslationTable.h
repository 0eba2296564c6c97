// The texts of one language, found by their French text.
//
// Built once from an array of rows and constant from then on, so any number of threads may look up texts.
// Keeps views into the array, which must outlive the table (the arrays are constants of the program).

#pragma once

#include "Fenwhirl/Localization/TranslationRows.h"

#include <QHash>
#include <QStringView>

#include <optional>
#include <span>

namespace Fenwhirl {

class TranslationTable {
public:
    // A French text that occurs twice is a programming error and ends the process.
    explicit TranslationTable(std::span<const Translations::Row> rows);

    // The translation; absent for a text without a row.
    [[nodiscard]] std::optional<QStringView> find(QStringView french) const;

    [[nodiscard]] qsizetype size() const { return texts_.size(); }

private:
    QHash<QStringView, QStringView> texts_;
};

} // namespace Fenwhirl
