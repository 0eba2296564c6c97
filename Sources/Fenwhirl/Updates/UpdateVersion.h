// Compares version numbers.
//
// Pure functions: any thread.

#pragma once

#include <QStringView>

namespace Fenwhirl {

// Whether version `a` is newer than version `b`. Versions are whole numbers separated by dots, compared one
// by one from the left. Empty pieces are skipped; a missing piece, or one that is not a whole number of 64
// bits, is taken as 0: "1.2.3-beta" is 1.2.0 and thus older than 1.2.3.
[[nodiscard]] bool isNewer(QStringView a, QStringView b);

} // namespace Fenwhirl
