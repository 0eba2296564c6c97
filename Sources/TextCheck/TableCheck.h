// Compares the texts that the sources show with the list of French texts and with the translation tables.
//
// The compiler could check this only with a list that every source includes, and then every new text would
// recompile the whole program. The build therefore runs this check over the sources themselves and reports
// each missing text by name.

#pragma once

#include <span>
#include <string>
#include <vector>

namespace TextCheck {

struct SourceFile {
    std::string place; // "Sources/Fenwhirl/Views/FanCard.qml"
    std::string content;
};

// The faults, one line each ("Sources/…/German.h:12: no row for …"), in the order of the files;
// empty when there are none.
//
// `french` lists every text once. Each of the `tables` has one row of two texts for each of them, in the same
// order. A translation is not empty, begins and ends with a blank exactly where the French text does, and
// contains the placeholders and the product's name equally often. Every text that the other `sources` request
// is in the list: the texts of localized(…), TextKey(…) and qsTr(…) and, in files called SensorNames.cpp, the
// name after each key.
[[nodiscard]] std::vector<std::string> faults(const SourceFile& french, std::span<const SourceFile> tables,
                                              std::span<const SourceFile> sources);

} // namespace TextCheck
