// Holds the texts that the sources show against the list of French texts and the translation tables.
//
// The compiler cannot do that without a list that every source includes, and then every new text compiles the
// whole program again. So it is done while building, from the sources themselves, and what is missing is told
// by name.

#pragma once

#include <span>
#include <string>
#include <vector>

namespace TextCheck {

struct SourceFile {
    std::string place; // "Sources/Fenwhirl/Views/FanCard.qml"
    std::string content;
};

// What is wrong, one line each ("Sources/…/German.h:12: no row for …"), in the order of the files; empty when
// nothing is.
//
// `french` lists every text once. Each of the `tables` has a row of two texts for each, in the same order;
// the translation is not empty, begins and ends with a blank only where the French text does, and has its
// placeholders and the product's name as often. What the other `sources` ask for is in the list: the texts of
// localized(…), TextKey(…) and qsTr(…), and, in files called SensorNames.cpp, the names that stand behind a
// key.
[[nodiscard]] std::vector<std::string> faults(const SourceFile& french, std::span<const SourceFile> tables,
                                              std::span<const SourceFile> sources);

} // namespace TextCheck
