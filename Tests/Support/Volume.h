// How much of an endurance test is run: a sample with every change, the full amount when hours are available.
//
// The full amount is chosen when the build is configured (-D FENWHIRL_LONG_RUNS=ON). Tests read this from the
// environment variable of the same name, which CTest sets, so nothing has to be recompiled.

#pragma once

#include <cstdlib>

namespace Fenwhirl {

[[nodiscard]] inline int rounds(int sample, int whole) {
    return std::getenv("FENWHIRL_LONG_RUNS") != nullptr ? whole : sample;
}

} // namespace Fenwhirl
