// Comparing version numbers.
//
// Pure functions: any thread.

#pragma once

#include <QStringView>

// Whether version `a` is newer than version `b`: dotted whole numbers, compared piece by piece from the left,
// a missing piece counting as 0 and empty ones not at all. So does a piece that is no whole number of 64
// bits: "1.2.3-beta" is 1.2.0, older than 1.2.3.
[[nodiscard]] bool isNewer(QStringView a, QStringView b);
