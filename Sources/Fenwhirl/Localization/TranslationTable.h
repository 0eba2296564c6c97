// One language's texts, found by their French text.
//
// Built once from an array of rows and constant from then on: any number of threads may look texts up. Keeps
// views of the array, which must outlive the table (the arrays are constants of the program).

#pragma once

#include "Fenwhirl/Localization/TranslationRows.h"

#include <QHash>
#include <QStringView>

#include <optional>
#include <span>

class TranslationTable {
public:
    // A French text that occurs twice is an error of the program and stops it.
    explicit TranslationTable(std::span<const Translations::Row> rows);

    // The translation; nothing for a text without a row.
    [[nodiscard]] std::optional<QStringView> find(QStringView french) const;

    [[nodiscard]] qsizetype size() const { return texts_.size(); }

private:
    QHash<QStringView, QStringView> texts_;
};
