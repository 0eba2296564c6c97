// How much of a test of endurance is run: a sample with every change, the whole amount when hours are there
// for it.
//
// The whole is chosen when the build is configured (-D FENWHIRL_LONG_RUNS=ON); the tests learn it from the
// variable of that name, which CTest sets, so that nothing has to be compiled again.

#pragma once

#include <cstdlib>

[[nodiscard]] inline int rounds(int sample, int whole) {
    return std::getenv("FENWHIRL_LONG_RUNS") != nullptr ? whole : sample;
}
